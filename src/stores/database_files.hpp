#pragma once

#include <string>
#include <string_view>

#include "base/errors.hpp"

namespace twk::session {
struct Session;
}

/// The files of the database directory: where they are, and the messages when one fails.
namespace twk::stores {

/// Full path of a file in the database directory.
std::string database_path(const session::Session& session, std::string_view file);

/// The message of a store whose file could not be opened, read or written: "Error Opening " and the file, and
/// the runtime's description on a line of its own.
void report_file_error(session::Session& session, std::string_view file, const base::RuntimeError& failure);

/// Raises an error that `file` holds no such record: "template" or "site", and its name.
[[noreturn]] void raise_no_record(const session::Session& session, std::string_view file,
                                  std::string_view kind, std::string_view name);

}  // namespace twk::stores
