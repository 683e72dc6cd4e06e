#include "lifecycle/trees/folder_use.hpp"

#include <algorithm>
#include <functional>
#include <unordered_map>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "creation/share_rights.hpp"
#include "format/replace.hpp"
#include "lifecycle/account/account_paths.hpp"
#include "platform/adsi.hpp"
#include "session/session.hpp"

namespace twk::lifecycle {
namespace {

using session::Session;

/// For a server given by its address, which may be any server.
constexpr std::string_view kAnyServer = "*";

/// "FS1" of "fs1.twk.test".
std::string server_key(std::string_view name) {
  std::string key = base::upper(base::trim(name));
  while (key.starts_with('\\'))
    key.erase(0, 1);
  const bool address = key.find_first_not_of("0123456789.") == base::npos || key.find(':') != base::npos;
  return address ? std::string(kAnyServer) : key.substr(0, key.find('.'));
}

/// An address counts as a separate name among the servers that were asked.
std::string known_key(const std::string& name) {
  std::string key = server_key(name);
  return key == kAnyServer ? name : key;
}

/// True when the two may be one server.
bool may_be_same(std::string_view a, std::string_view b) {
  return a == b || a == kAnyServer || b == kAnyServer;
}

/// A folder in upper case with one backslash at its end, so that what is in it begins with it.
std::string folder_key(std::string_view folder) {
  std::string key = base::upper(base::trim(folder));
  while (key.ends_with('\\'))
    key.pop_back();
  return key + '\\';
}

/// "\\FS1\Users\jo" of an account in its parts, as a server reads it: slashes are backslashes, doubled ones
/// count once, blanks and dots at the end of a part do not count, and ".." leads up. None for what is not
/// a network path.
std::optional<TreePath> parts_of_claim(std::string_view text) {
  std::string path(base::trim(text));
  std::replace(path.begin(), path.end(), '/', '\\');
  if (!path.starts_with("\\\\"))
    return std::nullopt;
  std::vector<std::string> parts;
  for (std::string part : base::split(path.substr(2), '\\')) {
    if (part == ".." && parts.size() > 2)
      parts.pop_back();
    while (part.ends_with('.') || part.ends_with(' '))
      part.pop_back();
    if (!part.empty())
      parts.push_back(std::move(part));
  }
  if (parts.size() < 2)
    return std::nullopt;
  TreePath tree{std::move(parts[0]), std::move(parts[1]), {}};
  tree.parts.assign(std::make_move_iterator(parts.begin() + 2), std::make_move_iterator(parts.end()));
  return tree;
}

std::string tail_key(const TreePath& path) {
  std::string tail;
  for (const std::string& part : path.parts)
    tail += "\\" + part;
  return tail;
}

}  // namespace

/// All claims of the domain, by their server.
class FolderUse::Accounts {
 public:
  struct Claim {
    FolderClaim claim;
    std::string account_key;
    TreePath path;
    std::string server;
  };

  explicit Accounts(Session& session) {
    read_account_paths(session, [this](const std::string& account, std::string_view what,
                                       const std::string& path) { add(account, what, path); });
  }

  /// None for a path that leads to no server.
  const Claim* add(std::string_view account, std::string_view what, std::string_view path) {
    auto parts = parts_of_claim(format::FRString(path, "%UserName%", account));
    if (!parts)
      return nullptr;
    std::string server = server_key(parts->server);
    const auto& claim = claims_.emplace_back(
        std::make_unique<Claim>(Claim{{std::string(account), std::string(what), std::string(path)},
                                      base::upper(account),
                                      *std::move(parts),
                                      std::move(server)}));
    by_account_[claim->account_key].push_back(claim.get());
    return claim.get();
  }

  /// Removes claims that the account no longer has; they stay in memory for holders of pointers.
  std::vector<const Claim*> take(std::string_view account, std::string_view what) {
    std::vector<const Claim*> taken;
    const auto found = by_account_.find(base::upper(account));
    if (found == by_account_.end())
      return taken;
    std::erase_if(found->second, [&](const Claim* claim) {
      if (!what.empty() && claim->claim.what != what)
        return false;
      taken.push_back(claim);
      return true;
    });
    return taken;
  }

  void visit(const std::function<void(const Claim&)>& each) const {
    for (const auto& [account, claims] : by_account_) {
      for (const Claim* const claim : claims)
        each(*claim);
    }
  }

 private:
  std::vector<std::unique_ptr<Claim>> claims_;
  std::map<std::string, std::vector<const Claim*>> by_account_;
};

/// A server's shares, and the claims on its folders, ordered by folder.
class FolderUse::Server {
 public:
  using Claim = Accounts::Claim;
  using Visit = std::function<bool(const Claim&)>;

