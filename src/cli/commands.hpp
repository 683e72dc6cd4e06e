#pragma once

#include <CLI/CLI.hpp>

namespace twk::cli {

class Context;

/// Each adds one command with its sub-commands. Parsing decides which action runs; it runs when the whole
/// command line is understood.
void add_lab_commands(CLI::App& app, Context& context);
void add_doctor_command(CLI::App& app, Context& context);
void add_settings_commands(CLI::App& app, Context& context);
void add_site_commands(CLI::App& app, Context& context);
void add_template_commands(CLI::App& app, Context& context);
void add_table_commands(CLI::App& app, Context& context);
void add_hours_commands(CLI::App& app, Context& context);
void add_custom_commands(CLI::App& app, Context& context);
void add_format_command(CLI::App& app, Context& context);
void add_user_commands(CLI::App& app, Context& context);
void add_users_commands(CLI::App& app, Context& context);
void add_profile_commands(CLI::App& app, Context& context);
void add_mailbox_commands(CLI::App& app, Context& context);
void add_group_commands(CLI::App& app, Context& context);
void add_ou_commands(CLI::App& app, Context& context);
void add_ts_commands(CLI::App& app, Context& context);
void add_options_commands(CLI::App& app, Context& context);
void add_acl_commands(CLI::App& app, Context& context);
void add_owner_commands(CLI::App& app, Context& context);
void add_share_commands(CLI::App& app, Context& context);
void add_log_commands(CLI::App& app, Context& context);
void add_database_commands(CLI::App& app, Context& context);

}  // namespace twk::cli
