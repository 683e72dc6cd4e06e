#include <algorithm>
#include <array>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "cli/frame/commands.hpp"
#include "cli/frame/context.hpp"
#include "cli/parser/near_matches.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/input.hpp"
#include "local/regedit.hpp"
#include "platform/registry.hpp"
#include "session/settings.hpp"
#include "session/settings_schema.hpp"

namespace twk::cli {
namespace {

struct SettingsArguments {
  std::string key;
  std::string name;
  std::string value;
  std::string file;
  bool user = false;
  bool force = false;
  bool show_secrets = false;
};

const std::vector<Column> kSettingColumns = {
    {"hive", "Hive"}, {"key", "Key"}, {"name", "Name"}, {"value", "Value"}};

constexpr std::array kHives = {std::pair{platform::kHiveLocalMachine, std::string_view("HKEY_LOCAL_MACHINE")},
                               std::pair{platform::kHiveCurrentUser, std::string_view("HKEY_CURRENT_USER")}};

const std::pair<std::uint32_t, std::string_view>& hive_of(const SettingsArguments& arguments) {
  return kHives[arguments.user ? 1 : 0];
}

/// "Setup" and "\Setup" as the path below the hive.
std::string full_key(std::string_view key) {
  while (key.starts_with('\\'))
    key.remove_prefix(1);
  const std::string root(session::kTree);
  return key.empty() ? root : root + "\\" + std::string(key);
}

/// True for a value that is a password itself, not a format, an instruction or nothing.
bool is_password(std::string_view name, std::string_view value) {
  const auto is_secret = [&](const session::Setting& one) {
    return one.secret && base::equals_fold(one.name, name);
  };
  return std::ranges::any_of(session::all_settings(), is_secret) && !value.empty() &&
         value.find('%') == base::npos && !base::equals_fold(value, "PROMPT");
}

/// The part of a value that may be seen over a shoulder or in a script's output.
std::string shown(const SettingsArguments& arguments, std::string_view name, const std::string& value) {
  return arguments.show_secrets || !is_password(name, value) ? value : "********";
}

Json to_json(std::string_view hive, std::string_view path, std::string_view name, std::string_view value) {
  const std::string_view root = session::kTree;
  const std::string_view below = path.size() > root.size() ? path.substr(root.size() + 1) : "";
  return {{"hive", hive}, {"key", below}, {"name", name}, {"value", value}};
}

/// The key without leading backslashes.
std::string_view sub_key_of(std::string_view key) {
  while (key.starts_with('\\'))
    key.remove_prefix(1);
  return key;
}

/// Refuses what no reader of ours accepts: it would silently count as not set.
void require_known(std::string_view key, std::string_view name, std::string_view value) {
  constexpr const char* kForce = " --force writes it anyway, for another program.";
  const std::string full = std::string(key) + "\\" + std::string(name);
  const session::Setting* const setting = session::find_setting(key, name);
  if (setting == nullptr) {
    std::vector<std::string> names;
    for (const session::Setting& one : session::all_settings())
      names.push_back(one.full_name());
    throw UsageError(no_such_text("setting", full, names) + kForce);
  }
  const std::string wanted = session::setting_refusal(*setting, value);
  if (!wanted.empty())
    throw UsageError("The setting " + full + " takes " + wanted + ", not \"" + std::string(value) + "\"." +
                     kForce);
}

/// A custom format counts while no preset is chosen.
void tell_preset(Context& context, std::string_view key, std::string_view name) {
  const bool account = base::equals_fold(key, session::kSetup) && base::equals_fold(name, "SetupID");
  const bool full_name =
      base::equals_fold(key, session::kPreferences) && base::equals_fold(name, "Custom_FN");
  if (!account && !full_name)
    return;
  const std::string choice = account ? "UserFormat" : "FullName";
  const std::int32_t custom = account ? 5 : 4;
  std::string stored;
  context.registry().Reg_Read(platform::kHiveLocalMachine, full_key(key), choice, stored);
  const std::int32_t entry = base::to_number(stored).value_or(0);
  if (entry > 0 && entry < custom)
    complain(choice + " is " + stored + ", so its preset counts: set it to " + base::to_text(custom) +
             " for this format to count.");
}

int get_setting(Context& context, const SettingsArguments& arguments) {
  const auto& [hive, hive_name] = hive_of(arguments);
  std::string value;
  if (!context.registry().Reg_Read(hive, full_key(arguments.key), arguments.name, value))
    throw Refused("There is no setting " + arguments.key + "\\" + arguments.name + ".");
  value = shown(arguments, arguments.name, value);
  context.output().result(to_json(hive_name, full_key(arguments.key), arguments.name, value), value);
  return kExitGreen;
}

void write_setting(Context& context, std::uint32_t hive, std::string_view key, std::string_view name,
                   std::string_view value) {
  if (!context.registry().Reg_Write(hive, key, name, value)) {
    throw base::RuntimeError(base::error::kPathFileAccess, "Cannot write the setting " + std::string(name) +
                                                               " in " + context.world().settings_folder());
  }
}

int set_setting(Context& context, const SettingsArguments& arguments, bool from_input) {
  if (!from_input && is_password(arguments.name, arguments.value)) {
    throw UsageError(
        "A password is not accepted on the command line, where others can read it: leave VALUE out and pass "
        "it on standard input.");
  }
  const std::string value = from_input ? read_password("-") : arguments.value;
  const std::string_view key = sub_key_of(arguments.key);
  if (!arguments.force)
    require_known(key, arguments.name, value);
  const auto& [hive, hive_name] = hive_of(arguments);
  write_setting(context, hive, full_key(key), arguments.name, value);
  tell_preset(context, key, arguments.name);
  if (context.output().json()) {
    const std::string stored = shown(arguments, arguments.name, value);
    context.output().result(to_json(hive_name, full_key(key), arguments.name, stored), {});
  }
  return kExitGreen;
}

int unset_setting(Context& context, const SettingsArguments& arguments) {
  const auto& [hive, hive_name] = hive_of(arguments);
  if (!context.registry_listing().remove(hive, full_key(arguments.key), arguments.name))
    throw Refused("There is no setting " + arguments.key + "\\" + arguments.name + ".");
  if (context.output().json())
    context.output().result({{"hive", hive_name},
                             {"key", sub_key_of(arguments.key)},
                             {"name", arguments.name},
                             {"deleted", true}},
                            {});
  return kExitGreen;
}

int list_settings(Context& context, const SettingsArguments& arguments) {
  std::vector<Json> rows;
  for (const auto& [hive, hive_name] : kHives) {
    if (arguments.user && hive != platform::kHiveCurrentUser)
      continue;
    for (const auto& entry : context.registry_listing().entries(hive, full_key(arguments.key)))
      rows.push_back(to_json(hive_name, entry.key, entry.name, shown(arguments, entry.name, entry.value)));
  }
  context.output().table(kSettingColumns, rows);
  return kExitGreen;
}

/// What can be set, whether or not it is.
int describe_settings(Context& context, const SettingsArguments& arguments) {
  static const std::vector<Column> columns = {
      {"name", "Setting"}, {"takes", "Takes"}, {"default", "Default"}, {"meaning", "Meaning"}};
  std::vector<Json> rows;
  for (const session::Setting& setting : session::all_settings()) {
    if (arguments.key.empty() || base::equals_fold(setting.sub_key, sub_key_of(arguments.key)))
      rows.push_back({{"name", setting.full_name()},
                      {"takes", setting.taken()},
                      {"default", setting.initial},
                      {"meaning", setting.meaning}});
  }
  if (rows.empty())
    throw UsageError("There are no settings in " + arguments.key + ".");
  context.output().table(columns, rows);
  return kExitGreen;
}

/// A mask would be imported as the password, so passwords are left out.
int export_settings(Context& context, const SettingsArguments& arguments) {
  local::RegistryTree tree;
  std::size_t left_out = 0;
  for (const auto& [hive, hive_name] : kHives) {
    if (arguments.user && hive != platform::kHiveCurrentUser)
      continue;
    for (const auto& entry : context.registry_listing().entries(hive, session::kTree)) {
      if (!arguments.show_secrets && is_password(entry.name, entry.value)) {
        ++left_out;
        continue;
      }
      local::set_registry_value(local::registry_key(tree, std::string(hive_name) + "\\" + entry.key),
                                {.name = entry.name, .text = entry.value, .other = {}});
    }
  }
  context.output().raw(local::format_regedit(tree));
  if (left_out != 0)
    complain("Passwords are left out; --show-secrets exports them as well.");
  return kExitGreen;
}

/// The hive of a full path and the rest. Raises `BadInput` for a key that is not the system's.
std::pair<std::uint32_t, std::string> split_path(const std::string& path) {
  for (const auto& [hive, hive_name] : kHives) {
    const std::string root = std::string(hive_name) + "\\" + std::string(session::kTree);
    if (base::equals_fold(path, root) || base::starts_with_fold(path, root + "\\"))
      return {hive, path.substr(hive_name.size() + 1)};
  }
  throw BadInput("The key " + path + " does not belong to the settings below " + std::string(session::kTree) +
                 "; nothing was imported.");
}

void require_importable(const local::RegistryKey& key, bool force) {
  const std::string path = split_path(key.path).second;
  const std::string_view sub_key = sub_key_of(std::string_view(path).substr(session::kTree.size()));
  for (const auto& [folded_name, value] : key.values) {
    if (!value.other.empty())
      throw BadInput("The value " + value.name + " of " + key.path + " is not a text; nothing was imported.");
    if (!force)
      require_known(sub_key, value.name, value.text);
  }
}

int import_settings(Context& context, const SettingsArguments& arguments) {
  const local::RegistryTree tree = local::parse_regedit(local::regedit_text(read_input(arguments.file)));
  for (const auto& [folded, key] : tree)
    require_importable(key, arguments.force);
  std::size_t count = 0;
  for (const auto& [folded, key] : tree) {
    const auto [hive, path] = split_path(key.path);
    for (const auto& [folded_name, value] : key.values) {
      write_setting(context, hive, path, value.name, value.text);
      ++count;
    }
  }
  context.output().result({{"imported", count}},
                          base::to_text(static_cast<std::int64_t>(count)) + " settings imported.");
  return kExitGreen;
}

}  // namespace

void add_settings_commands(Command& app, Context& context) {
  auto arguments = std::make_shared<SettingsArguments>();
  auto* settings = app.add_subcommand("settings", "Read and change the settings");
  settings->require_subcommand();
  const auto add = [&](const char* name, const char* what) {
    auto* command = settings->add_subcommand(name, what);
    command->add_flag("--user", arguments->user, "The person's own settings, not those of the machine");
    return command;
  };
  const auto add_key = [&](Command* command) {
    return command->add_option("KEY", arguments->key, "Key below the tree's root, such as Setup")
        ->may_be_empty();
  };

  const auto add_secrets = [&](Command* command) {
    command->add_flag("--show-secrets", arguments->show_secrets, "Show passwords as stored");
  };

  auto* get = add("get", "Print one value");
  add_secrets(get);
  add_key(get)->required();
  get->add_option("NAME", arguments->name, "Name of the value")->required()->may_be_empty();
  get->callback(
      [=, &context] { context.set_action([=, &context] { return get_setting(context, *arguments); }); });

  auto* set = add("set", "Write one value; without VALUE, a line of standard input");
  add_key(set)->required();
  set->add_option("NAME", arguments->name, "Name of the value")->required()->may_be_empty();
  auto* value = set->add_option("VALUE", arguments->value, "The text")->may_be_empty();
  set->callback([=, &context] {
    const bool from_input = !value->is_given();
    context.set_action([=, &context] { return set_setting(context, *arguments, from_input); });
  });

  set->add_flag("--force", arguments->force, "Also values that this program does not accept");

  auto* unset = add("unset", "Remove one value, so that its default counts");
  add_key(unset)->required();
  unset->add_option("NAME", arguments->name, "Name of the value")->required()->may_be_empty();
  unset->callback(
      [=, &context] { context.set_action([=, &context] { return unset_setting(context, *arguments); }); });

  auto* list = add("list", "List values");
  add_key(list);
  add_secrets(list);
  list->callback(
      [=, &context] { context.set_action([=, &context] { return list_settings(context, *arguments); }); });

  auto* describe = add("describe", "List all settings: what each takes and means");
  add_key(describe);
  describe->callback([=, &context] {
    context.set_action([=, &context] { return describe_settings(context, *arguments); });
  });

  auto* exporting = add("export", "Print all values as REGEDIT4 text");
  add_secrets(exporting);
  exporting->callback(
      [=, &context] { context.set_action([=, &context] { return export_settings(context, *arguments); }); });

  auto* importing = add("import", "Import the values from a registry editor's text");
  importing->add_flag("--force", arguments->force, "Also values that this program does not accept");
  importing->add_option("FILE", arguments->file, "The file; - for standard input")->required();
  importing->callback(
      [=, &context] { context.set_action([=, &context] { return import_settings(context, *arguments); }); });
}

}  // namespace twk::cli
