#include "stores/site_store.hpp"

#include "cli/frame/commands.hpp"
#include "cli/frame/context.hpp"
#include "cli/parser/field_checks.hpp"
#include "cli/parser/near_matches.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "session/form1.hpp"

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

const std::vector<Column> kColumns = {{"name", "Name"},
                                      {"ntServer", "NT server"},
                                      {"exchange2000", "Exchange 2000"},
                                      {"exchangeServer", "Exchange server"},
                                      {"exchangeOrg", "Exchange org"},
                                      {"exchangeSite", "Exchange site"},
                                      {"mailStore", "Mail store"}};

/// Selects the site of that name as a click on its row does, which loads it.
void select_site(Session& session, std::string_view name) {
  controls::ListView& rows = session.form1.ListView2;
  std::vector<std::string> names;
  for (std::size_t i = 0; i < rows.size(); ++i)
    names.push_back(rows.at(i).text);
  const std::string found = find_name("site", name, names);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (rows.at(i).text == found)
      rows.select(&rows.at(i));
  }
  act(session, [&] { stores::ListView2_Click(session); });
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
  for (const std::string& name : session.form1.NUsitename.items()) {
    select_site(session, name);
    rows.push_back(to_json(session.ActiveSite));
  }
  context.output().table(kColumns, rows);
  return kExitGreen;
}

int show_site(Context& context, const SiteArguments& arguments) {
  Session& session = context.session(Depth::kDatabases);
  select_site(session, arguments.name);
  context.output().details(kColumns, to_json(session.ActiveSite));
  return kExitGreen;
}

void fill_fields(Session& session, const SiteArguments& arguments) {
  session::Form1& form = session.form1;
  const std::initializer_list<std::pair<const OptionalText&, controls::Observable<std::string>&>> fields = {
      {arguments.nt_server, form.NTSERVER.text},
      {arguments.exchange_server, form.EXSERVER.text},
      {arguments.exchange_org, form.EXorg.text},
      {arguments.exchange_site, form.EXSite.text},
      {arguments.mail_store, form.Mail_Store.text}};
  for (const auto& [text, box] : fields) {
    if (text)
      box = *text;
  }
  if (!arguments.exchange2000)
    return;
  form.EXH5.index = *arguments.exchange2000 ? 1 : 0;
  stores::EXH5_Click(session);
}

/// The saved site from the fields, which still show it; the file may contain a deleted one of its name.
records::SiteRecord saved_site(Session& session) {
  session::Form1& form = session.form1;
  const bool exchange_2000 = form.EXH5.index == 1;
  return {.Exchange2000 = exchange_2000,
          .Name = form.ListView2.selected()->text,
          .NTServer = form.NTSERVER.text,
          .ExchangeServer = form.EXSERVER.text,
          .ExchangeOrg = form.EXorg.text,
          .ExchangeSite = form.EXSite.text,
          .MailStore = exchange_2000 ? form.Mail_Store.text.get() : std::string()};
}

/// Presses Save; the button stays enabled when the fields were refused.
int save_site(Context& context, Session& session) {
  act(session, [&] { stores::Save_Site(session); });
  if (session.form1.Save_Site.enabled)
    return kExitRed;
  if (context.output().json())
    context.output().details(kColumns, to_json(saved_site(session)));
  return kExitGreen;
}

int add_site(Context& context, const SiteArguments& arguments) {
  Session& session = context.session(Depth::kDatabases);
  act(session, [&] {
    stores::New_Site(session);
    stores::site_name_edited(session, arguments.name);
  });
  if (session.form1.New_Site_Name.text.get().empty())
    return kExitRed;
  fill_fields(session, arguments);
  return save_site(context, session);
}

int edit_site(Context& context, const SiteArguments& arguments) {
  Session& session = context.session(Depth::kDatabases);
  select_site(session, arguments.name);
  stores::Edit_Site(session);
  if (!session.form1.Save_Site.enabled)
    return kExitRed;
  fill_fields(session, arguments);
  return save_site(context, session);
}

int delete_site(Context& context, const SiteArguments& arguments) {
  Session& session = context.session(Depth::kDatabases);
  select_site(session, arguments.name);
  const std::size_t before = session.form1.ListView2.size();
  act(session, [&] { stores::Delete_site(session); });
  return session.form1.ListView2.size() < before ? kExitGreen : kExitRed;
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
  list->callback([&context] { context.set_action([&context] { return list_sites(context); }); });
  add("show", "Show a site", show_site);
  add_field_options(*add("add", "Add a site", add_site), *arguments);
  add_field_options(*add("edit", "Change the given fields of a site", edit_site), *arguments);
  add("delete", "Delete a site; asks first", delete_site);
}

}  // namespace twk::cli
