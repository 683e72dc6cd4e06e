#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "records/records.hpp"
#include "stores/store_outcome.hpp"

namespace twk::session {
struct Session;
}

/// "Template.dat": searches, and the loading of a template into the session: its record into
/// `ActiveTemplate`, its logon hours and variables, and its groups from the list of the domain's into its
/// own. `ActiveTemplate` is a working buffer: each search leaves there the record at which it stopped, and
/// its number in `LastRecordNo`.
namespace twk::stores {

inline constexpr std::string_view kTemplateFile = "Template.dat";

/// Number of the first live record of that name, compared trimmed and in upper case; -1 for none. Raises when
/// the file cannot be read.
std::int32_t Find_Template(session::Session& session, std::string_view name);

/// Loads the first live record of that name, where the name is as in the lists: padded to 25 characters
/// and of the same case. Not done without a match: there are then no groups and variables. Groups that the
/// domain does not have do not appear; while the domain's groups are not loaded they wait in `UnshownGroups`.
StoreOutcome load_template(session::Session& session, std::string_view name);

/// The same for a run, which must not continue without it: raises, with the reason, when the file cannot be
/// read or holds no such template. The tabs show nothing from here on.
void require_template(session::Session& session, std::string_view name);

/// Loads the record of that number in the same way, deleted or not. Raises when the file cannot be read.
void load_template_record(session::Session& session, std::int32_t number);

/// How many records the file has. Raises when it cannot be read.
std::int32_t count_templates(session::Session& session);

/// No template is loaded any more: its groups move back to those of the domain. Variables and logon hours
/// stay.
void release_template(session::Session& session);

/// True when the list of groups holds those that the domain has now. A domain that was loaded without its
/// groups, or not at all, says nothing about which of them exist.
bool groups_are_loaded(session::Session& session);

/// A group of the loaded template that the domain has.
struct TemplateGroup {
  std::string name;
  std::string key;
};
std::vector<TemplateGroup> template_groups(const session::Session& session);

/// Calls `visit` for the live templates in the order of the file, until it returns true. One is in memory at
/// a time. Raises what the file raises.
void each_template(session::Session& session,
                   const std::function<bool(const records::TemplateRecord& record)>& visit);

/// Reads the names of the live templates into the session. A failure ends the reading and is reported on the
/// log tab.
void load_template_names(session::Session& session);

}  // namespace twk::stores
