#include "stores/database_files.hpp"

#include "base/text.hpp"
#include "session/session.hpp"

namespace twk::stores {

std::string database_path(const session::Session& session, std::string_view file) {
  return session.dbpath + std::string(file);
}

void raise_no_record(const session::Session& session, std::string_view file, std::string_view kind,
                     std::string_view name) {
  base::raise(base::error::kOutOfBounds, database_path(session, file) + " is missing or holds no " +
                                             std::string(kind) + " \"" + std::string(base::trim(name)) +
                                             "\"");
}

}  // namespace twk::stores
