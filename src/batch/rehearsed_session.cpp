#include "batch/rehearsed_session.hpp"

#include "session/loaded_database.hpp"
#include "session/loaded_domain.hpp"

namespace twk::batch {
namespace {

using session::Session;

/// Nobody is asked: a question is a step, and answered with Yes, or with an empty value.
class AnsweredDialogs final : public platform::Dialogs {
 public:
  AnsweredDialogs(platform::Dialogs& real, std::function<void(const std::string&)> tell)
      : real_(real), tell_(std::move(tell)) {}

  platform::Answer MsgBox(std::string_view text, platform::Buttons buttons, platform::Icon /*icon*/,
                          std::string_view /*title*/) override {
    const bool tells_only = buttons == platform::Buttons::kOk;
    tell_((tells_only ? "Tell: " : "Ask, and go on with Yes: ") + std::string(text));
    return tells_only ? platform::Answer::kOk : platform::Answer::kYes;
  }
  std::string InputBox(std::string_view prompt, std::string_view /*title*/, bool /*secret*/) override {
    tell_("Ask, and go on with an empty answer: " + std::string(prompt));
    return {};
  }
  std::optional<std::string> open_file(std::string_view title, std::string_view filter) override {
    return real_.open_file(title, filter);
  }
  void show_modal(std::string_view window) override { real_.show_modal(window); }
  void beep() override {}
  void DoEvents() override { real_.DoEvents(); }

 private:
  platform::Dialogs& real_;
  std::function<void(const std::string&)> tell_;
};

void copy_rows(const controls::ListView& from, controls::ListView& to) {
  to.clear();
  for (std::size_t i = 0; i < from.size(); ++i) {
    const controls::ListRow& row = from.at(i);
    to.add(row.key, row.text, row.icon, row.sub_items);
  }
}

void copy_nodes(const std::vector<controls::TreeNode*>& nodes, const controls::TreeNode* selected,
                controls::TreeView& tree, controls::TreeNode* parent) {
  for (const controls::TreeNode* const node : nodes) {
    controls::TreeNode& copy = tree.add(parent, node->key, node->text, node->image);
    if (node == selected)
      tree.select(&copy);
    copy_nodes(node->children, selected, tree, &copy);
  }
}

/// The lists of users only grow in a run, and no stage reads them.
void copy_domain(const session::LoadedDomain& from, session::LoadedDomain& to) {
  copy_nodes(from.tree.roots(), from.tree.selected(), to.tree, nullptr);
  to.looked_up = from.looked_up;
  copy_rows(from.all_groups, to.all_groups);
  copy_rows(from.template_choice, to.template_choice);
  copy_rows(from.template_groups, to.template_groups);
}

void copy_database(const session::LoadedDatabase& from, session::LoadedDatabase& to) {
  to.sites = from.sites;
  to.templates = from.templates;
  copy_rows(from.directory_rows, to.directory_rows);
  copy_rows(from.mail_rows, to.mail_rows);
  copy_rows(from.terminal_rows, to.terminal_rows);
  copy_rows(from.variables, to.variables);
}

void copy_session(Session& from, Session& to) {
  to.dbpath = from.dbpath;
  to.DirectoryMode = from.DirectoryMode;
  to.DomainName = from.DomainName;
  to.NTDomainName = from.NTDomainName;
  to.DnsServerName = from.DnsServerName;
  to.ManagedOU = from.ManagedOU;
  to.ManageSubOUs = from.ManageSubOUs;
  to.LoadAllUsersFlag = from.LoadAllUsersFlag;
  to.SerialCounter = from.SerialCounter;
  copy_domain(from.domain, to.domain);
  copy_database(from.database, to.database);
  if (from.DomainContainer)
    to.DomainContainer = to.platform.directory.GetObject(from.DomainContainer->ADsPath());
}

}  // namespace

struct RehearsedSession::Parts {
  Parts(Session& real, const lifecycle::Rehearsal::Tell& tell)
      : dialogs(real.platform.dialogs, tell),
        rehearsal({real.platform.registry, real.platform.directory, real.platform.query, real.platform.files,
                   real.platform.network, real.platform.security, real.platform.mailboxes,
                   real.platform.process, real.platform.environment, real.platform.clock, dialogs},
                  tell),
        session(rehearsal.services(), real.command_line, real.program_directory) {
    copy_session(real, session);
  }

  AnsweredDialogs dialogs;
  lifecycle::Rehearsal rehearsal;
  Session session;
};

RehearsedSession::RehearsedSession(Session& real, const lifecycle::Rehearsal::Tell& tell)
    : parts_(std::make_unique<Parts>(real, tell)) {}

RehearsedSession::~RehearsedSession() = default;

Session& RehearsedSession::session() {
  return parts_->session;
}

}  // namespace twk::batch
