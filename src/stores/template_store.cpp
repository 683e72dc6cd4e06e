#include "stores/template_store.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "controls/drawing_off.hpp"
#include "directory/load_options.hpp"
#include "directory/loading/ad_load.hpp"
#include "records/record_file.hpp"
#include "session/loaded_database.hpp"
#include "session/loaded_domain.hpp"
#include "session/log_tab.hpp"
#include "session/session.hpp"
#include "stores/database_files.hpp"
#include "stores/typed_text.hpp"

namespace twk::stores {
namespace {

using session::Session;

records::RecordFile templates_to_read(Session& session) {
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

void take_variables(Session& session) {
  const records::TemplateRecord& record = session.ActiveTemplate;
  controls::ListView& rows = session.database.variables;
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
  controls::ListView& choice = session.domain.template_choice;
  std::vector<const controls::ListRow*> rows = choice.find_text(name);
  const auto others = std::stable_partition(
      rows.begin(), rows.end(), [name](const auto* row) { return base::trim(row->text) == name; });
  if (others != rows.begin())
    rows.erase(others, rows.end());
  for (auto row = rows.rbegin(); row != rows.rend(); ++row)
    controls::move_row(choice, **row, session.domain.template_groups);
  return !rows.empty();
}

void look_up_template_groups(Session& session) {
  const records::TemplateRecord& record = session.ActiveTemplate;
  std::vector<std::string> names;
  for (std::size_t i = 0; i < static_cast<std::size_t>(record.GroupCount); ++i)
    names.emplace_back(base::trim(record.Groups.at(i)));
  directory::look_up_groups(session, names);
}

void take_groups(Session& session) {
  const records::TemplateRecord& record = session.ActiveTemplate;
  session.UnshownGroups.clear();
  if (record.GroupCount == 0)
    return;
  look_up_template_groups(session);
  const controls::DrawingOff choice_off(session.domain.template_choice);
  const controls::DrawingOff groups_off(session.domain.template_groups);
  for (std::size_t i = 0; i < static_cast<std::size_t>(record.GroupCount); ++i) {
    const std::string_view name = base::trim(record.Groups.at(i));
    if (!take_group(session, name) && !groups_are_loaded(session))
      session.UnshownGroups.emplace_back(name);
  }
}

/// Moves every group of the template back to the groups of the domain.
void return_groups(Session& session) {
  controls::ListView& choice = session.domain.template_choice;
  controls::ListView& groups = session.domain.template_groups;
  if (groups.empty())
    return;
  const controls::DrawingOff choice_off(choice);
  const controls::DrawingOff groups_off(groups);
  for (std::size_t i = 0; i < groups.size(); ++i) {
    const controls::ListRow& row = groups.at(i);
    // The domain may have been reloaded since the group was moved.
    if (row.key.empty() || choice.find_key(row.key) == nullptr)
      choice.add(row.key, row.text, row.icon);
  }
  groups.clear();
}

/// What `ActiveTemplate` has besides texts.
void take_up(Session& session) {
  session.TemplateLogonHours = session.ActiveTemplate.LogonHours;
  take_variables(session);
  take_groups(session);
}

/// False when there is no such template.
bool load_listed(Session& session, std::string_view name) {
  return_groups(session);
  const records::RecordSearch search = templates_to_read(session).search([name](std::string_view bytes) {
    return !records::is_deleted(bytes) && records::listed_template_name(bytes) == name;
  });
  if (keep(session, search)) {
    take_up(session);
  } else {
    session.UnshownGroups.clear();
    session.database.variables.clear();
  }
  return search.found;
}

}  // namespace

bool groups_are_loaded(Session& session) {
  const directory::LoadOptions options = directory::read_load_options(session);
  const bool skipped =
      session.DirectoryMode != session::kWinNtMode && options.SkipGroups && !options.TemplateGroupsOnly;
  return !skipped && (session.domain.looked_up.groups || !session.domain.template_choice.empty() ||
                      !session.domain.template_groups.empty());
}

std::int32_t Find_Template(Session& session, std::string_view name) {
  const std::string wanted = folded_name(name);
  const records::RecordSearch search = templates_to_read(session).search([&wanted](std::string_view bytes) {
    return !records::is_deleted(bytes) && folded_name(records::listed_template_name(bytes)) == wanted;
  });
  return keep(session, search) ? search.number : -1;
}

StoreOutcome load_template(Session& session, std::string_view name) {
  try {
    StoreOutcome outcome;
    outcome.done = load_listed(session, name);
    return outcome;
  } catch (const base::RuntimeError& failure) {
    return file_failure(kTemplateFile, failure);
  }
}

void require_template(Session& session, std::string_view name) {
  session.database.taken.emit();
  if (!load_listed(session, name))
    raise_no_record(session, kTemplateFile, "template", name);
}

void load_template_record(Session& session, std::int32_t number) {
  const records::TemplateRecord record = records::decode_template(templates_to_read(session).read(number));
  return_groups(session);
  session.ActiveTemplate = record;
  take_up(session);
}

std::int32_t count_templates(Session& session) {
  return templates_to_read(session).count();
}

void release_template(Session& session) {
  return_groups(session);
  session.UnshownGroups.clear();
}

std::vector<TemplateGroup> template_groups(const Session& session) {
  const controls::ListView& list = session.domain.template_groups;
  std::vector<TemplateGroup> groups;
  for (std::size_t i = 0; i < list.size(); ++i)
    groups.push_back({std::string(base::trim(list.at(i).text)), list.at(i).key});
  return groups;
}

void each_template(Session& session,
                   const std::function<bool(const records::TemplateRecord& record)>& visit) {
  templates_to_read(session).search([&visit](std::string_view bytes) {
    return !records::is_deleted(bytes) && visit(records::decode_template(bytes));
  });
}

void load_template_names(Session& session) {
  std::vector<std::string>& templates = session.database.templates;
  templates.clear();
  base::Trap trap;
  trap([&] {
    templates_to_read(session).search([&templates](std::string_view bytes) {
      if (!records::is_deleted(bytes))
        templates.push_back(records::listed_template_name(bytes));
      return false;
    });
  });
  if (trap.number() != 0)
    session::LOG_TAB(session, session::kYellow, "Cannot read Template.dat: " + trap.description());
}

}  // namespace twk::stores
