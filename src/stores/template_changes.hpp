#pragma once

#include <string>
#include <string_view>

#include "records/records.hpp"
#include "stores/store_outcome.hpp"

namespace twk::controls {
struct ListRow;
}
namespace twk::session {
struct Session;
}

/// Changes of "Template.dat". What a template has besides the texts of a `TemplateEdit` is what the session
/// has loaded: its groups, `UnshownGroups` and `TemplateLogonHours`.
namespace twk::stores {

/// The texts of a template.
struct TemplateEdit {
  std::string Name = {};
  std::string ProfilePath = {};
  std::string HomeDir = {};
  std::string ProfileDirPath = {};
  std::string HomeDirPath = {};
  std::string ProfileShare = {};
  std::string HomeShare = {};
  std::string HomeSharePoint = {};
  std::string ProfileSharePoint = {};
  std::string LogonScript = {};
  std::string HomeDrive = {};
  std::string PrimaryGroup = {};
};
/// Those of a record, trimmed.
TemplateEdit edit_of(const records::TemplateRecord& record);

/// A share point as stored: with a backslash at the end and none at the beginning.
std::string share_point(std::string_view typed);

/// What keeps a template from being saved; done when nothing does.
StoreOutcome check_template(const session::Session& session, const TemplateEdit& edit, SaveAs as);
/// Checks the template and writes it: over the live record of its name, or as a new one, which gets the
/// variables of `ActiveTemplate`. A drive without a home directory is not kept.
StoreOutcome save_template(session::Session& session, TemplateEdit edit, SaveAs as);
/// Writes the variables that the session holds into the live record of that name.
StoreOutcome save_variables(session::Session& session, std::string_view name);

/// Asks whether to delete a template.
bool agrees_to_delete_template(session::Session& session);
/// Marks the first live record of that name as deleted.
StoreOutcome delete_template(session::Session& session, std::string_view name);

/// Moves the selected groups of the domain to the template's. Those that a record cannot hold are refused in
/// a box each; a template holds at most 75.
void add_selected_groups(session::Session& session);
/// Why a group cannot be the primary one: it is a local group. Empty when it can.
std::string primary_group_refusal(const controls::ListRow& group);

}  // namespace twk::stores
