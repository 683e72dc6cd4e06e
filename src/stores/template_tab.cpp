#include "stores/template_tab.hpp"

#include <algorithm>
#include <functional>

#include "base/text.hpp"
#include "records/record_file.hpp"
#include "session/form1.hpp"
#include "session/hourglass.hpp"
#include "session/loaded_domain.hpp"
#include "session/multi_user.hpp"
#include "session/session.hpp"
#include "session/windows.hpp"
#include "stores/database_files.hpp"
#include "stores/template_store.hpp"
#include "stores/typed_text.hpp"

namespace twk::stores {
namespace {

using session::Form1;
using session::Session;

constexpr std::size_t kGroupNameLength = 21;
constexpr std::size_t kSharePointLength = 100;

std::array<controls::TextBox*, 7> fields(Form1& form1) {
  return {&form1.propath,          &form1.homedir,          &form1.Profilepath, &form1.Homedirpath,
          &form1.sharenameprofile, &form1.Sharenamehomedir, &form1.logon};
}

void lock_fields(Form1& form1, bool locked) {
  for (controls::TextBox* const field : fields(form1)) {
    field->locked = locked;
    field->paint = locked ? controls::Paint::kDefault : controls::Paint::kEditing;
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

void show_browsing(Session& session) {
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

void warn(Session& session, std::string_view text, std::string_view title) {
  session.platform.dialogs.MsgBox(text, platform::Buttons::kOk, platform::Icon::kExclamation, title);
}

void set_status(Session& session, std::string_view text) {
  session.status.panel1 = std::string(text);
}

bool is_drive(std::string_view text) {
  return text.size() == 2 && text[1] == ':' &&
         ((text[0] >= 'A' && text[0] <= 'Z') || (text[0] >= 'a' && text[0] <= 'z'));
}

records::RecordFile open_templates(Session& session) {
  return records::RecordFile::open(session.platform.files, database_path(session, kTemplateFile),
                                   records::kTemplateRecordSize);
}

/// The number of the chosen template's record, for a change to it.
std::int32_t record_to_change(Session& session) {
  const std::int32_t number = Find_Template(session);
  if (number < 1)
    throw base::RuntimeError(base::error::kOutOfBounds, "The template is not in the file any more.");
  return number;
}

/// Tells the person what is wrong with the name of a new template.
bool can_take_new_name(Session& session) {
  Form1& form1 = session.form1;
  const std::string name(base::trim(form1.New_Template_Name.text.get()));
  if (refuses(session, record_name_refusal, {name}))
    return false;
  form1.templatelst.text = name;
  const std::string wanted = folded_name(records::padded_template_name(name));
  const auto& items = form1.templatelst.items();
  if (std::none_of(items.begin(), items.end(),
                   [&wanted](const std::string& item) { return folded_name(item) == wanted; }))
    return true;
  warn(session, "Template Name " + name + " Already Exist \r\nChange Template Name.",
       "Template Name Conflict...");
  form1.SetFocus.emit("New_Template_Name");
  return false;
}

/// The same for the texts of the fields.
bool can_store_fields(Session& session) {
  const session::frmSharePoints& points = session.share_points;
  for (const controls::TextBox* const field : fields(session.form1)) {
    if (refuses(session, record_refusal, {field->text.get()}))
      return false;
  }
  for (const std::string& point : {points.HomeSharePoint, points.ProfileSharePoint}) {
    if (base::length(share_point(point)) > kSharePointLength) {
      warn(session, "A share point has at most 100 characters, with a backslash at its end.", "Share Points");
      return false;
    }
  }
  return !refuses(session, record_refusal,
                  {session.form1.PrimaryGrp.caption.get(), points.HomeSharePoint, points.ProfileSharePoint});
}

/// Tells the person what keeps the fields from being saved.
bool can_save(Session& session) {
  Form1& form1 = session.form1;
  const std::string& drive = form1.Home_Drive_letter.text;
  if (!drive.empty() && !is_drive(drive)) {
    session.platform.dialogs.beep();
    set_status(session, "Home Drive Format Incorrect");
    return false;
  }
  if (!session.EditingTemplate && !can_take_new_name(session))
    return false;
  if (base::trim(form1.templatelst.text.get()).empty()) {
    warn(session, "Template Name cannot be blank.", "Template Name");
    form1.SetFocus.emit("New_Template_Name");
    return false;
  }
  return can_store_fields(session);
}

/// Loads the chosen template's record into `ActiveTemplate`, changes it there and writes it.
void change_record(Session& session, const std::function<void()>& change) {
  records::RecordFile file = open_templates(session);
  const records::RecordFile::NumbersHold held = file.hold_numbers();
  const std::int32_t number = record_to_change(session);
  change();
  file.write(number, records::encode_template(session.ActiveTemplate));
}

void fill_record(Session& session) {
  const Form1& form1 = session.form1;
  records::TemplateRecord& record = session.ActiveTemplate;
  record.Deleted = false;
  std::vector<std::string> groups;
  for (std::size_t i = 0; i < form1.ListView6.size(); ++i)
    groups.push_back(form1.ListView6.at(i).text);
  groups.insert(groups.end(), session.UnshownGroups.begin(), session.UnshownGroups.end());
  groups.resize(std::min(groups.size(), records::kMostGroups));
  record.GroupCount = static_cast<std::int16_t>(groups.size());
  record.Name = base::trim(form1.templatelst.text.get());
  record.ProfilePath = form1.propath.text;
  record.HomeDir = form1.homedir.text;
  record.ProfileDirPath = form1.Profilepath.text;
  record.HomeDirPath = form1.Homedirpath.text;
  record.ProfileShare = form1.sharenameprofile.text;
  record.HomeShare = form1.Sharenamehomedir.text;
  record.HomeSharePoint = share_point(session.share_points.HomeSharePoint);
  record.ProfileSharePoint = share_point(session.share_points.ProfileSharePoint);
  record.LogonScript = form1.logon.text;
  record.HomeDrive = form1.Home_Drive_letter.text;
  record.LogonHours = session.TemplateLogonHours;
  record.PrimaryGroup = form1.PrimaryGrp.caption;
  std::copy(groups.begin(), groups.end(), record.Groups.begin());
}

void write_record(Session& session) {
  if (!session.EditingTemplate) {
    fill_record(session);
    const std::string bytes = records::encode_template(session.ActiveTemplate);
    session.LastRecordNo = open_templates(session).append(bytes);
    return;
  }
  change_record(session, [&session] { fill_record(session); });
}

void list_new_template(Session& session) {
  Form1& form1 = session.form1;
  const std::string name = records::padded_template_name(session.ActiveTemplate.Name);
  form1.templatelst.add_item(name);
  form1.nutemplate.add_item(name);
  session.multi_user.Multi_Template.add_item(name);
  form1.templatelst.text = name;
}

/// Why a template's field cannot hold the name of a group: it would be cut or altered there and never
/// found.
std::string group_refusal(std::string_view name) {
  if (base::length(name) <= kGroupNameLength)
    return record_refusal(name);
  return "The group \"" + std::string(name) + "\" was not added: a template holds group names of at most " +
         base::to_text(kGroupNameLength) + " characters.";
}

std::vector<const controls::ListRow*> selected_rows(const controls::ListView& list) {
  std::vector<const controls::ListRow*> rows;
  for (std::size_t i = 0; i < list.size(); ++i) {
    if (list.at(i).selected)
      rows.push_back(&list.at(i));
  }
  return rows;
}

}  // namespace

void Clear_TT(Session& session) {
  session.form1.templatelst.text = std::string();
  empty_template_fields(session);
  show_browsing(session);
}

void templatelst_Click(Session& session) {
  const std::string name = session.form1.templatelst.text;
  if (base::trim(name).empty())
    return;
  show_browsing(session);
  LoadTemplate(session, name);
}

void NewTemplate(Session& session) {
  Form1& form1 = session.form1;
  session.EditingTemplate = false;
  form1.New_Template_Name.text = std::string();
  form1.New_Template_Name.visible = true;
  empty_template_fields(session);
  show_editing(form1);
  form1.paste.enabled = true;
}

void EditTemplate(Session& session) {
  if (base::trim(session.form1.templatelst.text.get()).empty())
    return;
  set_status(session, "Edit Template...");
  session.EditingTemplate = true;
  show_editing(session.form1);
  session.form1.templatelst.locked = true;
}

void savetemplate(Session& session) {
  Form1& form1 = session.form1;
  if (!can_save(session))
    return;
  session.domain.template_choice.select(nullptr);
  const session::WorkingStatus saving(form1, "Saving Template...");
  // A drive without a home directory means nothing.
  if (form1.homedir.text.get().empty())
    form1.Home_Drive_letter.text = std::string();
  try {
    write_record(session);
  } catch (const base::RuntimeError& failure) {
    report_file_error(session, kTemplateFile, failure);
    return;
  }
  if (!session.EditingTemplate)
    list_new_template(session);
  set_status(session, "Template Saved...");
  show_browsing(session);
}

void DeleteTemplate(Session& session) {
  Form1& form1 = session.form1;
  const std::string name(base::trim(form1.templatelst.text.get()));
  if (name.empty())
    return;
  if (form1.Confirm_Deletes.on() &&
      session.platform.dialogs.MsgBox("Sure to Delete Template", platform::Buttons::kYesNo,
                                      platform::Icon::kQuestion, "Delete Template") != platform::Answer::kYes)
    return;
  const session::WorkingStatus deleting(form1, "Deleting Template...");
  try {
    records::RecordFile file = open_templates(session);
    const records::RecordFile::NumbersHold held = file.hold_numbers();
    if (const std::int32_t number = Find_Template(session); number > 0) {
      std::string bytes = file.read(number);
      records::mark_deleted(bytes);
      file.write(number, bytes);
    }
  } catch (const base::RuntimeError& failure) {
    report_file_error(session, kTemplateFile, failure);
    return;
  }
  form1.nutemplate.remove_item(name);
  session.multi_user.Multi_Template.remove_item(name);
  form1.templatelst.remove_item(name);
  Clear_TT(session);
  set_status(session, "Template Deleted.");
}

void paste(Session& session) {
  if (!session.form1.New_Template_Name.visible.get())
    return;
  try {
    if (session.LastRecordNo < 1 || session.LastRecordNo > open_templates(session).count())
      return;
    load_template_record(session, session.LastRecordNo);
  } catch (const base::RuntimeError& failure) {
    report_file_error(session, kTemplateFile, failure);
  }
}

void Template_Cancel(Session& session) {
  session.domain.template_choice.select(nullptr);
  Template_Group_Sort(session);
  Clear_TT(session);
}

void add_Click(Session& session) {
  Form1& form1 = session.form1;
  if (!form1.savetemplate.enabled.get())
    return;
  for (const controls::ListRow* const row : selected_rows(session.domain.template_choice)) {
    if (const std::string refusal = group_refusal(row->text); !refusal.empty()) {
      warn(session, refusal, "Group Not Added");
      continue;
    }
    if (form1.ListView6.size() + session.UnshownGroups.size() >= records::kMostGroups) {
      warn(session, "Templates Limited to 75 Groups", "Max Groups Reached");
      return;
    }
    controls::move_row(session.domain.template_choice, *row, form1.ListView6);
  }
}

void remove_Click(Session& session) {
  Form1& form1 = session.form1;
  if (!form1.savetemplate.enabled.get())
    return;
  for (const controls::ListRow* const row : selected_rows(form1.ListView6))
    controls::move_row(form1.ListView6, *row, session.domain.template_choice);
}

void ListView5_DblClick(Session& session) {
  add_Click(session);
}

void ListView6_DblClick(Session& session) {
  remove_Click(session);
}

void SetPriGroup(Session& session) {
  const controls::ListRow* const row = session.form1.ListView6.selected();
  if (row == nullptr)
    return;
  if (row->icon == "Local") {
    session.platform.dialogs.beep();
    set_status(session, "A local group cannot be the primary group");
    return;
  }
  session.form1.PrimaryGrp.caption = row->text;
}

void Variables(Session& session) {
  if (session.form1.New_Template_Name.visible.get()) {
    warn(session, "Must Save Template before editing Variables...", "Warning");
    return;
  }
  session.variables.visible = true;
  session.platform.dialogs.show_modal("Varibles_Form");
  Varibles_Form_Unload(session);
}

void Varibles_Form_Unload(Session& session) {
  session.variables.visible = false;
  const controls::ListView& rows = session.variables.ListView1;
  try {
    change_record(session, [&] {
      records::TemplateRecord& record = session.ActiveTemplate;
      for (std::size_t slot = 1; slot < records::kVariableSlots; ++slot) {
        const bool used = slot <= rows.size();
        record.VariableNames.at(slot) = used ? rows.at(slot - 1).text : std::string();
        const bool has_value = used && !rows.at(slot - 1).sub_items.empty();
        record.VariableValues.at(slot) = has_value ? rows.at(slot - 1).sub_items.front() : std::string();
      }
    });
  } catch (const base::RuntimeError& failure) {
    report_file_error(session, kTemplateFile, failure);
  }
}

}  // namespace twk::stores
