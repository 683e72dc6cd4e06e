#include "creation/share_points_form.hpp"

#include "base/text.hpp"
#include "session/session.hpp"
#include "stores/typed_text.hpp"

namespace twk::creation {
namespace {

std::string share_point(std::string_view typed) {
  std::string point(base::trim(typed));
  if (!point.ends_with('\\'))
    point += '\\';
  if (point.starts_with('\\'))
    point.erase(0, 1);
  return point;
}

}  // namespace

void btnSharePoints_Click(session::Session& session) {
  frmSharePoints_Load(session);
  session.platform.dialogs.show_modal("frmSharePoints");
}

void frmSharePoints_Load(session::Session& session) {
  session::frmSharePoints& window = session.share_points;
  window.HomeShareName.text = window.HomeSharePoint;
  window.ProfileShareName.text = window.ProfileSharePoint;
  const bool editing = session.form1.savetemplate.enabled;
  window.HomeShareName.enabled = editing;
  window.ProfileShareName.enabled = editing;
  window.btnOK.enabled = editing;
}

bool frmSharePoints_btnOK_Click(session::Session& session) {
  session::frmSharePoints& window = session.share_points;
  if (stores::refuses_control_characters(
          session, {window.HomeShareName.text.get(), window.ProfileShareName.text.get()}))
    return false;
  window.HomeSharePoint = share_point(window.HomeShareName.text.get());
  window.ProfileSharePoint = share_point(window.ProfileShareName.text.get());
  return true;
}

void frmSharePoints_btnCancel_Click(session::Session& session) {
  session::frmSharePoints& window = session.share_points;
  window.HomeShareName.text = window.HomeSharePoint;
  window.ProfileShareName.text = window.ProfileSharePoint;
}

}  // namespace twk::creation
