#include "stores/site_store.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "cli/frame/commands.hpp"
#include "cli/frame/context.hpp"
#include "cli/parser/field_checks.hpp"
#include "cli/parser/near_matches.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "session/loaded_database.hpp"
#include "session/settings.hpp"
#include "session/settings_schema.hpp"

namespace twk::cli {
namespace {

using session::Session;
using OptionalText = std::optional<std::string>;

struct SiteArguments {
  std::string name;
  OptionalText nt_server;
  OptionalText exchange_server;
  OptionalText exchange_org;
  OptionalText exchange_site;
  OptionalText mail_store;
  std::optional<bool> exchange2000;
};

const std::vector<Column> kSiteColumns = {{"name", "Name"},
                                          {"ntServer", "NT server"},
                                          {"exchange2000", "Exchange 2000"},
                                          {"exchangeServer", "Exchange server"},
                                          {"exchangeOrg", "Exchange org"},
                                          {"exchangeSite", "Exchange site"},
                                          {"mailStore", "Mail store"}};

/// Loads the site of that name, and returns the name as it is spelled.
std::string select_site(Session& session, std::string_view name) {
  std::string found = find_name("site", name, session.database.sites);
  act(session, [&] { stores::tell(session, stores::load_site(session, found)); });
  return found;
}

Json to_json(const records::SiteRecord& site) {
  return {{"name", site.Name},
          {"ntServer", site.NTServer},
          {"exchange2000", site.Exchange2000},
          {"exchangeServer", site.ExchangeServer},
          {"exchangeOrg", site.ExchangeOrg},
          {"exchangeSite", site.ExchangeSite},
          {"mailStore", site.MailStore}};
}

int list_sites(Context& context) {
  Session& session = context.session(Depth::kDatabases);
  std::vector<Json> rows;
  act(session, [&] {
    for (const records::SiteRecord& site : stores::read_sites(session))
      rows.push_back(to_json(site));
  });
  context.output().table(kSiteColumns, rows);
  return kExitGreen;
}

int show_site(Context& context, const SiteArguments& arguments) {
  Session& session = context.session(Depth::kDatabases);
  select_site(session, arguments.name);
  context.output().details(kSiteColumns, to_json(session.ActiveSite));
  return kExitGreen;
}

/// Changes the fields that were given.
void fill_fields(records::SiteRecord& site, const SiteArguments& arguments) {
  const std::initializer_list<std::pair<const OptionalText&, std::string&>> fields = {
      {arguments.nt_server, site.NTServer},
      {arguments.exchange_server, site.ExchangeServer},
      {arguments.exchange_org, site.ExchangeOrg},
      {arguments.exchange_site, site.ExchangeSite},
      {arguments.mail_store, site.MailStore}};
  for (const auto& [text, field] : fields) {
    if (text)
      field = *text;
  }
  site.Exchange2000 = arguments.exchange2000.value_or(site.Exchange2000);
  if (!site.Exchange2000)
    site.MailStore.clear();
}

int save_site(Context& context, Session& session, const records::SiteRecord& site, stores::SaveAs as) {
  stores::StoreOutcome outcome;
  act(session, [&] { stores::tell(session, outcome = stores::save_site(session, site, as)); });
  if (!outcome.done)
    return kExitRed;
  if (context.output().json())
    context.output().details(kSiteColumns, to_json(site));
  return kExitGreen;
}

int add_site(Context& context, const SiteArguments& arguments) {
  Session& session = context.session(Depth::kDatabases);
  if (const std::string refusal = stores::site_name_refusal(session, arguments.name); !refusal.empty()) {
    act(session, [&] { stores::tell(session, stores::refused(refusal)); });
    return kExitRed;
  }
  records::SiteRecord site;
  site.Name = std::string(base::trim(arguments.name));
  fill_fields(site, arguments);
  return save_site(context, session, site, stores::SaveAs::kNew);
}

int edit_site(Context& context, const SiteArguments& arguments) {
  Session& session = context.session(Depth::kDatabases);
  const std::string name = select_site(session, arguments.name);
  try {
    // The values of a deleted site of this name are not the ones to change.
    records::SiteRecord site = stores::live_site(session, name).value_or(session.ActiveSite);
    site.Name = name;
    fill_fields(site, arguments);
    return save_site(context, session, site, stores::SaveAs::kLive);
  } catch (const base::RuntimeError& failure) {
    stores::tell(session, stores::file_failure(stores::kSiteFile, failure));
    return kExitRed;
  }
}

int delete_site(Context& context, const SiteArguments& arguments) {
  Session& session = context.session(Depth::kDatabases);
  const std::string name = select_site(session, arguments.name);
  const bool asks = session::read_switch(session, session::kPreferences, "ConfirmDeletes");
  if (asks && !stores::agrees_to_delete_site(session))
    return kExitRed;
  stores::StoreOutcome outcome;
  act(session, [&] { stores::tell(session, outcome = stores::delete_site(session, name)); });
  if (outcome.done && context.output().json())
    context.output().result({{"name", name}, {"deleted", true}}, {});
  return outcome.done ? kExitGreen : kExitRed;
}

void add_field_options(Command& command, SiteArguments& arguments) {
  constexpr std::size_t kServer = 20;
  constexpr std::size_t kExchange = 30;
  const auto add = [&](const char* name, OptionalText& text, const char* what, std::size_t length) {
    command.add_option(name, text, what)->check(at_most(length))->type_name("TEXT");
  };
  add("--nt-server", arguments.nt_server, "Home server", kServer);
  add("--exchange-server", arguments.exchange_server, "Exchange server", kServer);
  add("--exchange-org", arguments.exchange_org, "Exchange organisation", kExchange);
  add("--exchange-site", arguments.exchange_site, "Exchange site, or storage group of Exchange 2000",
      kExchange);
  add("--mail-store", arguments.mail_store, "Mailbox store of Exchange 2000", kExchange);
  // A flag that is not given leaves the kind as it is.
  auto* newer = command.add_flag(
      "--exchange2000", [&arguments] { arguments.exchange2000 = true; }, "The site has Exchange 2000");
  command
      .add_flag(
          "--exchange55", [&arguments] { arguments.exchange2000 = false; }, "The site has Exchange 5.5")
      ->excludes(newer);
}

}  // namespace

void add_site_commands(Command& app, Context& context) {
  auto arguments = std::make_shared<SiteArguments>();
  auto* site = app.add_subcommand("site", "Show and change sites");
  site->require_subcommand();
  const auto add = [&](const char* name, const char* what, auto action) {
    auto* command = site->add_subcommand(name, what);
    command->add_option("NAME", arguments->name, "Name of the site")->required();
    command->callback(
        [=, &context] { context.set_action([=, &context] { return action(context, *arguments); }); });
    return command;
  };
  auto* list = site->add_subcommand("list", "List the sites");
  add_csv_option(*list, context);
  list->callback([&context] { context.set_action([&context] { return list_sites(context); }); });
  add("show", "Show a site", show_site);
  add_field_options(*add("add", "Add a site", add_site), *arguments);
  add_field_options(*add("edit", "Change the given fields of a site", edit_site), *arguments);
  add("delete", "Delete a site; asks first", delete_site);
}

}  // namespace twk::cli
