#include "windows/template_tab.hpp"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "base/text.hpp"
#include "session/loaded_database.hpp"
#include "session/loaded_domain.hpp"
#include "stores/template_changes.hpp"
#include "stores/template_store.hpp"
#include "windows/account/unsaved.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/hourglass.hpp"
#include "windows/state/import_windows.hpp"
#include "windows/state/multi_user.hpp"

namespace twk::windows {
namespace {

using stores::StoreOutcome;
using stores::TemplateEdit;

/// The boxes of a template and the texts that they hold.
constexpr std::array<std::pair<controls::TextBox Form1::*, std::string TemplateEdit::*>, 7> kFields = {{
    {&Form1::propath, &TemplateEdit::ProfilePath},
    {&Form1::homedir, &TemplateEdit::HomeDir},
    {&Form1::Profilepath, &TemplateEdit::ProfileDirPath},
    {&Form1::Homedirpath, &TemplateEdit::HomeDirPath},
    {&Form1::sharenameprofile, &TemplateEdit::ProfileShare},
    {&Form1::Sharenamehomedir, &TemplateEdit::HomeShare},
    {&Form1::logon, &TemplateEdit::LogonScript},
}};

void show_edit(Desktop& session, const TemplateEdit& edit) {
  Form1& form1 = session.form1;
  for (const auto& [box, text] : kFields)
    (form1.*box).text = edit.*text;
  form1.Home_Drive_letter.text = edit.HomeDrive;
  form1.PrimaryGrp.caption = edit.PrimaryGroup;
  frmSharePoints& points = session.share_points;
  points.HomeSharePoint = edit.HomeSharePoint;
  points.ProfileSharePoint = edit.ProfileSharePoint;
  points.HomeShareName.text = points.HomeSharePoint;
  points.ProfileShareName.text = points.ProfileSharePoint;
}

/// What the tab holds; a new template has its name in a box of its own.
TemplateEdit edit_of_fields(const Desktop& session) {
  const Form1& form1 = session.form1;
  TemplateEdit edit;
  edit.Name = session.EditingTemplate ? form1.templatelst.text.get() : form1.New_Template_Name.text.get();
  for (const auto& [box, text] : kFields)
    edit.*text = (form1.*box).text;
  edit.HomeDrive = form1.Home_Drive_letter.text;
  edit.PrimaryGroup = form1.PrimaryGrp.caption;
  edit.HomeSharePoint = session.share_points.HomeSharePoint;
  edit.ProfileSharePoint = session.share_points.ProfileSharePoint;
  return edit;
}

void show_loaded(Desktop& session) {
  show_edit(session, stores::edit_of(session.ActiveTemplate));
  session.form1.Variables.enabled = true;
  session.form1.btnSharePoints.enabled = true;
}

void empty_fields(Desktop& session) {
  stores::release_template(session);
  show_edit(session, {});
}

void lock_fields(Form1& form1, bool locked) {
  for (const auto& [box, text] : kFields) {
    (form1.*box).locked = locked;
    (form1.*box).paint = locked ? controls::Paint::kDefault : controls::Paint::kEditing;
  }
  form1.Home_Drive_letter.locked = locked;
}

void show_editing(Form1& form1) {
  lock_fields(form1, false);
  for (controls::Button* const button : {&form1.add, &form1.remove, &form1.savetemplate, &form1.SetPriGroup,
                                         &form1.LogonHours, &form1.btnSharePoints})
    button->enabled = true;
  for (controls::Button* const button : {&form1.NewTemplate, &form1.EditTemplate, &form1.DeleteTemplate})
    button->enabled = false;
}

void show_chosen_template(Desktop& session) {
  Form1& form1 = session.form1;
  session.EditingTemplate = false;
  lock_fields(form1, true);
  form1.New_Template_Name.visible = false;
  form1.New_Template_Name.text = std::string();
  form1.templatelst.locked = false;
  const bool chosen = !base::trim(form1.templatelst.text.get()).empty();
  for (controls::Button* const button : {&form1.add, &form1.remove, &form1.savetemplate, &form1.SetPriGroup})
    button->enabled = false;
  for (controls::Button* const button : {&form1.EditTemplate, &form1.DeleteTemplate, &form1.paste,
                                         &form1.LogonHours, &form1.Variables, &form1.btnSharePoints})
    button->enabled = chosen;
  form1.NewTemplate.enabled = true;
}

void list_new_template(Desktop& session) {
  Form1& form1 = session.form1;
  const std::string name = records::padded_template_name(session.ActiveTemplate.Name);
  form1.templatelst.add_item(name);
  form1.nutemplate.add_item(name);
  session.multi_user.Multi_Template.add_item(name);
  form1.templatelst.text = name;
}

std::vector<std::string> groups_of_fields(const Desktop& session) {
  std::vector<std::string> names = session.UnshownGroups;
  const controls::ListView& list = session.domain.template_groups;
  for (std::size_t place = 0; place < list.size(); ++place)
    names.emplace_back(base::trim(list.at(place).text));
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<std::string> groups_of_record(const records::TemplateRecord& record) {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < record.Groups.size() && static_cast<std::int32_t>(i) < record.GroupCount; ++i)
    names.emplace_back(base::trim(record.Groups.at(i)));
  std::sort(names.begin(), names.end());
  return names;
}

bool same_fields(const TemplateEdit& left, const TemplateEdit& right) {
  for (const auto& [box, text] : kFields) {
    if (base::trim(left.*text) != base::trim(right.*text))
      return false;
  }
  return base::trim(left.HomeDrive) == base::trim(right.HomeDrive) &&
         base::trim(left.PrimaryGroup) == base::trim(right.PrimaryGroup) &&
         left.HomeSharePoint == right.HomeSharePoint && left.ProfileSharePoint == right.ProfileSharePoint;
}

/// True when the tab is open for changes and holds something that is not stored.
bool is_template_unsaved(const Desktop& session) {
  if (!session.form1.savetemplate.enabled.get())
    return false;
  const TemplateEdit edit = edit_of_fields(session);
  if (!session.EditingTemplate)
    return !edit.Name.empty() || !same_fields(edit, {}) || !groups_of_fields(session).empty();
  return !same_fields(edit, stores::edit_of(session.ActiveTemplate)) ||
         groups_of_fields(session) != groups_of_record(session.ActiveTemplate);
}

/// Shows the person what keeps the fields from being saved.
bool can_save(Desktop& session, const TemplateEdit& edit, stores::SaveAs as) {
  const StoreOutcome outcome = stores::check_template(session, edit, as);
  stores::tell(session, outcome);
  if (outcome.at_name)
    session.form1.SetFocus.emit("New_Template_Name");
  return outcome.done;
}

}  // namespace

void list_templates(Desktop& session) {
  Form1& form1 = session.form1;
  for (const std::string& name : session.database.templates) {
    form1.nutemplate.locked = true;
    form1.templatelst.add_item(name);
    form1.nutemplate.add_item(name);
    session.multi_user.Multi_Template.add_item(name);
  }
}

void Clear_TT(Desktop& session) {
  session.form1.templatelst.text = std::string();
  empty_fields(session);
  show_chosen_template(session);
}

bool may_leave_template(Desktop& session) {
  if (!is_template_unsaved(session))
    return true;
  const std::string name(base::trim(edit_of_fields(session).Name));
  return may_leave(session, name.empty() ? "the new template" : "the changes to the template " + name, [&] {
    savetemplate(session);
    return !session.form1.savetemplate.enabled.get();
  });
}

void templatelst_Click(Desktop& session) {
  const std::string name = session.form1.templatelst.text;
  if (base::trim(name).empty())
    return;
  if (!may_leave_template(session)) {
    session.form1.templatelst.text = std::string();
    return;
  }
  session.form1.templatelst.text = name;
  show_chosen_template(session);
  const StoreOutcome loaded = stores::load_template(session, name);
  if (loaded.done)
    show_loaded(session);
  else if (loaded.message.empty())
    empty_fields(session);
  stores::tell(session, loaded);
}

void NewTemplate(Desktop& session) {
  Form1& form1 = session.form1;
  session.EditingTemplate = false;
  form1.New_Template_Name.text = std::string();
  form1.New_Template_Name.visible = true;
  empty_fields(session);
  show_editing(form1);
  form1.paste.enabled = true;
}

void EditTemplate(Desktop& session) {
  if (base::trim(session.form1.templatelst.text.get()).empty())
    return;
  session.status.panel1 = "Edit Template...";
  session.EditingTemplate = true;
  show_editing(session.form1);
  session.form1.templatelst.locked = true;
}

void savetemplate(Desktop& session) {
  Form1& form1 = session.form1;
  const TemplateEdit edit = edit_of_fields(session);
  const stores::SaveAs as = session.EditingTemplate ? stores::SaveAs::kLive : stores::SaveAs::kNew;
  if (!can_save(session, edit, as))
    return;
  session.domain.template_choice.select(nullptr);
  const WorkingStatus saving(form1, "Saving Template...");
  if (edit.HomeDir.empty())
    form1.Home_Drive_letter.text = std::string();
  const StoreOutcome outcome = stores::save_template(session, edit, as);
  if (outcome.done && as == stores::SaveAs::kNew)
    list_new_template(session);
  stores::tell(session, outcome);
  if (outcome.done)
    show_chosen_template(session);
}

void DeleteTemplate(Desktop& session) {
  Form1& form1 = session.form1;
  const std::string name(base::trim(form1.templatelst.text.get()));
  if (name.empty() || (form1.Confirm_Deletes.on() && !stores::agrees_to_delete_template(session)))
    return;
  const WorkingStatus deleting(form1, "Deleting Template...");
  const StoreOutcome outcome = stores::delete_template(session, name);
  if (outcome.done) {
    form1.nutemplate.remove_item(name);
    session.multi_user.Multi_Template.remove_item(name);
    form1.templatelst.remove_item(name);
    Clear_TT(session);
  }
  stores::tell(session, outcome);
}

void paste(Desktop& session) {
  if (!session.form1.New_Template_Name.visible.get())
    return;
  try {
    if (session.LastRecordNo < 1 || session.LastRecordNo > stores::count_templates(session))
      return;
    stores::load_template_record(session, session.LastRecordNo);
    show_loaded(session);
  } catch (const base::RuntimeError& failure) {
    stores::tell(session, stores::file_failure(stores::kTemplateFile, failure));
  }
}

void Template_Cancel(Desktop& session) {
  session.domain.template_choice.select(nullptr);
  Clear_TT(session);
}

void Template_Escape(Desktop& session) {
  if (may_leave_template(session))
    Template_Cancel(session);
}

void add_Click(Desktop& session) {
  if (session.form1.savetemplate.enabled.get())
    stores::add_selected_groups(session);
}

void remove_Click(Desktop& session) {
  if (!session.form1.savetemplate.enabled.get())
    return;
  controls::ListView& groups = session.domain.template_groups;
  for (const controls::ListRow* const row : groups.selected_rows())
    controls::move_row(groups, *row, session.domain.template_choice);
}

void ListView5_DblClick(Desktop& session) {
  add_Click(session);
}

void ListView6_DblClick(Desktop& session) {
  remove_Click(session);
}

void SetPriGroup(Desktop& session) {
  const controls::ListRow* const row = session.domain.template_groups.selected();
  if (row == nullptr)
    return;
  if (std::string refusal = stores::primary_group_refusal(*row); !refusal.empty())
    return stores::tell(session, stores::refused(std::move(refusal)));
  session.form1.PrimaryGrp.caption = row->text;
}

void Variables(Desktop& session) {
  if (session.form1.New_Template_Name.visible.get()) {
    stores::tell(session,
                 stores::refused_in_box("Must Save Template before editing Variables...", "Warning"));
    return;
  }
  session.variables.visible = true;
  session.platform.dialogs.show_modal("Varibles_Form");
  Varibles_Form_Unload(session);
}

void Varibles_Form_Unload(Desktop& session) {
  session.variables.visible = false;
  stores::tell(session, stores::save_variables(session, session.form1.templatelst.text.get()));
}

}  // namespace twk::windows
