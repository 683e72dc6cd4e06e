#include <optional>

#include "base/text.hpp"
#include "cli/frame/day_texts.hpp"
#include "cli/frame/resource_session.hpp"
#include "cli/terminal/display.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/input.hpp"
#include "cli/worlds/lab_commands.hpp"
#include "directory/account_expiry.hpp"
#include "platform/adsi.hpp"

namespace twk::cli {
namespace {

struct LogonArguments {
  std::string name;
  bool password_stdin = false;
  std::string password_file;
  std::string at;
};

/// The user in the lab, by the form that `locate_user` returns. Raises `UsageError` without a lab.
std::string locate(Context& context, const std::string& name) {
  static_cast<void>(context.lab());
  return locate_user(context.domain(), name);
}

int lock_user(Context& context, const std::string& name) {
  context.lab().lock_account(locate(context, name));
  return tell_light(context, session::kGreen, name + " is locked out.", {{"user", name}});
}

int expire_user(Context& context, const std::string& name) {
  static_cast<void>(context.lab());
  const Domain domain = context.domain();
  platform::User user(bind_user(domain, name));
  const base::Date now = domain.services.clock.utc_now();
  directory::put_expiry(user, now);
  user.SetInfo();
  return tell_light(context, session::kGreen, "The account of " + name + " has expired.",
                    {{"user", name}, {"expires", directory::sortable_expiry(domain.services.clock, now)}});
}

std::optional<base::Date> moment_of(const Domain& domain, const std::string& text) {
  if (text.empty())
    return std::nullopt;
  const auto local = base::parse_date(text);
  if (!local)
    throw UsageError("--at takes a day and a time such as \"2026-12-31 07:30\", not \"" + text + "\"");
  return domain.services.clock.to_utc(*local);
}

std::string text_of(const lab::LogonRefusal& refusal) {
  return std::string(refusal.name) + " (" + error_number_text(refusal.status) +
         "): " + std::string(refusal.text);
}

/// "… Also: STATUS_ACCOUNT_DISABLED, …": the reasons that the domain would give next.
std::string further_text(const std::vector<lab::LogonRefusal>& refusals) {
  std::string names;
  for (std::size_t i = 1; i < refusals.size(); ++i)
    names += (i == 1 ? " Also: " : ", ") + std::string(refusals[i].name);
  return names.empty() ? names : names + ".";
}

std::string message_of(const LogonArguments& arguments, const lab::LogonVerdict& verdict,
                       bool with_password) {
  const std::string when = arguments.at.empty() ? "now" : "then";
  if (!verdict.refusals.empty()) {
    return arguments.name + " could not log on " + when + ". " + text_of(verdict.refusals.front()) +
           further_text(verdict.refusals) +
           (verdict.locked_by_this ? " This wrong password locked the account." : "");
  }
  return arguments.name + " could log on " + when + (with_password ? "." : " with the right password.");
}

int try_logon(Context& context, const LogonArguments& arguments) {
  const std::string user = locate(context, arguments.name);
  const auto at = moment_of(context.domain(), arguments.at);
  std::optional<std::string> password;
  if (arguments.password_stdin || !arguments.password_file.empty())
    password = read_password(arguments.password_stdin ? "-" : arguments.password_file);
  const lab::LogonVerdict verdict = context.lab().try_logon(user, password, at);
  Json reasons = Json::array();
  for (const lab::LogonRefusal& refusal : verdict.refusals) {
    reasons.push_back(
        {{"status", error_number_text(refusal.status)}, {"name", refusal.name}, {"text", refusal.text}});
  }
  const bool allowed = verdict.refusals.empty();
  return tell_light(context, allowed ? session::kGreen : session::kRed,
                    message_of(arguments, verdict, password.has_value()),
                    {{"user", arguments.name},
                     {"allowed", allowed},
                     {"passwordChecked", password.has_value()},
                     {"wrongPasswords", verdict.wrong_passwords},
                     {"reasons", reasons}});
}

Command* add(Command& lab, const char* name, const char* description, std::string& user) {
  auto* command = lab.add_subcommand(name, description);
  command->add_option("USER", user, "Account name, common name, principal name or distinguished name")
      ->required();
  return command;
}

}  // namespace

void add_lab_logon(Command& lab, Context& context) {
  auto name = std::make_shared<std::string>();
  auto* lock = add(lab, "lock", "Lock a user out, as too many wrong passwords do", *name);
  lock->callback([=, &context] { context.set_action([=, &context] { return lock_user(context, *name); }); });

  auto* expire = add(lab, "expire", "Let a user's account end now", *name);
  expire->callback(
      [=, &context] { context.set_action([=, &context] { return expire_user(context, *name); }); });

  auto arguments = std::make_shared<LogonArguments>();
  auto* logon = add(lab, "logon", "Tell whether a user could log on, and why not", arguments->name);
  auto* from_input = logon->add_flag("--password-stdin", arguments->password_stdin,
                                     "With the password that is a line of standard input");
  logon->add_option("--password-file", arguments->password_file, "With the first line of a file as password")
      ->type_name("FILE")
      ->excludes(from_input);
  logon->add_option("--at", arguments->at, "At another moment: \"2026-12-31 07:30\"; nothing is counted then")
      ->type_name("MOMENT");
  logon->footer(
      "With a password, a wrong one is counted, and locks the account at the threshold of the lab.");
  logon->callback(
      [=, &context] { context.set_action([=, &context] { return try_logon(context, *arguments); }); });
}

}  // namespace twk::cli
