#include "windows/share_points_form.hpp"

#include "stores/template_changes.hpp"
#include "stores/typed_text.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/import_windows.hpp"

namespace twk::windows {

void btnSharePoints_Click(Desktop& session) {
  frmSharePoints_Load(session);
  session.platform.dialogs.show_modal("frmSharePoints");
}

void frmSharePoints_Load(Desktop& session) {
  frmSharePoints& window = session.share_points;
  window.HomeShareName.text = window.HomeSharePoint;
  window.ProfileShareName.text = window.ProfileSharePoint;
  const bool editing = session.form1.savetemplate.enabled;
  window.HomeShareName.enabled = editing;
  window.ProfileShareName.enabled = editing;
  window.btnOK.enabled = editing;
}

bool frmSharePoints_btnOK_Click(Desktop& session) {
  frmSharePoints& window = session.share_points;
  if (stores::refuses(session, stores::record_refusal,
                      {window.HomeShareName.text.get(), window.ProfileShareName.text.get()}))
    return false;
  window.HomeSharePoint = stores::share_point(window.HomeShareName.text.get());
  window.ProfileSharePoint = stores::share_point(window.ProfileShareName.text.get());
  return true;
}

void frmSharePoints_btnCancel_Click(Desktop& session) {
  frmSharePoints& window = session.share_points;
  window.HomeShareName.text = window.HomeSharePoint;
  window.ProfileShareName.text = window.ProfileSharePoint;
}

}  // namespace twk::windows
