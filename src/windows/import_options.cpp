#include "windows/import_options.hpp"

#include <optional>

#include "base/text.hpp"
#include "batch/import.hpp"
#include "session/settings.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/import_windows.hpp"

namespace twk::windows {
namespace {

constexpr std::int32_t kLastField = 99;

enum GroupFields { kNone, kAll, kRange };

void tell_option(Desktop& session, std::string_view text) {
  session.platform.dialogs.MsgBox(text, platform::Buttons::kOk, platform::Icon::kExclamation,
                                  "Import Options");
}

std::optional<std::int32_t> bound(const controls::TextBox& box) {
  const auto number = base::to_number(box.text.get());
  return number && *number >= 0 && *number <= kLastField ? number : std::nullopt;
}

void check_bound(Desktop& session, const controls::TextBox& box) {
  if (!bound(box))
    tell_option(session, "Enter Number 0-99");
}

void enable_range(ImportGrps& window, bool enabled) {
  window.LowerRange.enabled = enabled;
  window.UpperRange.enabled = enabled;
}

std::string stored_bound(Desktop& session, std::string_view name) {
  std::string value = session::read_setting(session, session::kSetup, name);
  return value.empty() ? "0" : value;
}

}  // namespace

void ImportGrps_Load(Desktop& session) {
  ImportGrps& window = session.import_grps;
  window.Expiredate.text = session::read_setting(session, session::kSetup, "AccountExpire");
  window.LowerRange.text = stored_bound(session, "ImportGroupsStart");
  window.UpperRange.text = stored_bound(session, "ImportGroupsFinish");
  const auto lower = bound(window.LowerRange);
  const auto upper = bound(window.UpperRange);
  if (lower == 0 && upper == 0) {
    window.Grp_Range.index = kNone;
  } else if (lower == 0 && upper == kLastField) {
    window.Grp_Range.index = kAll;
  } else {
    window.Grp_Range.index = kRange;
  }
  enable_range(window, window.Grp_Range.index == kRange);
}

void Grp_Range_Click(Desktop& session) {
  ImportGrps& window = session.import_grps;
  const int chosen = window.Grp_Range.index;
  if (chosen != kRange) {
    window.LowerRange.text = "0";
    window.UpperRange.text = base::to_text(chosen == kAll ? kLastField : 0);
  }
  enable_range(window, chosen == kRange);
}

void LowerRange_Change(Desktop& session) {
  check_bound(session, session.import_grps.LowerRange);
}

void UpperRange_Change(Desktop& session) {
  check_bound(session, session.import_grps.UpperRange);
}

bool ImportGrps_OK(Desktop& session) {
  const ImportGrps& window = session.import_grps;
  const auto lower = bound(window.LowerRange);
  const auto upper = bound(window.UpperRange);
  if (!lower || !upper) {
    tell_option(session, "Enter Number 0-99");
    return false;
  }
  if (*lower > *upper) {
    tell_option(session, "Start value cannot be greater then Finish value");
    return false;
  }
  const std::string refused = batch::refused_expiry(session, window.Expiredate.text.get());
  if (!refused.empty()) {
    tell_option(session, refused + ".");
    return false;
  }
  session::write_setting(session, session::kSetup, "ImportGroupsStart", base::to_text(*lower));
  session::write_setting(session, session::kSetup, "ImportGroupsFinish", base::to_text(*upper));
  session::write_setting(session, session::kSetup, "AccountExpire", window.Expiredate.text.get());
  return true;
}

void ImportGrps_Cancel(Desktop& session) {
  ImportGrps_Load(session);
}

}  // namespace twk::windows
