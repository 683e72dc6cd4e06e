#include "lifecycle/trees/own_tree.hpp"

#include <array>
#include <optional>
#include <vector>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "lifecycle/account/consent.hpp"
#include "lifecycle/trees/folder_use.hpp"
#include "session/session.hpp"

namespace twk::lifecycle {
namespace {

using session::Session;

[[noreturn]] void refuse(const std::string& why) {
  base::raise(base::error::kPathFileAccess, why);
}

/// A server's built-in shares, whatever their folders.
bool is_administrative(std::string_view share) {
  constexpr std::array kNames = {"ADMIN$", "IPC$", "PRINT$", "FAX$"};
  if (share.size() == 2 && share.ends_with('$'))
    return true;
  for (const std::string_view name : kNames) {
    if (base::equals_fold(share, name))
      return true;
  }
  return false;
}

/// What every domain controller shares for everyone's logons.
bool is_of_logons(std::string_view share) {
  return base::equals_fold(share, "NETLOGON") || base::equals_fold(share, "SYSVOL");
}

/// The answer of the domain and the server about who uses a path.
template <typename Question>
auto answer(const std::string& about, Question&& question) {
  try {
    return std::forward<Question>(question)();
  } catch (const base::RuntimeError& failure) {
    base::raise(failure.number(), about + " is left unchanged, because it cannot be found out who uses it: " +
                                      failure.description());
  }
}

/// "the home of ann (\\FS1\Users\ann), the share Scans (D:\Users\jo\Scans) and 3 more".
std::string named(const std::vector<FolderClaim>& claims, const std::vector<SharedFolder>& shares) {
  constexpr std::size_t kMostShown = 3;
  std::vector<std::string> texts;
  texts.reserve(claims.size() + shares.size());
  for (const FolderClaim& claim : claims)
    texts.push_back("the " + claim.what + " of " + claim.account + " (" + claim.path + ")");
  for (const SharedFolder& share : shares)
    texts.push_back("the share " + share.share + " (" + share.folder + ")");
  std::string list;
  for (std::size_t i = 0; i < texts.size() && i < kMostShown; ++i)
    list += (i == 0 ? "" : ", ") + texts[i];
  if (texts.size() > kMostShown)
    list += " and " + base::to_text(static_cast<std::int64_t>(texts.size() - kMostShown)) +
            (texts.size() >= FolderUse::kMostNamed ? " or more others" : " more");
  return list;
}

/// Raises unless the person agrees. A run asks only once about the same others, whatever the path.
void require_consent(Session& session, FolderUse& use, const std::string& what, const std::string& others) {
  if (use.is_agreed(others))
    return;
  const std::string text = what + " " + others;
  if (!has_consent(session, session.run.terms.even_if_shared, text + ".\r\n\r\nContinue anyway?",
                   "Used by Others")) {
    refuse(text + (session.run.terms.even_if_shared == session::Consent::kNo
                       ? "; --even-if-shared continues anyway"
                       : "; it is left as it is"));
  }
  session.log.line("Continuing anyway: " + text);
  use.agree(others);
}

void require_no_drive(const TreePath& tree, const std::optional<std::string>& folder) {
  if (is_of_logons(tree.share))
    refuse(tree.text() + " is on the share " + tree.share + ", which serves everyone's logons");
  if (!tree.parts.empty())
    return;
  if (is_administrative(tree.share))
    refuse(tree.text() + " is an administrative share of the server, not a folder of one account");
  if (!folder || folder->empty())
    refuse(tree.text() + " is a whole share of an unknown folder");
  if (is_drive_root(*folder))
    refuse(tree.text() + " is the whole drive " + *folder);
}

/// "\\FS1\D$\Users" of "D:\Users".
TreePath administrative_path(const std::string& server, std::string_view folder) {
  TreePath path{server, std::string(folder.substr(0, 1)) + "$", {}};
  if (folder.size() > 2 && folder[1] == ':') {
    for (std::string& part : base::split(folder.substr(2), '\\')) {
      if (!part.empty())
        path.parts.push_back(std::move(part));
    }
  }
  return path;
}

/// As far down as something exists.
void require_no_link(Session& session, const TreePath& path) {
  TreePath way{path.server, path.share, {}};
  for (const std::string& part : path.parts) {
    way.parts.push_back(part);
    base::Trap missing;
    bool link = false;
    if (!missing([&] { link = session.platform.files.status(way.text()).link; }))
      return;
    if (link)
      refuse(way.text() + " is a link, which is not followed");
  }
}

}  // namespace

void require_no_link_on_the_way(Session& session, const TreePath& path) {
  if (const auto folder = folder_use(session)->folder_of_share(path.server, path.share))
    require_no_link(session, administrative_path(path.server, *folder));
  require_no_link(session, path);
}

TreePath require_own_tree(Session& session, std::string_view path, const Owner& owner) {
  TreePath tree = parse_tree_path(path);
  const auto use = folder_use(session);
  std::vector<FolderClaim> claims;
  std::vector<SharedFolder> shares;
  require_no_drive(tree, answer(tree.text(), [&] { return use->folder_of_share(tree.server, tree.share); }));
  answer(tree.text(), [&] {
    claims = use->claims_within(tree, owner.account);
    for (FolderClaim& claim : use->claims_above(tree, owner.account))
      claims.push_back(std::move(claim));
    shares = use->shares_within(tree, owner.account);
  });
  std::erase_if(shares, [&](const SharedFolder& share) {
    return base::equals_fold(share.share, owner.own_share) ||
           (tree.parts.empty() && base::equals_fold(share.share, tree.share));
  });
  require_no_link_on_the_way(session, tree);
  if (!claims.empty() || !shares.empty())
    require_consent(session, *use, tree.text() + " is not one account's own: it is, contains or is inside",
                    named(claims, shares));
  return tree;
}

void require_own_share(Session& session, const std::string& server, const std::string& share,
                       const Owner& owner) {
  const std::string name = "The share " + share + " on " + server;
  const auto use = folder_use(session);
  const auto folder = answer(name, [&] { return use->folder_of_share(server, share); });
  if (!folder)
    return;
  if (is_administrative(share) || is_of_logons(share))
    refuse(name + " is one of the server's own");
  if (is_drive_root(*folder))
    refuse(name + " is the whole drive " + *folder);
  const auto claims = answer(name, [&] { return use->claims_through(server, share, owner.account); });
  if (!claims.empty())
    require_consent(session, *use, name + " is not one account's own: it leads to", named(claims, {}));
}

}  // namespace twk::lifecycle
