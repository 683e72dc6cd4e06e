#include "base/dates.hpp"
#include "batch/find_accounts.hpp"
#include "cli/frame/resource_session.hpp"
#include "cli/frame/selection_run.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/users/users_commands.hpp"
#include "directory/loading/ad_load.hpp"
#include "directory/loading/nt_load.hpp"
#include "platform/adsi.hpp"
#include "session/loaded_domain.hpp"

namespace twk::cli {
namespace {

using platform::ObjectPtr;
using session::Session;

const std::vector<Column> kColumns = {{"user", "User"}, {"dn", "Distinguished name"}};

void load_users(Session& session) {
  if (session::is_active_directory(session))
    directory::Load_AD_Users(session, "LDAP://" + session.DomainName, true, "subtree", "",
                             directory::UserList::kSelection);
  else
    directory::show_nt_users(session);
}

/// The hits in list order.
std::vector<Json> hits(const Session& session) {
  const controls::ListView& list = session.domain.selection;
  const std::string prefix = "LDAP://" + session.DomainName + "/";
  std::vector<Json> rows;
  rows.reserve(list.size());
  for (std::size_t i = list.size(); i > 0; --i) {
    const controls::ListRow& row = list.at(i - 1);
    const bool ad = session::is_active_directory(session);
    rows.push_back({{"user", row.text}, {"dn", ad ? row.key.substr(prefix.size()) : std::string()}});
  }
  return rows;
}

class SearchView final : public ConsoleView {
 public:
  SearchView(Context& context, Session& session, std::size_t all)
      : ConsoleView(context, session), all_(all) {}

  void progress(int percent) override {
    step("Looking at " + std::to_string(all_) + " users: " + std::to_string(percent) + " %");
  }

 private:
  std::size_t all_;
};

int find(Context& context, const std::function<bool(Session& session, const ObjectPtr&)>& is_hit) {
  Session& session = resource_session(context);
  load_users(session);
  const std::size_t all = session.domain.users.size();
  SearchView view(context, session, all);
  std::size_t found = 0;
  const bool whole = batch::find_accounts(
      session, [&](const ObjectPtr& account) { return is_hit(session, account); }, view, found);
  view.clear();
  if (found > 0)
    context.output().table(kColumns, hits(session));
  complain(std::to_string(found) + " of " + std::to_string(all) + " users found" +
           (whole ? "" : " until it was stopped"));
  return whole ? kExitGreen : kExitYellow;
}

int find_expired(Context& context, const std::string& before) {
  const auto limit = base::parse_date(before);
  if (!limit)
    throw UsageError("--before takes a date such as 31/12/2026 or 2026-12-31, not \"" + before + "\"");
  if (*limit < base::make_date({1970, 1, 1})) {
    throw UsageError("--before \"" + before + "\" is " + base::format_date(*limit) +
                     ", which is before 1970: write the year with four digits");
  }
  return find(context, [limit](Session& session, const ObjectPtr& account) {
    return batch::expires_before(session, account, *limit);
  });
}

}  // namespace

void add_users_find(Command& users, Context& context) {
  auto before = std::make_shared<std::string>();
  auto* expired = users.add_subcommand("find-expired", "Find the accounts that expired before a day");
  expired->add_option("--before", *before, "The day: 31/12/2026 or 2026-12-31")
      ->required()
      ->type_name("DATE");
  expired->callback(
      [=, &context] { context.set_action([=, &context] { return find_expired(context, *before); }); });
  auto* locked = users.add_subcommand("find-locked", "Find the accounts that are locked out");
  locked->callback([&context] {
    context.set_action([&context] {
      return find(context, [](Session&, const ObjectPtr& account) {
        return platform::User(account).IsAccountLocked();
      });
    });
  });
}

}  // namespace twk::cli
