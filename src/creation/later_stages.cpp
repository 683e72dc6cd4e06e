#include "creation/later_stages.hpp"

#include <string_view>

#include "creation/creation_run.hpp"
#include "session/session.hpp"

namespace twk::creation {
namespace {

void warn_unavailable(CreationRun& run, std::string_view what) {
  warn(run, std::string(what) + " not available in this version, nothing was done");
}

}  // namespace

void switch_off_later_stages(session::Form1& form) {
  for (controls::CheckBox* gate : {&form.Create_Shares, &form.Dir_Security, &form.Create_Mail_Account}) {
    gate->value = 0;
    gate->enabled = false;
  }
}

void CreateUserShares(CreationRun& run) {
  warn_unavailable(run, "Shares:");
}
void ApplyTerminalSettings(CreationRun& run) {
  warn_unavailable(run, "Terminal-server settings:");
}
void ApplyDirPermissions(CreationRun& run) {
  warn_unavailable(run, "Directory permissions:");
}
Mailbox CreateMailbox(CreationRun& run) {
  warn_unavailable(run, "Mailbox:");
  return Mailbox::kFailed;
}

}  // namespace twk::creation
