#include "windows/password_fields.hpp"

#include "session/settings.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"

namespace twk::windows {
namespace {

/// Widths of the frame around the passwords, in twips.
constexpr int kFrameWidth = 2775;
constexpr int kWideFrameWidth = 5535;

}  // namespace

void show_password_frame(Desktop& session) {
  Form1& form = session.form1;
  const bool formatted = form.FmtPass.on();
  form.Frame4.width = formatted ? kWideFrameWidth : kFrameWidth;
  form.Frame4.caption = formatted ? "Default Passwords" : "Default Password";
  form.Formatted_Password.visible = formatted;
  form.Formatted_Password.enabled = formatted;
}

void FmtPass_Click(Desktop& session) {
  show_password_frame(session);
  session::write_setting(session, session::kPreferences, "UseFormattedPassword",
                         session.form1.FmtPass.on() ? "YES" : "No");
}

}  // namespace twk::windows
