#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "batch/import.hpp"
#include "session/session.hpp"

namespace twk::batch {

/// How a rehearsed import went.
struct RehearsedImport {
  bool whole = false;      ///< as `Import_Users` returns it
  std::int32_t added = 0;  ///< users who would be created
  std::string failure;     ///< why the file could not be read
};

struct RehearsalHooks {
  std::function<void(const std::string& step)> step;  ///< what would be done next, secrets hidden
  std::function<void(const session::ImportRow&)> row_done;
};

/// What `Import_Users` would do with this file: the same run over services that change nothing, in a session
/// of its own that knows what this one has loaded. `session.import.ImportStopped` ends it before the next
/// line.
RehearsedImport rehearse_import(session::Session& session, std::string_view path, const ImportOrder& order,
                                ImportView& view, const RehearsalHooks& hooks);

}  // namespace twk::batch
