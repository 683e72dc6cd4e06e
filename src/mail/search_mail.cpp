#include "mail/search_mail.hpp"

#include <vector>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "controls/drawing_off.hpp"
#include "controls/tree_view.hpp"
#include "platform/ldap_text.hpp"
#include "session/directory_windows.hpp"
#include "session/form1.hpp"
#include "session/hourglass.hpp"
#include "session/session.hpp"

namespace twk::mail {
namespace {

using controls::TreeNode;
using platform::Buttons;
using platform::Icon;
using platform::ObjectPtr;
using session::Serach_Mail;
using session::Session;

constexpr const char* kRoot = "root";
constexpr const char* kContainer = "FOLDER";
constexpr const char* kMailbox = "MAIL";

ExchangePlace place_of(const Serach_Mail& window) {
  return {std::string(base::trim(window.Text2.text.get())), window.ExSite, window.ExOrg};
}

bool is_recipient(const ObjectPtr& object) {
  return base::equals_fold(object->Class(), kMailboxClass) ||
         base::equals_fold(object->Class(), kRecipientClass);
}

bool is_container(const ObjectPtr& object) {
  return base::equals_fold(object->Class(), "Container");
}

/// The containers that are still to be searched, with their nodes.
using Pending = std::vector<std::pair<ObjectPtr, TreeNode*>>;

void add_container(Serach_Mail& window, TreeNode& parent, const ObjectPtr& object, Pending& pending) {
  TreeNode& node =
      window.TreeView1.add(&parent, object->ADsPath(), platform::plain_name(object->Name()), kContainer);
  pending.emplace_back(object, &node);
}

void add_site_containers(Session& session, TreeNode& root, Pending& pending) {
  Serach_Mail& window = session.serach_mail;
  const ObjectPtr site =
      bind_exchange(session, site_path(session, place_of(window)), window.AdminName, window.AdminPassword);
  const std::vector<std::string> classes{"Container"};
  site->enumerate(classes, [&](const ObjectPtr& child) {
    if (!base::equals_fold(child->Name(), "cn=Configuration"))
      add_container(window, root, child, pending);
    return true;
  });
}

std::vector<TreeNode*> walk(Session& session, std::string_view name) {
  Serach_Mail& window = session.serach_mail;
  TreeNode& root = window.TreeView1.add(nullptr, kRoot, window.ExSite, "SITE");
  Pending pending;
  add_site_containers(session, root, pending);
  const std::string wanted = base::upper("cn=" + platform::escape_dn_value(name));
  std::vector<TreeNode*> found;
  for (std::size_t i = 0; i < pending.size(); ++i) {
    const auto [container, node] = pending[i];
    container->enumerate({}, [&, below = node](const ObjectPtr& child) {
      if (is_container(child))
        add_container(window, *below, child, pending);
      else if (is_recipient(child) && base::upper(child->Name()) == wanted)
        found.push_back(
            &window.TreeView1.add(below, child->ADsPath(), platform::plain_name(child->Name()), kMailbox));
      return true;
    });
  }
  return found;
}

const char* title_for(std::size_t hits) {
  if (hits == 0)
    return "User Not Found";
  if (hits == 1)
    return "Select The Mailbox to Delete";
  return "Warning: Multiple mailboxs with the same Name Found. Be sure you Delete the correct one. If in "
         "doubt contact you Mail Administrator";
}

void show_found(Serach_Mail& window, const std::vector<TreeNode*>& found) {
  for (TreeNode* const node : found)
    window.TreeView1.ensure_visible(*node);
  if (found.size() == 1)
    window.TreeView1.select(found.front());
  window.Delete_Mail.enabled = !found.empty();
  window.caption = title_for(found.size());
}

/// The name of the mailbox's container: those above it, from the nearest to the site.
std::string container_of(const TreeNode& mailbox) {
  std::string name;
  for (const TreeNode* node = mailbox.parent; node != nullptr && node->image == kContainer;
       node = node->parent)
    name += (name.empty() ? "" : ",CN=") + escaped_name(node->text);
  return name;
}

void open_on(Session& session, const MailboxDeletion& request) {
  Serach_Mail& window = session.serach_mail;
  window.caption = "Select Mailbox";
  window.Text1.text = request.SamName;
  window.Text2.text = request.place.Server;
  window.ExSite = request.place.Site;
  window.ExOrg = request.place.Org;
  window.AdminName = request.AdminName;
  window.AdminPassword = request.AdminPassword;
  window.Chosen = false;
}

void tell(Session& session, const std::string& text) {
  session.platform.dialogs.MsgBox(text, Buttons::kOk, Icon::kExclamation, "Select Mailbox");
}

}  // namespace

void prepare_search(Session& session, const MailboxDeletion& request) {
  open_on(session, request);
  Find_Mail_User(session, request.SamName);
}

std::vector<std::string> find_mailboxes(Session& session, const MailboxDeletion& request) {
  open_on(session, request);
  session.serach_mail.TreeView1.clear();
  const std::vector<TreeNode*> found = walk(session, request.SamName);
  show_found(session.serach_mail, found);
  std::vector<std::string> paths;
  paths.reserve(found.size());
  for (const TreeNode* const node : found)
    paths.push_back(node->key);
  return paths;
}

bool search_mailbox(Session& session, const MailboxDeletion& request) {
  prepare_search(session, request);
  session.platform.dialogs.show_modal("Serach_Mail");
  return session.serach_mail.Chosen;
}

void search_again(Session& session) {
  Find_Mail_User(session, base::trim(session.serach_mail.Text1.text.get()));
}

void Find_Mail_User(Session& session, std::string_view name) {
  Serach_Mail& window = session.serach_mail;
  window.TreeView1.clear();
  window.Delete_Mail.enabled = false;
  std::vector<TreeNode*> found;
  base::Trap trap;
  bool asked = false;
  {
    const controls::DrawingOff off(window.TreeView1);
    const session::Hourglass hourglass(session.form1);
    asked = trap([&] { found = walk(session, name); });
    if (!asked)
      window.TreeView1.clear();
  }
  if (asked)
    return show_found(window, found);
  const std::string ErrorText = "Unable to connect to Exchange Server";
  window.caption = ErrorText;
  session.log.reason(ErrorText + ": " + base::in_words(trap.number(), trap.description()));
  tell(session, ErrorText + "\r\n" + trap.description());
}

bool Delete_Mail(Session& session) {
  Serach_Mail& window = session.serach_mail;
  const TreeNode* const node = window.TreeView1.selected();
  window.Chosen = node != nullptr && node->image == kMailbox;
  if (!window.Chosen)
    tell(session, "Select the mailbox to delete.");
  return window.Chosen;
}

Recipient selected_recipient(Session& session) {
  const Serach_Mail& window = session.serach_mail;
  const TreeNode& node = *window.TreeView1.selected();
  const std::string container = container_path(session, place_of(window), container_of(node));
  const ObjectPtr mailbox = bind_exchange(session, container, window.AdminName, window.AdminPassword)
                                ->GetObject({}, relative_name(node.text));
  return {container, node.text, base::equals_fold(mailbox->Class(), kRecipientClass)};
}

}  // namespace twk::mail
