#pragma once

#include <string>
#include <string_view>

#include "base/errors.hpp"

namespace twk::session {
struct Session;
}

/// The files of the database directory: where they are.
namespace twk::stores {

/// Full path of a file in the database directory.
std::string database_path(const session::Session& session, std::string_view file);

/// Raises an error that `file` holds no such record: "template" or "site", and its name.
[[noreturn]] void raise_no_record(const session::Session& session, std::string_view file,
                                  std::string_view kind, std::string_view name);

}  // namespace twk::stores