  Server(Session& session, const std::string& name) : key_(server_key(name)) {
    const std::vector<std::string> classes{"FileShare"};
    session.platform.directory.GetObject(platform::shares_path(name))
        ->enumerate(classes, [this](const platform::ObjectPtr& share) {
          std::string folder;
          base::Trap without_folder;
          without_folder([&] { folder = share->Get("Path").text(); });
          add_share(share->Name(), folder);
          return true;
        });
  }

  void add(const Claim& claim) {
    if (!may_be_same(key_, claim.server))
      return;
    const std::string& folder = folders_.emplace(&claim, key_of(claim.path)).first->second;
    by_folder_[folder].insert(&claim);
    by_share_[base::upper(claim.path.share)].insert(&claim);
  }
  void remove(const Claim& claim) {
    const auto known = folders_.find(&claim);
    if (known == folders_.end())
      return;
    erase(by_folder_, known->second, claim);
    erase(by_share_, base::upper(claim.path.share), claim);
    folders_.erase(known);
  }

  void add_share(const std::string& share, const std::string& folder) {
    shares_[base::upper(share)] = {share, folder};
    by_share_folder_.emplace(folder_key(folder), base::upper(share));
  }
  void forget_share(std::string_view share) {
    const auto found = shares_.find(base::upper(share));
    if (found == shares_.end())
      return;
    const auto [first, last] = by_share_folder_.equal_range(folder_key(found->second.folder));
    const auto entry = std::find_if(first, last, [&](const auto& one) { return one.second == found->first; });
    if (entry != last)
      by_share_folder_.erase(entry);
    shares_.erase(found);
  }
  [[nodiscard]] const SharedFolder* find_share(std::string_view share) const {
    const auto found = shares_.find(base::upper(share));
    return found == shares_.end() ? nullptr : &found->second;
  }

  /// For a path not below a known share, its own text counts.
  [[nodiscard]] std::string key_of(const TreePath& path) const {
    const SharedFolder* const share = find_share(path.share);
    if (share == nullptr || share->folder.empty())
      return folder_key("?" + path.share + tail_key(path));
    std::string folder = folder_key(share->folder);
    folder.pop_back();
    return folder_key(folder + tail_key(path));
  }

  void visit_within(const std::string& key, const Visit& visit) const {
    for (auto at = by_folder_.lower_bound(key); at != by_folder_.end() && at->first.starts_with(key); ++at) {
      if (!std::all_of(at->second.begin(), at->second.end(), [&](const Claim* one) { return visit(*one); }))
        return;
    }
  }
  void visit_at(const std::string& key, const Visit& visit) const { visit_entry(by_folder_, key, visit); }
  void visit_share(std::string_view share, const Visit& visit) const {
    visit_entry(by_share_, base::upper(share), visit);
  }
  [[nodiscard]] std::vector<SharedFolder> shares_within(const std::string& key) const {
    std::vector<SharedFolder> found;
    for (auto at = by_share_folder_.lower_bound(key);
         at != by_share_folder_.end() && at->first.starts_with(key) && found.size() < kMostNamed; ++at) {
      const SharedFolder& share = shares_.at(at->second);
      if (!is_drive_root(share.folder))
        found.push_back(share);
    }
    return found;
  }

 private:
  using Claims = std::map<std::string, std::set<const Claim*>>;

  static void erase(Claims& claims, const std::string& key, const Claim& claim) {
    const auto found = claims.find(key);
    if (found == claims.end())
      return;
    found->second.erase(&claim);
    if (found->second.empty())
      claims.erase(found);
  }
  static void visit_entry(const Claims& claims, const std::string& key, const Visit& visit) {
    const auto found = claims.find(key);
    if (found != claims.end())
      static_cast<void>(std::all_of(found->second.begin(), found->second.end(),
                                    [&](const Claim* one) { return visit(*one); }));
  }

