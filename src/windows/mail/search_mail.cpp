#include "windows/mail/search_mail.hpp"

#include <algorithm>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "controls/drawing_off.hpp"
#include "controls/tree_view.hpp"
#include "mail/search_mail.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/directory_windows.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/hourglass.hpp"

namespace twk::windows {
namespace {

using controls::TreeNode;

constexpr const char* kMailbox = "MAIL";

const char* title_for(std::size_t hits) {
  if (hits == 0)
    return "User Not Found";
  if (hits == 1)
    return "Select The Mailbox to Delete";
  return "Warning: Multiple mailboxs with the same Name Found. Be sure you Delete the correct one. If in "
         "doubt contact you Mail Administrator";
}

void show_found(Serach_Mail& window, const mail::SiteSearch& search) {
  std::vector<TreeNode*> nodes;
  std::vector<TreeNode*> found;
  TreeNode& root = window.TreeView1.add(nullptr, "root", window.asked->place.Site, "SITE");
  for (const mail::SearchNode& one : search.nodes) {
    TreeNode& parent = one.parent == mail::kSite ? root : *nodes.at(one.parent);
    nodes.push_back(&window.TreeView1.add(&parent, one.path, one.name, one.recipient ? kMailbox : "FOLDER"));
    if (one.recipient)
      found.push_back(nodes.back());
  }
  for (TreeNode* const node : found)
    window.TreeView1.ensure_visible(*node);
  if (found.size() == 1)
    window.TreeView1.select(found.front());
  window.Delete_Mail.enabled = !found.empty();
  window.caption = title_for(found.size());
}

void find_and_show(Desktop& session, const std::string& name) {
  Serach_Mail& window = session.serach_mail;
  mail::MailSearch asked = *window.asked;
  asked.place.Server = base::trim(window.Text2.text.get());
  asked.name = name;
  window.asked = std::make_shared<const mail::MailSearch>(std::move(asked));
  window.found.reset();
  window.TreeView1.clear();
  window.Delete_Mail.enabled = false;
  base::Trap trap;
  {
    const controls::DrawingOff off(window.TreeView1);
    const Hourglass hourglass(session.form1);
    trap([&] {
      window.found = std::make_shared<const mail::SiteSearch>(search_site(session, *window.asked));
    });
    if (window.found != nullptr)
      return show_found(window, *window.found);
  }
  window.caption = std::string(mail::kNoConnection);
  mail::report_failed_search(session, {trap.number(), trap.description()});
}

void open_on(Desktop& session, const mail::MailboxDeletion& request) {
  Serach_Mail& window = session.serach_mail;
  window.caption = "Select Mailbox";
  window.Text1.text = request.SamName;
  window.Text2.text = request.place.Server;
  window.asked = std::make_shared<const mail::MailSearch>(mail::search_of(request));
  window.Chosen = false;
}

}  // namespace

void prepare_search(Desktop& session, const mail::MailboxDeletion& request) {
  open_on(session, request);
  find_and_show(session, request.SamName);
}

std::optional<mail::Recipient> choose_mailbox(Desktop& session, const mail::MailboxDeletion& request) {
  prepare_search(session, request);
  session.platform.dialogs.show_modal("Serach_Mail");
  const Serach_Mail& window = session.serach_mail;
  if (!window.Chosen)
    return std::nullopt;
  const auto node =
      std::ranges::find(window.found->nodes, window.TreeView1.selected()->key, &mail::SearchNode::path);
  return mail::read_recipient(session, *window.asked, *node);
}

void search_again(Desktop& session) {
  find_and_show(session, std::string(base::trim(session.serach_mail.Text1.text.get())));
}

bool Delete_Mail(Desktop& session) {
  Serach_Mail& window = session.serach_mail;
  const TreeNode* const node = window.TreeView1.selected();
  window.Chosen = node != nullptr && node->image == kMailbox;
  if (!window.Chosen) {
    session.platform.dialogs.MsgBox("Select the mailbox to delete.", platform::Buttons::kOk,
                                    platform::Icon::kExclamation, "Select Mailbox");
  }
  return window.Chosen;
}

}  // namespace twk::windows
