#include "directory/loading/select_domain.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/loading/ad_load.hpp"
#include "directory/loading/nt_load.hpp"
#include "directory/operations.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"

namespace twk::directory {
namespace {

using session::Session;

std::string mode_text(std::int32_t mode) {
  if (mode == session::kNativeMode)
    return "2000-Native Mode";
  return mode == session::kMixedMode ? "2000-Mixed Mode" : "WinNT:";
}

bool load_domain(Session& session) {
  session.DirectoryMode = Determine_Mode(session, session.DomainName);
  const bool active_directory = session::is_active_directory(session);
  session.status.panel2 = mode_text(session.DirectoryMode);
  session.domain.mode_known.emit();
  session.Error_Status_Text = "Can't Find " + session.DomainName + " Domain";
  return active_directory ? Load_AD_Domain(session) : Load_NT_Domain(session);
}

}  // namespace

bool Select_Domain(Session& session, std::string_view name) {
  session.UserCount = 0;
  session.GroupCount = 0;
  if (name.empty())
    return false;
  session.DomainName = std::string(name);
  bool loaded = false;
  base::Trap trap(session::is_debug(session));
  trap([&] { loaded = load_domain(session); });
  session.CurrentUser.reset();
  session.CurrentGroup.reset();
  if (!loaded) {
    if (trap.number() != 0)
      session.status.panel1 = session.Error_Status_Text;
    return false;
  }
  session.status.panel1 = "Number of Users:" + base::to_text(session.UserCount) +
                          "  Number of Groups:" + base::to_text(session.GroupCount);
  return true;
}

}  // namespace twk::directory
