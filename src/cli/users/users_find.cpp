#include <functional>

#include "base/errors.hpp"
#include "cli/frame/day_texts.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/interrupt.hpp"
#include "cli/terminal/progress.hpp"
#include "cli/users/users_commands.hpp"
#include "directory/account_expiry.hpp"
#include "directory/account_reports.hpp"

namespace twk::cli {
namespace {

using directory::AccountReport;
using directory::GoesOn;
using directory::ReportedAccount;

/// What a report prints of an account besides its name.
struct ReportColumn {
  Column column;
  std::function<Json(const Domain& domain, const ReportedAccount& account)> cell;
};

ReportColumn moment_column(const char* key, const char* title) {
  return {{key, title}, [](const Domain& domain, const ReportedAccount& account) {
            return moment_text(domain.services.clock, account.moment);
          }};
}

/// The day on which an account ends, as `user show` prints it.
const ReportColumn kExpires = {
    {"expires", "Ends"}, [](const Domain& domain, const ReportedAccount& account) {
      return account.moment ? Json(directory::sortable_expiry(domain.services.clock, *account.moment))
                            : Json(nullptr);
    }};
const ReportColumn kCreated = {{"created", "Made"}, [](const Domain& domain, const ReportedAccount& account) {
                                 return moment_text(domain.services.clock, account.created);
                               }};
const ReportColumn kDisabled = {{"disabled", "Disabled"}, [](const Domain&, const ReportedAccount& account) {
                                  return Json(account.disabled);
                                }};
const ReportColumn kNeverLoggedOn = {
    {"neverLoggedOn", "Never logged on"},
    [](const Domain&, const ReportedAccount& account) { return Json(!account.moment.has_value()); }};

/// Counts the accounts as they come, on a terminal, and stops for Ctrl-C.
class Watch {
 public:
  GoesOn goes_on() {
    return [this] {
      if (++seen_ % 1000 == 0)
        progress_.show(std::to_string(seen_) + " users so far");
      return !interrupted();
    };
  }

 private:
  Progress progress_;
  std::size_t seen_ = 0;
};

int print(Context& context, const Domain& domain, const std::vector<ReportColumn>& further,
          const std::function<AccountReport(const GoesOn&)>& find) {
  AccountReport report;
  {
    Watch watch;
    report = find(watch.goes_on());
  }
  std::vector<Column> columns = {{"user", "User"}};
  for (const ReportColumn& one : further)
    columns.push_back(one.column);
  columns.push_back({"dn", "Distinguished name"});
  std::vector<Json> rows;
  rows.reserve(report.accounts.size());
  for (const ReportedAccount& account : report.accounts) {
    Json row = {{"user", account.name}};
    for (const ReportColumn& one : further)
      row[one.column.key] = one.cell(domain, account);
    row["dn"] = account.dn;
    rows.push_back(std::move(row));
  }
  context.output().table(columns, rows);
  complain(std::to_string(rows.size()) + (rows.size() == 1 ? " user" : " users") + " found" +
           (report.whole ? "" : " until it was stopped"));
  return report.whole ? kExitGreen : kExitYellow;
}

/// Reports that a WinNT domain cannot give are refused.
void require_active_directory(const Domain& domain) {
  if (!domain.active_directory)
    throw Refused(std::string(directory::kNeedsActiveDirectory));
}

/// The moment in UTC so many days from now.
base::Date days_from_now(const Domain& domain, int days) {
  return {domain.services.clock.utc_now().serial + days};
}

struct ExpiredArguments {
  std::string before;
  std::string within;
};

int find_expired(Context& context, const ExpiredArguments& arguments) {
  const Domain domain = context.domain();
  platform::Clock& clock = domain.services.clock;
  directory::Span span{std::nullopt, clock.utc_now()};
  if (!arguments.before.empty())
    span.until = clock.to_utc(read_day(clock, "--before", arguments.before));
  if (!arguments.within.empty())
    span = {clock.utc_now(), days_from_now(domain, read_days("--within", arguments.within))};
  return print(context, domain, {kExpires, kDisabled},
               [&](const GoesOn& goes_on) { return directory::accounts_ending(domain, span, goes_on); });
}

int find_locked(Context& context) {
  const Domain domain = context.domain();
  return print(context, domain, {moment_column("lockedSince", "Locked since"), kDisabled},
               [&](const GoesOn& goes_on) { return directory::locked_accounts(domain, goes_on); });
}

int find_inactive(Context& context, const std::string& days) {
  const int count = read_days("--days", days);
  const Domain domain = context.domain();
  require_active_directory(domain);
  return print(context, domain,
               {moment_column("lastLogon", "Last logon"), kNeverLoggedOn, kCreated, kDisabled},
               [&](const GoesOn& goes_on) {
                 return directory::inactive_accounts(domain, days_from_now(domain, -count), goes_on);
               });
}

int find_never_logged_on(Context& context) {
  const Domain domain = context.domain();
  require_active_directory(domain);
  return print(context, domain, {kCreated, kDisabled},
               [&](const GoesOn& goes_on) { return directory::accounts_never_used(domain, goes_on); });
}

int find_password_expiring(Context& context, const std::string& within) {
  const int days = read_days("--within", within);
  const Domain domain = context.domain();
  require_active_directory(domain);
  const auto age = directory::greatest_password_age(domain);
  if (!age)
    complain("Passwords of this domain never expire.");
  return print(
      context, domain, {moment_column("passwordExpires", "Password expires")}, [&](const GoesOn& goes_on) {
        if (!age)
          return AccountReport{};
        const base::Date now = domain.services.clock.utc_now();
        return directory::passwords_expiring(domain, *age, {now, days_from_now(domain, days)}, goes_on);
      });
}

Command* add_report(Command& users, Context& context, const char* name, const char* description,
                    const std::function<int()>& run) {
  auto* report = users.add_subcommand(name, description);
  add_csv_option(*report, context);
  report->callback([=, &context] { context.set_action(run); });
  return report;
}

}  // namespace

void add_users_find(Command& users, Context& context) {
  auto expiry = std::make_shared<ExpiredArguments>();
  auto* expired = add_report(users, context, "find-expired", "Find the accounts that expired, or soon will",
                             [=, &context] { return find_expired(context, *expiry); });
  const Option* const before =
      expired
          ->add_option("--before", expiry->before, "Expired before that day: today, 31/12/2026 or 2026-12-31")
          ->type_name("DATE");
  expired->add_option("--within", expiry->within, "Will expire within so many days: 30d")
      ->type_name("DAYS")
      ->excludes(before);

  add_report(users, context, "find-locked", "Find the accounts that are locked out",
             [&context] { return find_locked(context); });

  auto days = std::make_shared<std::string>();
  auto* inactive =
      add_report(users, context, "find-inactive", "Find the users who have not logged on for long",
                 [=, &context] { return find_inactive(context, *days); });
  inactive
      ->add_option("--days", *days, "For at least so many days; those who never did count from their making")
      ->required()
      ->type_name("DAYS");

  auto within = std::make_shared<std::string>("14d");
  auto* expiring =
      add_report(users, context, "find-password-expiring", "Find the users whose password will expire soon",
                 [=, &context] { return find_password_expiring(context, *within); });
  expiring->add_option("--within", *within, "Within so many days; 14d if not given")->type_name("DAYS");

  add_report(users, context, "find-never-logged-on", "Find the users who never logged on",
             [&context] { return find_never_logged_on(context); });
}

}  // namespace twk::cli