  std::string key_;
  std::map<std::string, SharedFolder> shares_;
  std::multimap<std::string, std::string> by_share_folder_;
  std::unordered_map<const Claim*, std::string> folders_;  ///< the keys in `by_folder_`
  Claims by_folder_;
  Claims by_share_;
};

FolderUse::FolderUse(Session& session) : session_(session) {}

FolderUse::~FolderUse() = default;

FolderUse::Accounts& FolderUse::accounts() {
  if (!accounts_)
    accounts_ = std::make_unique<Accounts>(session_);
  return *accounts_;
}

FolderUse::Server& FolderUse::server(const std::string& name) {
  std::unique_ptr<Server>& known = servers_[known_key(name)];
  if (!known) {
    auto server = std::make_unique<Server>(session_, name);
    accounts().visit([&](const Accounts::Claim& claim) { server->add(claim); });
    known = std::move(server);
  }
  return *known;
}

std::vector<FolderClaim> FolderUse::claims_within(const TreePath& path, std::string_view account) {
  std::vector<FolderClaim> found;
  const Server& at = server(path.server);
  at.visit_within(at.key_of(path), [&, own = base::upper(account)](const Accounts::Claim& claim) {
    if (claim.account_key != own)
      found.push_back(claim.claim);
    return found.size() < kMostNamed;
  });
  return found;
}

std::vector<FolderClaim> FolderUse::claims_above(const TreePath& path, std::string_view account) {
  std::vector<FolderClaim> found;
  const Server& at = server(path.server);
  const std::string own = base::upper(account);
  const std::string key = at.key_of(path);
  for (std::size_t end = key.find('\\'); end + 1 < key.size(); end = key.find('\\', end + 1)) {
    const std::string above = key.substr(0, end + 1);
    at.visit_at(above, [&](const Accounts::Claim& claim) {
      bool common = claim.account_key == own;
      if (!common) {
        at.visit_within(above, [&](const Accounts::Claim& third) {
          common = third.account_key != own && third.account_key != claim.account_key;
          return !common;
        });
      }
      if (!common)
        found.push_back(claim.claim);
      return found.size() < kMostNamed;
    });
  }
  return found;
}

std::vector<FolderClaim> FolderUse::claims_through(const std::string& server_name, std::string_view share,
                                                   std::string_view account) {
  std::vector<FolderClaim> found;
  server(server_name).visit_share(share, [&, own = base::upper(account)](const Accounts::Claim& claim) {
    if (claim.account_key != own)
      found.push_back(claim.claim);
    return found.size() < kMostNamed;
  });
  return found;
}

std::vector<SharedFolder> FolderUse::shares_within(const TreePath& path, std::string_view account) {
  const Server& at = server(path.server);
  std::vector<SharedFolder> shares = at.shares_within(at.key_of(path));
  std::erase_if(shares, [&, own = base::upper(account)](const SharedFolder& share) {
    bool only_own = false;
    at.visit_share(share.share, [&](const Accounts::Claim& claim) {
      only_own = claim.account_key == own;
      return only_own;
    });
    return only_own;
  });
  return shares;
}

std::optional<std::string> FolderUse::folder_of_share(const std::string& server_name,
                                                      std::string_view share) {
  const SharedFolder* const found = server(server_name).find_share(share);
  return found == nullptr ? std::nullopt : std::optional(found->folder);
}

const std::string& FolderUse::refusal_of_shares(const std::string& server_name) {
  const auto [place, is_new] = refusals_.try_emplace(known_key(server_name));
  if (is_new)
    place->second = creation::refusal_of_shares(session_, server_name);
  return place->second;
}

void FolderUse::forget_account(std::string_view account) {
  account_has(account, {}, {});
}

void FolderUse::account_has(std::string_view account, std::string_view what, std::string_view path) {
  if (!accounts_)
    return;
  const auto tell_servers = [this](const auto& what_changed) {
    for (const auto& [name, server] : servers_) {
      if (server)
        what_changed(*server);
    }
  };
  for (const Accounts::Claim* const claim : accounts_->take(account, what))
    tell_servers([&](Server& server) { server.remove(*claim); });
  if (path.empty())
    return;
  if (const Accounts::Claim* const claim = accounts_->add(account, what, path))
    tell_servers([&](Server& server) { server.add(*claim); });
}

void FolderUse::forget_share(const std::string& server_name, std::string_view share) {
  if (const auto known = servers_.find(known_key(server_name)); known != servers_.end() && known->second)
    known->second->forget_share(share);
}

void FolderUse::add_share(const std::string& server_name, const std::string& share,
                          const std::string& folder) {
  if (const auto known = servers_.find(known_key(server_name)); known != servers_.end() && known->second)
    known->second->add_share(share, folder);
}

KnownFolders::KnownFolders(Session& session) : session_(session), outermost_(session.run.folders == nullptr) {
  if (outermost_)
    session.run.folders = std::make_shared<FolderUse>(session);
}

KnownFolders::~KnownFolders() {
  if (outermost_)
    session_.run.folders.reset();
}

std::shared_ptr<FolderUse> folder_use(Session& session) {
  return session.run.folders ? session.run.folders : std::make_shared<FolderUse>(session);
}

}  // namespace twk::lifecycle
