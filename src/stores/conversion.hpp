#pragma once

#include <cstdint>
#include <string_view>

namespace twk::session {
struct Session;
}

/// Brings the files of a database directory to the layout of today. Records that are marked as deleted are
/// left behind, so record numbers change. The old bytes stay under another ending (".v22", ".v23", ".v24");
/// the file keeps its access, and the link that it may be. A file that has today's layout is left alone:
/// another administrator converted it. Steps go to "Convert.log" in the working directory of the program.
namespace twk::stores {

namespace conversion {
inline constexpr std::int32_t kFrom1 = 1;   ///< sites, then templates
inline constexpr std::int32_t kFrom20 = 2;  ///< templates
inline constexpr std::int32_t kFrom21 = 3;  ///< templates
inline constexpr std::int32_t kFrom22 = 4;  ///< templates
inline constexpr std::int32_t kFrom23 = 5;  ///< the two permission tables
}  // namespace conversion

/// Converts from the generation that `stage` names and sets `DBVersion` to "2.4". A failure is told by
/// message and gives False: the files that were not renamed yet are as they were, and `DBVersion` is not set.
/// A file whose length is no multiple of its records' is told on the log tab; its whole records are
/// converted.
bool Convert(session::Session& session, std::string_view dbpath, std::int32_t stage);

/// Start-up's look at `DBVersion`: tells the person which old generation was found and converts it. Raises a
/// runtime error when that failed, since old records must not be taken for new ones;
/// `DBVersion` then names the generation that was reached, from which the next start goes on. False when
/// nothing was old.
bool convert_old_database(session::Session& session);

/// The same for a database of that version ("1", "2.0" … "2.3"), whatever `DBVersion` says. False when a step
/// failed, which was told.
bool convert_database_from(session::Session& session, std::string_view version);

}  // namespace twk::stores
