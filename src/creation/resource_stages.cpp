#include "creation/resource_stages.hpp"

#include <string_view>

#include "creation/creation_run.hpp"
#include "directory/operations.hpp"
#include "resources/WTS.hpp"
#include "session/session.hpp"

namespace twk::creation {
namespace {

void warn_unavailable(CreationRun& run, std::string_view what) {
  warn(run, std::string(what) + " not available in this version, nothing was done");
}

}  // namespace

void CreateUserShares(CreationRun& run) {
  warn_unavailable(run, "Shares:");
}
void ApplyTerminalSettings(CreationRun& run) {
  session::Session& session = run.session;
  resources::ApplyTerminalSettings(session, run.SamName, directory::winnt_domain(session), false, 0);
}
void ApplyDirPermissions(CreationRun& run) {
  warn_unavailable(run, "Directory permissions:");
}

}  // namespace twk::creation
