#pragma once

#include "cli/parser/command.hpp"

namespace twk::cli {

class Context;

/// Each adds one command with its sub-commands. Parsing decides which action runs; it runs once the whole
/// command line is understood.
void add_lab_commands(Command& app, Context& context);
void add_doctor_command(Command& app, Context& context);
void add_settings_commands(Command& app, Context& context);
void add_site_commands(Command& app, Context& context);
void add_template_commands(Command& app, Context& context);
void add_table_commands(Command& app, Context& context);
void add_hours_commands(Command& app, Context& context);
void add_custom_commands(Command& app, Context& context);
void add_format_command(Command& app, Context& context);
void add_user_commands(Command& app, Context& context);
void add_users_commands(Command& app, Context& context);
void add_profile_commands(Command& app, Context& context);
void add_mailbox_commands(Command& app, Context& context);
void add_group_commands(Command& app, Context& context);
void add_ou_commands(Command& app, Context& context);
void add_ts_commands(Command& app, Context& context);
void add_options_commands(Command& app, Context& context);
void add_acl_commands(Command& app, Context& context);
void add_owner_commands(Command& app, Context& context);
void add_share_commands(Command& app, Context& context);
void add_log_commands(Command& app, Context& context);
void add_database_commands(Command& app, Context& context);

}  // namespace twk::cli
