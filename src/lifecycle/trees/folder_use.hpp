#pragma once

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "lifecycle/trees/tree_path.hpp"

namespace twk::session {
struct Session;
}

/// Who uses the folders and shares of the domain's file servers, so that an operation on one account never
/// touches what belongs to another.
namespace twk::lifecycle {

/// A folder that an account refers to.
struct FolderClaim {
  std::string account;  ///< its account name
  std::string what;     ///< "home", "profile", "terminal-server home", "terminal-server profile"
  std::string path;     ///< as the account has it
};

/// A share of a server and its folder.
struct SharedFolder {
  std::string share;
  std::string folder;  ///< as the server spells it, "D:\Users\jo"
};

/// The accounts of the domain with their home, profile, terminal-server home and profile, and the shares of
/// each server that was asked about. The accounts are read once, with one search, and each server's shares
/// once; the runs report their own changes. Folders are compared as their server spells them,
/// whatever share leads to them; a path through a share that the server does not have is compared by its
/// text. "FS1" and "fs1.twk.test" are one server.
///
/// Every call raises the error of a domain or server that does not answer: without an answer, the owner
/// of a folder is unknown. Lists end after `kMostNamed` entries, enough to refuse and to give examples.
class FolderUse {
 public:
  static constexpr std::size_t kMostNamed = 50;

  explicit FolderUse(session::Session& session);
  FolderUse(const FolderUse&) = delete;
  FolderUse& operator=(const FolderUse&) = delete;
  ~FolderUse();

  /// The claims of accounts other than `account` on the folder itself and on what is in it.
  std::vector<FolderClaim> claims_within(const TreePath& path, std::string_view account);
  /// The claims of accounts other than `account` on folders above this one. A folder that also has claims
  /// of third accounts is a common one and does not count.
  std::vector<FolderClaim> claims_above(const TreePath& path, std::string_view account);
  /// The claims of accounts other than `account` whose path goes through this share.
  std::vector<FolderClaim> claims_through(const std::string& server, std::string_view share,
                                          std::string_view account);
  /// The shares of the folder itself and of what is in it, without those of whole drives and those used
  /// only by the paths of `account`.
  std::vector<SharedFolder> shares_within(const TreePath& path, std::string_view account);
  /// The folder of a share; none when the server has no such share.
  std::optional<std::string> folder_of_share(const std::string& server, std::string_view share);

  /// Why the server would not make shares for this account; empty when it would. It is asked once.
  const std::string& refusal_of_shares(const std::string& server);

  // Changes made by a run; nothing is read.

  void forget_account(std::string_view account);
  /// The account's `what`, as in `FolderClaim`, is `path` now; empty for none.
  void account_has(std::string_view account, std::string_view what, std::string_view path);
  void forget_share(const std::string& server, std::string_view share);
  void add_share(const std::string& server, const std::string& share, const std::string& folder);

  /// True when the person was already asked this, and agreed.
  [[nodiscard]] bool is_agreed(const std::string& question) const { return agreed_.contains(question); }
  void agree(const std::string& question) { agreed_.insert(question); }

 private:
  class Accounts;
  class Server;

  Accounts& accounts();
  Server& server(const std::string& name);

  session::Session& session_;
  std::unique_ptr<Accounts> accounts_;
  std::map<std::string, std::unique_ptr<Server>> servers_;
  std::map<std::string, std::string> refusals_;  ///< of shares, by server
  std::set<std::string> agreed_;
};

/// Keeps what is known about the folders of a session for a scope: for one user, or for a whole run. Of
/// nested scopes the outermost counts. Nothing is read until needed.
class KnownFolders {
 public:
  explicit KnownFolders(session::Session& session);
  KnownFolders(const KnownFolders&) = delete;
  KnownFolders& operator=(const KnownFolders&) = delete;
  ~KnownFolders();

 private:
  session::Session& session_;
  bool outermost_;
};

/// What the scope knows; outside any scope, reads again.
std::shared_ptr<FolderUse> folder_use(session::Session& session);

}  // namespace twk::lifecycle
