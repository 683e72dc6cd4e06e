#include "mail/search_mail.hpp"

#include <algorithm>

#include "base/error_words.hpp"
#include "base/text.hpp"
#include "platform/ldap_text.hpp"
#include "session/session.hpp"

namespace twk::mail {
namespace {

using platform::ObjectPtr;
using session::Session;

bool is_recipient(const ObjectPtr& object) {
  return base::equals_fold(object->Class(), kMailboxClass) ||
         base::equals_fold(object->Class(), kRecipientClass);
}

bool is_container(const ObjectPtr& object) {
  return base::equals_fold(object->Class(), "Container");
}

/// A search that is going on.
struct Walk {
  SiteSearch search;
  /// The containers that are still to be searched, with their places.
  std::vector<std::pair<ObjectPtr, std::size_t>> pending;
};

void add_node(Walk& walk, std::size_t parent, const ObjectPtr& object, bool recipient) {
  std::vector<SearchNode>& nodes = walk.search.nodes;
  std::string name = platform::plain_name(object->Name());
  std::string container = parent == kSite ? std::string() : nodes.at(parent).container;
  if (!recipient)
    container = escaped_name(name) + (container.empty() ? "" : ",CN=") + container;
  nodes.push_back({object->ADsPath(), std::move(name), std::move(container), parent, recipient});
  if (!recipient)
    walk.pending.emplace_back(object, nodes.size() - 1);
}

}  // namespace

MailSearch search_of(const MailboxDeletion& request) {
  MailSearch search{request.administrator, request.place, request.SamName};
  search.place.Server = base::trim(search.place.Server);
  return search;
}

SiteSearch search_site(Session& session, const MailSearch& search) {
  Walk walk;
  const std::vector<std::string> classes{"Container"};
  bind_exchange(session, site_path(search.place, search.administrator.port), search.administrator)
      ->enumerate(classes, [&](const ObjectPtr& child) {
        if (!base::equals_fold(child->Name(), "cn=Configuration"))
          add_node(walk, kSite, child, false);
        return true;
      });
  const std::string wanted = base::upper("cn=" + platform::escape_dn_value(search.name));
  for (std::size_t i = 0; i < walk.pending.size(); ++i) {
    const auto [container, place] = walk.pending[i];
    container->enumerate({}, [&, parent = place](const ObjectPtr& child) {
      if (is_container(child))
        add_node(walk, parent, child, false);
      else if (is_recipient(child) && base::upper(child->Name()) == wanted)
        add_node(walk, parent, child, true);
      return true;
    });
  }
  return std::move(walk.search);
}

std::vector<std::string> paths_of(const SiteSearch& search) {
  std::vector<std::string> paths;
  for (const SearchNode& node : search.nodes) {
    if (node.recipient)
      paths.push_back(node.path);
  }
  return paths;
}

const SearchNode* only_recipient(const SiteSearch& search) {
  if (std::ranges::count_if(search.nodes, &SearchNode::recipient) != 1)
    return nullptr;
  return &*std::ranges::find_if(search.nodes, &SearchNode::recipient);
}

Recipient read_recipient(Session& session, const MailSearch& search, const SearchNode& node) {
  const std::string container = container_path(search.place, search.administrator.port, node.container);
  const ObjectPtr mailbox =
      bind_exchange(session, container, search.administrator)->GetObject({}, relative_name(node.name));
  return {container, node.name, base::equals_fold(mailbox->Class(), kRecipientClass)};
}

void report_failed_search(Session& session, const base::RuntimeError& failure) {
  const std::string text(kNoConnection);
  session.log.reason(text + ": " + base::in_words(failure));
  session.platform.dialogs.MsgBox(text + "\r\n" + failure.description(), platform::Buttons::kOk,
                                  platform::Icon::kExclamation, "Select Mailbox");
}

}  // namespace twk::mail
