#include "stores/template_store.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "controls/drawing_off.hpp"
#include "directory/load_options.hpp"
#include "records/record_file.hpp"
#include "session/form1.hpp"
#include "session/loaded_domain.hpp"
#include "session/log_tab.hpp"
#include "session/multi_user.hpp"
#include "session/session.hpp"
#include "session/windows.hpp"
#include "stores/database_files.hpp"
#include "stores/typed_text.hpp"

namespace twk::stores {
namespace {

using session::Form1;
using session::Session;

records::RecordFile open_templates(Session& session) {
  return records::RecordFile::open_read(session.platform.files, database_path(session, kTemplateFile),
                                        records::kTemplateRecordSize);
}

/// Stores the record at which a search stopped, as all searches do.
bool keep(Session& session, const records::RecordSearch& search) {
  session.LastRecordNo = search.number;
  if (search.number > 0)
    session.ActiveTemplate = records::decode_template(search.bytes);
  return search.found;
}

void show_variables(Session& session) {
  const records::TemplateRecord& record = session.ActiveTemplate;
  controls::ListView& rows = session.variables.ListView1;
  const controls::DrawingOff off(rows);
  rows.clear();
  for (std::size_t i = 1; i < records::kVariableSlots; ++i) {
    const std::string_view name = base::trim(record.VariableNames.at(i));
    const std::string_view value = base::trim(record.VariableValues.at(i));
    if (!name.empty() || !value.empty())
      rows.add({}, std::string(name), {}, {std::string(value)});
  }
}

/// Moves the domain's groups of exactly that name, the last first; without one, those of the name in another
/// case. False when there is none.
bool take_group(Session& session, std::string_view name) {
  std::vector<const controls::ListRow*> rows = session.domain.template_choice.find_text(name);
  const auto others = std::stable_partition(
      rows.begin(), rows.end(), [name](const auto* row) { return base::trim(row->text) == name; });
  if (others != rows.begin())
    rows.erase(others, rows.end());
  for (auto row = rows.rbegin(); row != rows.rend(); ++row)
    controls::move_row(session.domain.template_choice, **row, session.form1.ListView6);
  return !rows.empty();
}

void show_groups(Session& session) {
  const records::TemplateRecord& record = session.ActiveTemplate;
  session.UnshownGroups.clear();
  if (record.GroupCount == 0)
    return;
  const bool loaded = groups_are_loaded(session);
  const controls::DrawingOff groups_off(session.domain.template_choice);
  const controls::DrawingOff chosen_off(session.form1.ListView6);
  for (std::size_t i = 0; i < static_cast<std::size_t>(record.GroupCount); ++i) {
    const std::string_view name = base::trim(record.Groups.at(i));
    if (!take_group(session, name) && !loaded)
      session.UnshownGroups.emplace_back(name);
  }
}

std::string trimmed(std::string_view text) {
  return std::string(base::trim(text));
}

void set_share_points(Session& session, std::string_view home, std::string_view profile) {
  session::frmSharePoints& points = session.share_points;
  points.HomeSharePoint = home;
  points.ProfileSharePoint = profile;
  points.HomeShareName.text = points.HomeSharePoint;
  points.ProfileShareName.text = points.ProfileSharePoint;
}

/// `ActiveTemplate` onto the tab.
void show_template(Session& session) {
  Form1& form1 = session.form1;
  const records::TemplateRecord& record = session.ActiveTemplate;
  form1.propath.text = trimmed(record.ProfilePath);
  form1.homedir.text = trimmed(record.HomeDir);
  form1.Profilepath.text = trimmed(record.ProfileDirPath);
  form1.Homedirpath.text = trimmed(record.HomeDirPath);
  form1.sharenameprofile.text = trimmed(record.ProfileShare);
  form1.Sharenamehomedir.text = trimmed(record.HomeShare);
  form1.logon.text = trimmed(record.LogonScript);
  form1.Home_Drive_letter.text = trimmed(record.HomeDrive);
  form1.PrimaryGrp.caption = trimmed(record.PrimaryGroup);
  set_share_points(session, base::trim(record.HomeSharePoint), base::trim(record.ProfileSharePoint));
  session.TemplateLogonHours = record.LogonHours;
  show_variables(session);
  show_groups(session);
  form1.Variables.enabled = true;
  form1.btnSharePoints.enabled = true;
}

/// False, with an empty tab, when there is no such template.
bool load(Session& session, std::string_view name) {
  Template_Group_Sort(session);
  const records::RecordSearch search = open_templates(session).search([name](std::string_view bytes) {
    return !records::is_deleted(bytes) && records::listed_template_name(bytes) == name;
  });
  if (keep(session, search)) {
    show_template(session);
  } else {
    empty_template_fields(session);
    session.variables.ListView1.clear();
  }
  return search.found;
}

}  // namespace

bool groups_are_loaded(Session& session) {
  const directory::LoadOptions options = directory::read_load_options(session);
  const bool skipped =
      session.DirectoryMode != session::kWinNtMode && options.SkipGroups && !options.TemplateGroupsOnly;
  return !skipped && !(session.domain.template_choice.empty() && session.form1.ListView6.empty());
}

std::string share_point(std::string_view typed) {
  std::string point(base::trim(typed));
  if (!point.ends_with('\\'))
    point += '\\';
  if (point.starts_with('\\'))
    point.erase(0, 1);
  return point;
}

std::int32_t Find_Template(Session& session) {
  const std::string wanted = folded_name(session.form1.templatelst.text.get());
  const records::RecordSearch search = open_templates(session).search([&wanted](std::string_view bytes) {
    return !records::is_deleted(bytes) && folded_name(records::listed_template_name(bytes)) == wanted;
  });
  return keep(session, search) ? search.number : -1;
}

void LoadTemplate(Session& session, std::string_view name) {
  try {
    load(session, name);
  } catch (const base::RuntimeError& failure) {
    report_file_error(session, kTemplateFile, failure);
  }
}

void require_template(Session& session, std::string_view name) {
  if (!load(session, name))
    raise_no_record(session, kTemplateFile, "template", name);
}

void load_template_record(Session& session, std::int32_t number) {
  const records::TemplateRecord record = records::decode_template(open_templates(session).read(number));
  Template_Group_Sort(session);
  session.ActiveTemplate = record;
  show_template(session);
}

std::vector<TemplateGroup> template_groups(const Session& session) {
  const controls::ListView& list = session.form1.ListView6;
  std::vector<TemplateGroup> groups;
  for (std::size_t i = 0; i < list.size(); ++i)
    groups.push_back({trimmed(list.at(i).text), list.at(i).key});
  return groups;
}

void Template_Group_Sort(Session& session) {
  Form1& form1 = session.form1;
  if (form1.ListView6.empty())
    return;
  const controls::DrawingOff groups_off(session.domain.template_choice);
  const controls::DrawingOff chosen_off(form1.ListView6);
  for (std::size_t i = 0; i < form1.ListView6.size(); ++i) {
    const controls::ListRow& row = form1.ListView6.at(i);
    // The domain may have been reloaded since the group was moved.
    if (row.key.empty() || session.domain.template_choice.find_key(row.key) == nullptr)
      session.domain.template_choice.add(row.key, row.text, row.icon);
  }
  form1.ListView6.clear();
}

void load_templates(Session& session) {
  base::Trap trap;
  trap([&] {
    open_templates(session).search([&session](std::string_view bytes) {
      if (records::is_deleted(bytes))
        return false;
      const std::string name = records::listed_template_name(bytes);
      session.form1.nutemplate.locked = true;
      session.form1.templatelst.add_item(name);
      session.form1.nutemplate.add_item(name);
      session.multi_user.Multi_Template.add_item(name);
      return false;
    });
  });
  if (trap.number() != 0)
    session::LOG_TAB(session, session::kYellow, "Cannot read Template.dat: " + trap.description());
}

void empty_template_fields(Session& session) {
  Form1& form1 = session.form1;
  Template_Group_Sort(session);
  for (controls::TextBox* const field :
       {&form1.propath, &form1.homedir, &form1.Profilepath, &form1.Homedirpath, &form1.sharenameprofile,
        &form1.Sharenamehomedir, &form1.logon})
    field->text = std::string();
  form1.Home_Drive_letter.text = std::string();
  form1.PrimaryGrp.caption = std::string();
  set_share_points(session, {}, {});
  session.UnshownGroups.clear();
}

}  // namespace twk::stores
