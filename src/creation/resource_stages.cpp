#include "creation/resource_stages.hpp"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "creation/creation_run.hpp"
#include "directory/operations.hpp"
#include "format/replace.hpp"
#include "resources/WTS.hpp"
#include "resources/directory_permissions.hpp"
#include "resources/share502.hpp"
#include "session/session.hpp"
#include "stores/side_tables.hpp"

namespace twk::creation {
namespace {

using resources::ShareResult;

/// A share that the template requests, and the outcome.
struct UserShare {
  std::string name;
  std::string path;
  std::string remark;
  std::string security_fault;  ///< what the log says when it does not have the table's list
  ShareResult result = ShareResult::kMade;
};

void add_wanted(CreationRun& run, std::vector<UserShare>& shares, std::string_view name, UserShare share) {
  share.name = format::FRString(base::trim(name), "%UserName%", run.SamName);
  if (!share.name.empty())
    shares.push_back(std::move(share));
}

std::vector<UserShare> wanted_shares(CreationRun& run) {
  std::vector<UserShare> shares;
  add_wanted(run, shares, run.user_template.ProfileShare,
             {{}, run.paths.ProfileLocalDir, "Users Profile Share", "Error Creating Share Security: \\\\"});
  add_wanted(run, shares, run.user_template.HomeShare,
             {{}, run.paths.HomeLocalDir, "Users Home Share", "Error Creating Shares Security: \\\\"});
  return shares;
}

bool any(const std::vector<UserShare>& shares, ShareResult result) {
  return std::any_of(shares.begin(), shares.end(),
                     [result](const UserShare& share) { return share.result == result; });
}

/// True for a table without a row; one that cannot be read has already been reported.
bool has_no_permissions(session::Session& session) {
  bool none = false;
  base::Trap unreadable;
  unreadable([&] { none = stores::read_permissions(session, stores::kPermissionFile).empty(); });
  return none;
}

/// "Security Failed for " each directory that failed.
bool permissions_set(CreationRun& run, const std::string& local, const std::string& reachable) {
  if (local.empty() ||
      resources::Set_Permissions(run.session, run.PdcName, reachable, run.SamName, run.RunWarning))
    return true;
  run.session.log.reason("Security Failed for " + local);
  return false;
}

}  // namespace

void CreateUserShares(CreationRun& run) {
  const std::string& server = run.site.server;
  std::vector<UserShare> shares = wanted_shares(run);
  for (UserShare& share : shares) {
    share.result =
        resources::CreateShare(run.session, server, share.name, share.path, share.remark, run.SamName);
    // A server that was lost may have made it before.
    if (share.result != ShareResult::kFailed || resources::is_without_answer(run.session, server, share.name))
      run.view.made({MadeThing::Kind::kShare, share.path, server, share.name, nullptr});
  }
  const auto log_each = [&](const auto& text_of) {
    for (const UserShare& share : shares) {
      if (share.result != ShareResult::kMade)
        run.session.log.reason(text_of(share) + server + "\\" + share.name);
    }
  };
  if (any(shares, ShareResult::kFailed)) {
    run.RunWarning = 2;
    log_each([](const UserShare&) { return std::string("Error Creating Shares: \\\\"); });
    return run.view.stage(Stage::kShares, StageState::kFailed);
  }
  if (any(shares, ShareResult::kFallbackList)) {
    run.RunWarning = 2;
    log_each([](const UserShare& share) { return share.security_fault; });
    run.session.log.reason("Check Security permissions for Shares for invaild name");
    return run.view.stage(Stage::kShares, StageState::kWarned);
  }
  for (const UserShare& share : shares)
    log(run, "Creating Shares: \\\\" + server + "\\" + share.name);
  run.view.stage(Stage::kShares, StageState::kCompleted);
}
void ApplyTerminalSettings(CreationRun& run) {
  session::Session& session = run.session;
  resources::ApplyTerminalRows(session, run.SamName, directory::winnt_domain(session), run.request.UserId);
}
void ApplyDirPermissions(CreationRun& run) {
  const ResolvedPaths& paths = run.paths;
  const bool home = permissions_set(run, paths.HomeLocalDir, paths.HomeShareDir);
  const bool profile = permissions_set(run, paths.ProfileLocalDir, paths.ProfileShareDir);
  if (!home || !profile) {
    if (has_no_permissions(run.session))
      run.session.log.remember("No Users found in permissions file");
    run.RunWarning = 2;
    return run.view.stage(Stage::kPermissions, StageState::kFailed);
  }
  if (!paths.HomeLocalDir.empty() || !paths.ProfileLocalDir.empty())
    log(run, "Set Directory Permissions OK");
  run.view.stage(Stage::kPermissions, StageState::kCompleted);
}

}  // namespace twk::creation
