#include "cli/frame/commands.hpp"
#include "cli/frame/context.hpp"
#include "cli/frame/mailbox_reader.hpp"
#include "cli/frame/rehearsed_steps.hpp"
#include "cli/parser/near_matches.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "creation/mailbox_stage.hpp"
#include "session/loaded_database.hpp"
#include "session/log_tab.hpp"
#include "session/preferences.hpp"
#include "stores/template_store.hpp"

namespace twk::cli {
namespace {

using session::Session;

struct MailboxArguments {
  std::string name;
  std::string site;
  std::string template_name;
  std::string path;
  bool custom_recipient = false;
  bool dry_run = false;
};

const std::vector<Column> kFound = {{"mailbox", "Mailbox"}, {"place", "Place"}, {"path", "Path"}};
const std::vector<Column> kShown = {{"mailbox", "Mailbox"}, {"kind", "Kind"},
                                    {"name", "Name"},       {"address", "Address"},
                                    {"account", "Account"}, {"otherAddresses", "Other addresses"},
                                    {"place", "Place"},     {"path", "Path"}};

Session& open(Context& context, const MailboxArguments& arguments) {
  Session& session = context.session(Depth::kDomain);
  load_mail_site(session, arguments.site);
  if (!arguments.template_name.empty()) {
    stores::tell(session, stores::load_template(session, find_name("template", arguments.template_name,
                                                                   session.database.templates)));
    // The template must not clear the site's fields.
    load_mail_site(session, arguments.site);
  }
  return session;
}

int find(Context& context, const MailboxArguments& arguments) {
  Session& session = open(context, arguments);
  const std::vector<Json> rows = find_mailboxes(session, arguments.name);
  if (rows.empty())
    complain("No mailbox found");
  else
    context.output().table(kFound, rows);
  return kExitGreen;
}

int show(Context& context, const MailboxArguments& arguments) {
  Session& session = open(context, arguments);
  const std::vector<Json> rows = describe_mailboxes(session, arguments.name);
  if (rows.empty())
    throw Refused("There is no mailbox \"" + arguments.name + "\".");
  for (const Json& row : rows)
    context.output().details(kShown, row);
  return kExitGreen;
}

/// The same for a command that changes something.
Session& open_for_change(Context& context, const MailboxArguments& arguments) {
  if (arguments.dry_run) {
    context.dialogs().set_asking(Asking::kYes);
    print_steps(context);
  }
  return open(context, arguments);
}

/// Prints the outcome with what it is about, but for a rehearsal's GREEN one.
int tell(Context& context, std::string_view light, const std::string& message, const Json& about) {
  if (context.rehearses() && light == session::kGreen)
    return kExitGreen;
  Json result = {{"light", std::string(light)}, {"message", message}};
  result.update(about);
  context.output().result(result, context.output().light(light) + "  " + message);
  return exit_code_of_light(light);
}

int create(Context& context, const MailboxArguments& arguments) {
  Session& session = open_for_change(context, arguments);
  const platform::ObjectPtr user = bind_user(context.domain(), arguments.name);
  const session::CreationOutcome outcome =
      creation::CreateMailboxFor(session, user, session::read_preferences(session).mail_administrator);
  return tell(context, outcome.light, outcome.message, {{"user", arguments.name}});
}

bool delete_old(Session& session, const MailboxArguments& arguments) {
  mail::MailboxDeletion request = mailbox_request(session, arguments.name);
  request.CustomRecipient = arguments.custom_recipient;
  request.path = arguments.path;
  return mail::DeleteMailbox(session, request);
}

bool delete_new(Context& context, Session& session, const std::string& name) {
  const platform::ObjectPtr user = bind_user(context.domain(), name);
  const bool sure = !session::read_preferences(session).confirm_deletes ||
                    mail::confirm_mailbox_deletion(session, user->ADsPath());
  return sure && mail::DeleteMailbox2000(session, user);
}

int remove(Context& context, const MailboxArguments& arguments) {
  Session& session = open_for_change(context, arguments);
  session.log.begin_block();
  const bool deleted =
      has_store(session) ? delete_new(context, session, arguments.name) : delete_old(session, arguments);
  session.log.close();
  const std::string_view light = deleted ? session::kGreen : session::kRed;
  const std::string message = session::LOG_TAB(
      session, light,
      (deleted ? "Deleted mail account for " : "Mail account not deleted for ") + arguments.name);
  return tell(context, light, message, {{"mailbox", arguments.name}});
}

}  // namespace

void add_mailbox_commands(Command& app, Context& context) {
  auto arguments = std::make_shared<MailboxArguments>();
  auto* mailbox = app.add_subcommand("mailbox", "Show, create and delete mailboxes");
  mailbox->require_subcommand();
  const auto add = [&](const char* name, const char* what, const char* of, const char* meaning, auto action) {
    auto* command = mailbox->add_subcommand(name, what);
    command->add_option(of, arguments->name, meaning)->required();
    command->add_option("--site", arguments->site, "Site whose mail server it is")
        ->required()
        ->type_name("S");
    command->callback(
        [=, &context] { context.set_action([=, &context] { return action(context, *arguments); }); });
    return command;
  };
  const auto add_template = [&](Command* command) {
    command
        ->add_option("--template", arguments->template_name, "Template whose variables the mail table uses")
        ->type_name("T");
  };
  add("find", "Find the mailboxes of a name", "NAME", "Name of the mailbox", find);
  add("show", "Show the mailboxes of a name", "NAME", "Name of the mailbox", show);
  auto* creation = add("create", "Give an account a mailbox", "USER",
                       "Account name, common name, principal name or distinguished name", create);
  add_template(creation);
  add_dry_run(*creation, arguments->dry_run);
  auto* deletion = add("delete", "Delete a mailbox; asks first", "NAME", "Name of the mailbox", remove);
  add_template(deletion);
  deletion->add_option("--path", arguments->path, "Which one of several, as printed by `find`")
      ->type_name("PATH");
  deletion->add_flag("--custom-recipient", arguments->custom_recipient, "It is an address elsewhere");
  add_dry_run(*deletion, arguments->dry_run);
}

}  // namespace twk::cli
