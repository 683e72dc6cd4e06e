#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace twk::session {
struct Session;
}

/// "Template.dat": searches, and the loading of a template into `ActiveTemplate`, onto the Template tab and
/// into the group lists. `ActiveTemplate` is a working buffer: each search leaves there the record at which
/// it stopped, and its number in `LastRecordNo`.
namespace twk::stores {

inline constexpr std::string_view kTemplateFile = "Template.dat";

/// Number of the first live record whose name equals the text of `templatelst`, trimmed and in upper case; -1
/// for none. Raises when the file cannot be read.
std::int32_t Find_Template(session::Session& session);

/// Loads the first live record of that name, where the name is as in the lists: padded to 25 characters
/// and of the same case. Without a match the tab is empty. Groups that the domain does not have do not
/// appear; while the domain's groups are not loaded they wait in `UnshownGroups`. A file that cannot be read
/// is reported by message.
void LoadTemplate(session::Session& session, std::string_view name);

/// The same for a run, which must not continue without it: raises, with the reason, when the file cannot be
/// read or holds no such template.
void require_template(session::Session& session, std::string_view name);

/// Loads the record of that number in the same way, deleted or not. Raises when the file cannot be read.
void load_template_record(session::Session& session, std::int32_t number);

/// True when the list of groups holds those that the domain has now. A domain that was loaded without its
/// groups, or not at all, says nothing about which of them exist.
bool groups_are_loaded(session::Session& session);

/// A share point as stored: with a backslash at the end and none at the beginning.
std::string share_point(std::string_view typed);

/// A group of the loaded template that the domain has.
struct TemplateGroup {
  std::string name;
  std::string key;
};
std::vector<TemplateGroup> template_groups(const session::Session& session);

/// Moves every group of the template back to the groups of the domain.
void Template_Group_Sort(session::Session& session);

/// Adds the names of the live templates to the lists. A failure ends the reading and is reported on the log
/// tab.
void load_templates(session::Session& session);

/// Empties the template's fields, share points and group list; variables and logon hours stay.
void empty_template_fields(session::Session& session);

}  // namespace twk::stores
