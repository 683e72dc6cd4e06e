#pragma once

#include <cstdint>
#include <string_view>

namespace twk::session {
struct Session;
}

/// Converts the files of a database directory to today's layout. Records that are marked as deleted are
/// left out, so record numbers change. The old bytes stay under another ending (".v22", ".v23", ".v24");
/// the file keeps its access rights, and stays a link if it is one. A file that has today's layout is left
/// alone: another administrator converted it. Steps go to "Convert.log" in the working directory of the
/// program.
namespace twk::stores {

namespace conversion {
inline constexpr std::int32_t kFrom1 = 1;   ///< sites, then templates
inline constexpr std::int32_t kFrom20 = 2;  ///< templates
inline constexpr std::int32_t kFrom21 = 3;  ///< templates
inline constexpr std::int32_t kFrom22 = 4;  ///< templates
inline constexpr std::int32_t kFrom23 = 5;  ///< the two permission tables
}  // namespace conversion

/// Converts from the generation that `stage` names and sets `DBVersion` to "2.4". A failure is reported by
/// message and returns False: the files that were not converted yet are unchanged, and `DBVersion` is not
/// set. A file whose length is not a multiple of its records' is reported on the log tab; its whole records
/// are converted.
bool Convert(session::Session& session, std::string_view dbpath, std::int32_t stage);

/// Checks `DBVersion` at start-up: tells the person which old generation was found, and converts it. Raises a
/// runtime error when that failed, since old records must not be taken for new ones;
/// `DBVersion` then names the generation that was reached, from which the next start continues. False when
/// nothing was old.
bool convert_old_database(session::Session& session);

/// The same for a database of that version ("1", "2.0" … "2.3"), whatever `DBVersion` says. False when a step
/// failed, which was reported.
bool convert_database_from(session::Session& session, std::string_view version);

}  // namespace twk::stores
