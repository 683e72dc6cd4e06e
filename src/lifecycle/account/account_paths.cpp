#include "lifecycle/account/account_paths.hpp"

#include <vector>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/operations.hpp"
#include "platform/adsi.hpp"
#include "platform/query.hpp"
#include "platform/user_parameters.hpp"
#include "session/session.hpp"

namespace twk::lifecycle {
namespace {

using platform::WtsConfigClass;
using session::Session;

using Visit = std::function<void(const std::string& account, std::string_view what, const std::string& path)>;

void visit_path(const Visit& visit, const std::string& account, std::string_view what,
                const std::string& path) {
  if (!base::trim(path).empty())
    visit(account, what, path);
}

/// Parameters that are not terminal-server settings, or broken ones, name no folder.
void visit_terminal_paths(const Visit& visit, const std::string& account, const std::string& parameters) {
  if (parameters.empty())
    return;
  base::Trap unreadable;
  unreadable([&] {
    const auto decoded = platform::UserParameters::decode(platform::user_parameters_bytes(parameters));
    const auto text = [&](WtsConfigClass setting) {
      return std::get<std::string>(platform::wts_setting(decoded, setting));
    };
    visit_path(visit, account, kTerminalHomePath, text(WtsConfigClass::kTerminalServerHomeDir));
    visit_path(visit, account, kTerminalProfilePath, text(WtsConfigClass::kTerminalServerProfilePath));
  });
}

void read_by_search(Session& session, const Visit& visit) {
  platform::QueryOptions options;
  options.cache_results = false;
  options.page_size = 1000;
  const auto rows = session.platform.query.execute(
      platform::parse_query_text("<LDAP://" + session.DomainName +
                                 ">;(|(homeDirectory=*)(profilePath=*)(userParameters=*));samAccountName,"
                                 "homeDirectory,profilePath,userParameters;subtree"),
      options);
  for (; !rows->at_eof(); rows->MoveNext()) {
    const auto text = [&](std::size_t field) { return rows->field(field).text(); };
    const std::string account = text(0);
    visit_path(visit, account, kHomePath, text(1));
    visit_path(visit, account, kProfilePath, text(2));
    visit_terminal_paths(visit, account, text(3));
  }
}

void read_by_account(Session& session, const Visit& visit) {
  const std::vector<std::string> users{"User"};
  session.platform.directory.GetObject(directory::winnt_path(session))
      ->enumerate(users, [&](const platform::ObjectPtr& user) {
        const std::string account = user->Name();
        visit_path(visit, account, kHomePath, platform::text_or_empty(*user, "HomeDirectory"));
        visit_path(visit, account, kProfilePath, platform::text_or_empty(*user, "Profile"));
        visit_terminal_paths(visit, account, platform::text_or_empty(*user, "Parameters"));
        return true;
      });
}

}  // namespace

void read_account_paths(Session& session, const Visit& visit) {
  if (session::is_active_directory(session))
    read_by_search(session, visit);
  else
    read_by_account(session, visit);
}

}  // namespace twk::lifecycle
