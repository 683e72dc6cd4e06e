#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "base/errors.hpp"
#include "mail/recipients.hpp"
#include "session/preferences.hpp"

/// The search through all containers of an Exchange 5.5 site.
namespace twk::mail {

/// What to search for, and where.
struct MailSearch {
  session::MailAdministrator administrator;
  ExchangePlace place;
  std::string name;  ///< in any case
};
/// The search for the mailbox of a request.
MailSearch search_of(const MailboxDeletion& request);

inline constexpr std::size_t kSite = static_cast<std::size_t>(-1);

/// A container of the site, or a mailbox or custom recipient of the name.
struct SearchNode {
  std::string path;
  std::string name;
  std::string container;  ///< as for `container_path`: what the node itself is, or what a recipient is in
  std::size_t parent = kSite;  ///< the place of its container
  bool recipient = false;
};

/// In the order they were found, each after its container.
struct SiteSearch {
  std::vector<SearchNode> nodes;
};

/// Raises what the directory raises.
SiteSearch search_site(session::Session& session, const MailSearch& search);
/// The paths of the mailboxes that were found.
std::vector<std::string> paths_of(const SiteSearch& search);
/// The only mailbox that was found; null for none or several.
const SearchNode* only_recipient(const SiteSearch& search);
/// One that was found, read from the directory. Raises what the directory raises.
Recipient read_recipient(session::Session& session, const MailSearch& search, const SearchNode& node);

inline constexpr std::string_view kNoConnection = "Unable to connect to Exchange Server";
/// Logs why a search failed, and reports it in a box.
void report_failed_search(session::Session& session, const base::RuntimeError& failure);

}  // namespace twk::mail
