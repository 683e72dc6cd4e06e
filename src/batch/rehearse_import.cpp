#include "batch/rehearse_import.hpp"

#include "lifecycle/rehearsal/rehearsal.hpp"
#include "session/loaded_database.hpp"
#include "session/loaded_domain.hpp"

namespace twk::batch {
namespace {

using session::Session;

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

void copy_import(const session::ImportState& from, session::ImportState& to) {
  to.rehearsed = true;
  to.ImportDefaultLayout = from.ImportDefaultLayout;
  to.ImportFirstField = from.ImportFirstField;
  to.ImportMiddleField = from.ImportMiddleField;
  to.ImportLastField = from.ImportLastField;
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
  copy_import(from.import, to.import);
  if (from.DomainContainer)
    to.DomainContainer = to.platform.directory.GetObject(from.DomainContainer->ADsPath());
}

}  // namespace

RehearsedImport rehearse_import(Session& session, std::string_view path, const ImportOrder& order,
                                ImportView& view, const RehearsalHooks& hooks) {
  Session* teller = &session;
  lifecycle::Rehearsal rehearsal(session.platform, [&](const std::string& step) {
    if (hooks.step)
      hooks.step(teller->log.concealed(step));
  });
  Session rehearsed(rehearsal.services(), session.command_line, session.program_directory);
  copy_session(session, rehearsed);
  teller = &rehearsed;
  rehearsed.import.row_done = [&](const session::ImportRow& row) {
    if (hooks.row_done)
      hooks.row_done(row);
    rehearsed.import.ImportStopped = session.import.ImportStopped;
  };
  session.import.ImportStopped = false;
  RehearsedImport outcome;
  outcome.whole = Import_Users(rehearsed, path, order, view);
  outcome.added = rehearsed.import.ImportAddedCount;
  outcome.failure = rehearsed.import.failure;
  return outcome;
}

}  // namespace twk::batch
