#include "stores/template_changes.hpp"

#include <algorithm>
#include <functional>

#include "base/text.hpp"
#include "records/record_file.hpp"
#include "session/loaded_database.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"
#include "stores/database_files.hpp"
#include "stores/template_store.hpp"
#include "stores/typed_text.hpp"

namespace twk::stores {
namespace {

using records::RecordFile;
using records::TemplateRecord;
using session::Session;

constexpr std::size_t kGroupNameLength = 21;
constexpr std::size_t kSharePointLength = 100;

bool is_drive(std::string_view text) {
  return text.size() == 2 && text[1] == ':' &&
         ((text[0] >= 'A' && text[0] <= 'Z') || (text[0] >= 'a' && text[0] <= 'z'));
}

RecordFile open_templates(Session& session) {
  return RecordFile::open(session.platform.files, database_path(session, kTemplateFile),
                          records::kTemplateRecordSize);
}

StoreOutcome at_name(StoreOutcome outcome) {
  outcome.at_name = true;
  return outcome;
}

/// What keeps a new template from having that name.
StoreOutcome check_new_name(const Session& session, const std::string& name) {
  if (std::string refusal = record_name_refusal(name); !refusal.empty())
    return refused(std::move(refusal));
  const std::string wanted = folded_name(records::padded_template_name(name));
  const std::vector<std::string>& names = session.database.templates;
  if (std::any_of(names.begin(), names.end(),
                  [&wanted](const std::string& listed) { return folded_name(listed) == wanted; })) {
    return at_name(refused_in_box("Template Name " + name + " Already Exist \r\nChange Template Name.",
                                  "Template Name Conflict..."));
  }
  return {.done = true};
}

/// The same for the texts.
StoreOutcome check_texts(const TemplateEdit& edit) {
  std::string refusal =
      first_refusal(record_refusal, {edit.ProfilePath, edit.HomeDir, edit.ProfileDirPath, edit.HomeDirPath,
                                     edit.ProfileShare, edit.HomeShare, edit.LogonScript});
  if (!refusal.empty())
    return refused(std::move(refusal));
  for (const std::string& point : {edit.HomeSharePoint, edit.ProfileSharePoint}) {
    if (base::length(share_point(point)) > kSharePointLength) {
      return refused_in_box("A share point has at most 100 characters, with a backslash at its end.",
                            "Share Points");
    }
  }
  refusal = first_refusal(record_refusal, {edit.PrimaryGroup, edit.HomeSharePoint, edit.ProfileSharePoint});
  return refusal.empty() ? StoreOutcome{.done = true} : refused(std::move(refusal));
}

/// Loads the live record of a name into `ActiveTemplate`, changes it there and writes it.
void change_record(Session& session, std::string_view name, const std::function<void()>& change) {
  RecordFile file = open_templates(session);
  const RecordFile::NumbersHold held = file.hold_numbers();
  const std::int32_t number = Find_Template(session, name);
  if (number < 1)
    throw base::RuntimeError(base::error::kOutOfBounds, "The template is not in the file any more.");
  change();
  file.write(number, records::encode_template(session.ActiveTemplate));
}

void fill_groups(Session& session) {
  TemplateRecord& record = session.ActiveTemplate;
  const controls::ListView& chosen = session.domain.template_groups;
  std::vector<std::string> groups;
  for (std::size_t i = 0; i < chosen.size(); ++i)
    groups.push_back(chosen.at(i).text);
  groups.insert(groups.end(), session.UnshownGroups.begin(), session.UnshownGroups.end());
  groups.resize(std::min(groups.size(), records::kMostGroups));
  record.GroupCount = static_cast<std::int16_t>(groups.size());
  std::copy(groups.begin(), groups.end(), record.Groups.begin());
}

void fill_record(Session& session, const TemplateEdit& edit) {
  TemplateRecord& record = session.ActiveTemplate;
  record.Deleted = false;
  record.Name = edit.Name;
  record.ProfilePath = edit.ProfilePath;
  record.HomeDir = edit.HomeDir;
  record.ProfileDirPath = edit.ProfileDirPath;
  record.HomeDirPath = edit.HomeDirPath;
  record.ProfileShare = edit.ProfileShare;
  record.HomeShare = edit.HomeShare;
  record.HomeSharePoint = share_point(edit.HomeSharePoint);
  record.ProfileSharePoint = share_point(edit.ProfileSharePoint);
  record.LogonScript = edit.LogonScript;
  record.HomeDrive = edit.HomeDrive;
  record.LogonHours = session.TemplateLogonHours;
  record.PrimaryGroup = edit.PrimaryGroup;
  fill_groups(session);
}

void fill_variables(Session& session) {
  TemplateRecord& record = session.ActiveTemplate;
  const controls::ListView& rows = session.database.variables;
  for (std::size_t slot = 1; slot < records::kVariableSlots; ++slot) {
    const bool used = slot <= rows.size();
    record.VariableNames.at(slot) = used ? rows.at(slot - 1).text : std::string();
    const bool has_value = used && !rows.at(slot - 1).sub_items.empty();
    record.VariableValues.at(slot) = has_value ? rows.at(slot - 1).sub_items.front() : std::string();
  }
}

/// Why a template's field cannot hold the name of a group: it would be cut or altered there and never
/// found.
std::string group_refusal(std::string_view name) {
  if (base::length(name) <= kGroupNameLength)
    return record_refusal(name);
  return "The group \"" + std::string(name) + "\" was not added: a template holds group names of at most " +
         base::to_text(kGroupNameLength) + " characters.";
}

/// Runs a change of the file.
StoreOutcome write(const std::function<void()>& change, std::string status) {
  try {
    change();
    return completed(std::move(status));
  } catch (const base::RuntimeError& failure) {
    return file_failure(kTemplateFile, failure);
  }
}

}  // namespace

TemplateEdit edit_of(const TemplateRecord& record) {
  const auto text = [](std::string_view field) { return std::string(base::trim(field)); };
  return {.Name = text(record.Name),
          .ProfilePath = text(record.ProfilePath),
          .HomeDir = text(record.HomeDir),
          .ProfileDirPath = text(record.ProfileDirPath),
          .HomeDirPath = text(record.HomeDirPath),
          .ProfileShare = text(record.ProfileShare),
          .HomeShare = text(record.HomeShare),
          .HomeSharePoint = text(record.HomeSharePoint),
          .ProfileSharePoint = text(record.ProfileSharePoint),
          .LogonScript = text(record.LogonScript),
          .HomeDrive = text(record.HomeDrive),
          .PrimaryGroup = text(record.PrimaryGroup)};
}

std::string share_point(std::string_view typed) {
  std::string point(base::trim(typed));
  if (!point.ends_with('\\'))
    point += '\\';
  if (point.starts_with('\\'))
    point.erase(0, 1);
  return point;
}

StoreOutcome check_template(const Session& session, const TemplateEdit& edit, SaveAs as) {
  if (!edit.HomeDrive.empty() && !is_drive(edit.HomeDrive))
    return refused("Home Drive Format Incorrect");
  const std::string name(base::trim(edit.Name));
  if (as == SaveAs::kNew) {
    if (StoreOutcome outcome = check_new_name(session, name); !outcome.done)
      return outcome;
  }
  if (name.empty())
    return at_name(refused_in_box("Template Name cannot be blank.", "Template Name"));
  return check_texts(edit);
}

StoreOutcome save_template(Session& session, TemplateEdit edit, SaveAs as) {
  if (StoreOutcome outcome = check_template(session, edit, as); !outcome.done)
    return outcome;
  edit.Name = std::string(base::trim(edit.Name));
  if (edit.HomeDir.empty())
    edit.HomeDrive.clear();
  StoreOutcome outcome = write(
      [&] {
        if (as == SaveAs::kLive)
          return change_record(session, edit.Name, [&] { fill_record(session, edit); });
        fill_record(session, edit);
        const std::string bytes = records::encode_template(session.ActiveTemplate);
        session.LastRecordNo = open_templates(session).append(bytes);
      },
      "Template Saved...");
  if (outcome.done && as == SaveAs::kNew)
    session.database.templates.push_back(records::padded_template_name(edit.Name));
  return outcome;
}

StoreOutcome save_variables(Session& session, std::string_view name) {
  return write([&] { change_record(session, name, [&session] { fill_variables(session); }); }, {});
}

bool agrees_to_delete_template(Session& session) {
  return session.platform.dialogs.MsgBox("Sure to Delete Template", platform::Buttons::kYesNo,
                                         platform::Icon::kQuestion,
                                         "Delete Template") == platform::Answer::kYes;
}

StoreOutcome delete_template(Session& session, std::string_view name) {
  StoreOutcome outcome = write(
      [&] {
        RecordFile file = open_templates(session);
        const RecordFile::NumbersHold held = file.hold_numbers();
        const std::int32_t number = Find_Template(session, name);
        if (number < 1)
          return;
        std::string bytes = file.read(number);
        records::mark_deleted(bytes);
        file.write(number, bytes);
      },
      "Template Deleted.");
  if (outcome.done) {
    std::erase_if(session.database.templates, [wanted = folded_name(name)](const std::string& listed) {
      return folded_name(listed) == wanted;
    });
  }
  return outcome;
}

void add_selected_groups(Session& session) {
  controls::ListView& choice = session.domain.template_choice;
  controls::ListView& groups = session.domain.template_groups;
  for (const controls::ListRow* const row : choice.selected_rows()) {
    if (std::string refusal = group_refusal(row->text); !refusal.empty()) {
      tell(session, refused_in_box(std::move(refusal), "Group Not Added"));
      continue;
    }
    if (groups.size() + session.UnshownGroups.size() >= records::kMostGroups)
      return tell(session, refused_in_box("Templates Limited to 75 Groups", "Max Groups Reached"));
    controls::move_row(choice, *row, groups);
  }
}

std::string primary_group_refusal(const controls::ListRow& group) {
  return group.icon == "Local" ? "A local group cannot be the primary group" : std::string();
}

}  // namespace twk::stores
