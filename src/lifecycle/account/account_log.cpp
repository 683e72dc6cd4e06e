#include "lifecycle/account/account_log.hpp"

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "controls/list_view.hpp"
#include "creation/command_text.hpp"
#include "creation/shell.hpp"
#include "session/loaded_domain.hpp"
#include "session/log_tab.hpp"
#include "session/preferences.hpp"
#include "session/session.hpp"

namespace twk::lifecycle {
namespace {

using session::Session;

void remove_row(controls::ListView& list, bool by_key, std::string_view key) {
  const controls::ListRow* row = nullptr;
  if (by_key) {
    row = list.find_key(key);
  } else {
    const auto rows = list.find_text(key);
    row = rows.empty() ? nullptr : rows.front();
  }
  if (row != nullptr)
    list.remove(*row);
}

}  // namespace

void prepare_failure(Session& session, std::string_view status, std::string_view log) {
  session.Error_Status_Text = status;
  session.Error_Log_Text = log;
}

void report_stopped(Session& session, const base::RuntimeError& failure) {
  session.run.view().step(session.Error_Status_Text);
  session.log.line(session.Error_Log_Text);
  session.log.line("Error Number: " + base::to_text(failure.number()));
  session.log.reason(base::in_words(failure));
  session.log.close();
  session::LOG_TAB(session, session::kRed, " " + session.Error_Status_Text);
}

void remove_from_views(Session& session, std::string_view key) {
  const bool by_key = session::is_active_directory(session);
  controls::TreeView& tree = session.domain.tree;
  if (by_key) {
    if (controls::TreeNode* const node = tree.find(key))
      tree.remove(*node);
  } else {
    for (controls::TreeNode* node = tree.first(); node != nullptr; node = tree.next(*node)) {
      if (node->image == "USER" && base::equals_fold(node->text, key)) {
        tree.remove(*node);
        break;
      }
    }
  }
  remove_row(session.domain.users, by_key, key);
  remove_row(session.domain.NotMembers, by_key, key);
}

bool run_account_command(Session& session, std::string_view label, const std::vector<std::string>& words,
                         const session::CommandSetting& command, std::string_view failure) {
  session.log.line(std::string(label) + creation::shown_command(words));
  const std::int16_t window_style = command.hidden ? 0 : 1;
  const creation::clsShell shell(session.platform.process);
  const platform::ProgramResult result = shell.Spawn(words, command.wait, window_style);
  if (result.failure.empty())
    return true;
  session.log.reason(failure, result.failure);
  session.platform.dialogs.beep();
  return false;
}

}  // namespace twk::lifecycle
