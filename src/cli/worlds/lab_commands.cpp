#include "cli/worlds/lab_commands.hpp"

#include <optional>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "cli/frame/commands.hpp"
#include "cli/frame/context.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/input.hpp"
#include "cli/terminal/interrupt.hpp"
#include "cli/terminal/progress.hpp"
#include "cli/worlds/lab_import.hpp"
#include "lab/making/lab_create.hpp"
#include "lab/services/lab.hpp"
#include "lab/store/entry_store.hpp"
#include "local/posix_files.hpp"
#include "session/settings.hpp"
#include "world/sample_lab.hpp"
#include "world/snapshot.hpp"

namespace twk::cli {
namespace {

const std::vector<Column> kFields = {
    {"lab", "Lab"},   {"domain", "Domain"},         {"netbios", "Pre-2000 name"},
    {"kind", "Kind"}, {"users", "Users"},           {"groups", "Groups"},
    {"ous", "OUs"},   {"controller", "Controller"}, {"database", "Database"}};

struct InitArguments {
  std::string folder;
  lab::LabPlan plan;
  std::string domain;
  std::string kind = "native";
  std::optional<int> users;
  std::optional<int> groups;
  std::optional<int> ous;
  bool sample = false;
  bool empty = false;
};

int show_info(Context& context, const lab::LabContents& contents) {
  const lab::LabConfig& config = context.lab().config();
  context.output().details(kFields,
                           {{"lab", std::filesystem::absolute(context.lab_folder()).string()},
                            {"domain", lab::domain_name(config)},
                            {"netbios", config.netbios},
                            {"kind", world::kind_text(config.kind)},
                            {"users", contents.users},
                            {"groups", contents.groups},
                            {"ous", contents.ous},
                            {"controller", config.controller},
                            {"database", local::to_local_path(context.session(Depth::kSettings).dbpath)}});
  return kExitGreen;
}

int show_info(Context& context) {
  static_cast<void>(context.lab_folder());
  const Domain domain = context.domain();
  return show_info(context, {count_users(domain), count_groups(domain), list_ous(domain).size()});
}

void choose_counts(InitArguments& arguments) {
  lab::LabPlan& plan = arguments.plan;
  const auto choose = [&](std::size_t& count, const std::optional<int>& given) {
    count = arguments.empty ? 0 : given ? static_cast<std::size_t>(*given) : count;
  };
  choose(plan.users, arguments.users);
  choose(plan.groups, arguments.groups);
  if (plan.kind != lab::DomainKind::kNt)
    choose(plan.ous, arguments.ous);
}

/// When the command line is the reason, the failure is reported as a usage error.
lab::LabContents create_lab(InitArguments& arguments) {
  std::error_code unreadable;
  if (std::filesystem::exists(std::filesystem::path(arguments.folder) / "lab.conf", unreadable))
    throw Refused(arguments.folder + " is already a lab.");
  if (std::filesystem::exists(arguments.folder, unreadable) &&
      !std::filesystem::is_empty(arguments.folder, unreadable) && !unreadable)
    throw Refused(arguments.folder + " is not an empty folder.");
  try {
    arguments.plan.kind = world::kind_named(arguments.kind);
    world::name_domain(arguments.plan, arguments.domain);
    choose_counts(arguments);
    return lab::create_lab(arguments.folder, arguments.plan);
  } catch (const base::RuntimeError& failure) {
    constexpr std::uint32_t kInvalidArgument = 5;
    if (failure.number() == kInvalidArgument || failure.number() == platform::ads_error::kConstraint)
      throw UsageError(failure.description());
    throw;
  }
}

int init_lab(Context& context, InitArguments& arguments) {
  const lab::LabContents contents = create_lab(arguments);
  context.options().lab = arguments.folder;
  world::record_domain(context.world());
  if (arguments.sample) {
    world::prepare_sample(context.world());
    world::fill_sample_stores(context.session(Depth::kDomain));
    return show_info(context);
  }
  if (!arguments.empty && !arguments.users) {
    complain(std::to_string(arguments.plan.users) + " of the " + std::to_string(contents.users) +
             " users are invented; `lab init DIR --empty` invents nobody");
  }
  return show_info(context, contents);
}

int import_lab(Context& context, const std::string& file) {
  const LabImport result = import_ldif(context.lab_folder(), read_input(file));
  context.output().result({{"made", result.made},
                           {"added", result.added},
                           {"changed", result.changed},
                           {"skipped", result.skipped}},
                          std::to_string(result.added) + " entries added, " + std::to_string(result.changed) +
                              " changed, " + std::to_string(result.skipped) + " were there already.");
  return kExitGreen;
}

/// The copy is of the real domain, even if TWK_LAB names a lab to work in.
int copy_domain(Context& context, const std::string& folder) {
  const std::filesystem::path lab = folder;
  std::error_code unreadable;
  if (std::filesystem::exists(lab, unreadable) && !std::filesystem::is_empty(lab, unreadable))
    throw Refused(folder + " is not an empty folder.");
  if (!context.options().lab.empty())
    throw UsageError("with --live the lab is named after it: leave --lab out");
  context.options().live = true;
  world::RealDomain& domain = context.connected_domain();
  const std::string name = domain.directory_names().domain;
  std::optional<world::Snapshot> copied;
  {
    Progress progress;
    copied = world::take_snapshot(domain, lab, [&](std::size_t entries) {
      progress.show("Copying " + name + ": " + std::to_string(entries) + " entries");
      return !interrupted();
    });
  }
  if (!copied)
    throw Refused("The copy was stopped; no lab was made.");
  world::World made(lab, context.dialogs(), [](const std::string& text) { complain(text); });
  world::record_domain(made);
  context.output().result({{"lab", std::filesystem::absolute(lab).string()},
                           {"domain", name},
                           {"users", copied->users},
                           {"groups", copied->groups},
                           {"ous", copied->ous},
                           {"entries", copied->entries}},
                          name + " copied into " + folder + ": " + std::to_string(copied->users) +
                              " users, " + std::to_string(copied->groups) + " groups, " +
                              std::to_string(copied->ous) + " OUs.");
  return kExitGreen;
}

int export_lab(Context& context) {
  static_cast<void>(context.lab());
  const auto store =
      lab::open_entry_store(context.lab_folder(), "domain", [](const std::string& text) { complain(text); });
  context.output().raw("version: 1\n\n");
  store->export_to([&](std::string_view piece) { context.output().raw(piece); });
  return kExitGreen;
}

}  // namespace

void add_lab_commands(Command& app, Context& context) {
  auto* group = app.add_subcommand("lab", "Make, fill and show a lab");
  group->require_subcommand();

  auto arguments = std::make_shared<InitArguments>();
  auto* init =
      group->add_subcommand("init", "Make a lab in a new or empty folder, with invented people in it");
  init->add_option("DIR", arguments->folder, "The folder")->required();
  init->add_option("--domain", arguments->domain, "Name of the domain; twk.test if not given")
      ->type_name("NAME");
  init->add_option("--kind", arguments->kind, "native, mixed or nt; native if not given")
      ->type_name("KIND")
      ->check(Check::one_of_folding_case({"native", "mixed", "nt"}));
  const auto number = Check::within(0, 1000000);
  const auto* const empty =
      init->add_flag("--empty", arguments->empty,
                     "Invent nobody: only the accounts, groups and units that every domain has");
  const auto count = [&](const char* name, std::optional<int>& value, const std::string& what,
                         std::size_t otherwise) {
    init->add_option(name, value, what + "; " + std::to_string(otherwise) + " if not given")
        ->type_name("N")
        ->check(number)
        ->excludes(empty);
  };
  const lab::LabPlan& plan = arguments->plan;
  count("--users", arguments->users, "Number of users to invent, besides those that every domain has",
        plan.users);
  count("--groups", arguments->groups, "Number of groups to invent", plan.groups);
  count("--ous", arguments->ous, "Number of organizational units to invent", plan.ous);
  init->add_option("--seed", arguments->plan.seed, "Equal seeds make equal labs")->type_name("N");
  init->add_flag("--sample", arguments->sample, "Add a site, a template and settings to begin with");
  init->callback(
      [=, &context] { context.set_action([=, &context] { return init_lab(context, *arguments); }); });

  auto file = std::make_shared<std::string>();
  auto copy = std::make_shared<std::string>();
  auto* command = group->add_subcommand(
      "import",
      "Import the entries of an LDIF file, which makes the lab when there is none; or copy a domain");
  command->add_option("LDIF", *file, "The file; - for standard input");
  command->add_option("--live", *copy, "Copy the real domain into a new lab in that folder")
      ->type_name("DIR");
  command->callback([=, &context] {
    if (file->empty() == copy->empty())
      throw UsageError("lab import takes an LDIF file or --live DIR");
    context.set_action(
        [=, &context] { return copy->empty() ? import_lab(context, *file) : copy_domain(context, *copy); });
  });

  auto* exporting = group->add_subcommand("export", "Print the directory as LDIF");
  exporting->callback([&context] { context.set_action([&context] { return export_lab(context); }); });

  add_lab_logon(*group, context);
  add_lab_server(*group, context);

  auto* info = group->add_subcommand("info", "Show what the lab is");
  info->callback([&context] { context.set_action([&context] { return show_info(context); }); });
}

}  // namespace twk::cli
