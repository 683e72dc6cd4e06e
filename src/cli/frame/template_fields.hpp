#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/parser/command.hpp"
#include "session/session.hpp"
#include "stores/template_changes.hpp"

namespace twk::cli {

/// The options of a template's fields; what was not given stays as it is.
struct TemplateFields {
  std::optional<std::string> profile_path;
  std::optional<std::string> home_dir;
  std::optional<std::string> profile_dir_path;
  std::optional<std::string> home_dir_path;
  std::optional<std::string> profile_share;
  std::optional<std::string> home_share;
  std::optional<std::string> home_share_point;
  std::optional<std::string> profile_share_point;
  std::optional<std::string> logon_script;
  std::optional<std::string> home_drive;
  std::optional<std::string> logon_hours;
  std::optional<std::string> primary_group;
  std::vector<std::string> groups;     ///< instead of the template's; a single empty one means none
  std::vector<std::string> variables;  ///< NAME=VALUE, instead of the template's
};

void add_template_options(Command& command, TemplateFields& fields);

/// Loads the template of that name, and returns the name as the list has it. Raises `Refused` for an unknown
/// one.
std::string load_named_template(session::Session& session, std::string_view name);

/// Changes what was given: the texts in `edit`, hours and groups in the session. Raises `Refused` for a group
/// that the domain does not have or that cannot be the primary group.
void fill_template(session::Session& session, stores::TemplateEdit& edit, const TemplateFields& fields);

/// Makes these the variables that the session holds. Raises `UsageError`.
void fill_variables(session::Session& session, const std::vector<std::string>& variables);

}  // namespace twk::cli
