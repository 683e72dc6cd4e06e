#include <QGroupBox>
#include <QLabel>
#include <QTabWidget>
#include <QVBoxLayout>
#include <memory>

#include "screens/multi_user/multi_user_tabs.hpp"
#include "screens/program/windows.hpp"
#include "screens/widgets/form.hpp"
#include "screens/widgets/list_pane.hpp"
#include "screens/widgets/text.hpp"
#include "windows/multi_user/multi_user_window.hpp"
#include "windows/multi_user/run_watch.hpp"
#include "windows/state/multi_user.hpp"

namespace twk::screens {
namespace {

using windows::Desktop;
using windows::MultiUser;

/// Closes only if the routine of its button lets it.
class MultiUserDialog final : public QDialog {
 public:
  MultiUserDialog(Desktop& session, QWidget* parent) : QDialog(parent), session_(session) {}

  void reject() override {
    if (windows::Command7_Click(session_))
      QDialog::reject();
  }

 private:
  Desktop& session_;
};

QTabWidget* make_tabs(Desktop& session, QWidget* parent) {
  auto* const tabs = new QTabWidget(parent);
  tabs->setObjectName("SSTab1");
  tabs->addTab(make_multi_delete_tab(session, tabs), "Delete Users");
  tabs->addTab(make_multi_move_tab(session, tabs), "Move Users");
  tabs->addTab(make_multi_accounts_tab(session, tabs), "Accounts");
  tabs->addTab(make_multi_properties_tab(session, tabs), "AD Properties");
  tabs->addTab(make_multi_groups_tab(session, tabs), "Groups and OU");
  tabs->setTabVisible(windows::multi_tab::kProperties, session::is_active_directory(session));
  follow(*tabs, session.multi_user.SSTab1, [tabs](int tab) { tabs->setCurrentIndex(tab); });
  QObject::connect(tabs, &QTabWidget::currentChanged, tabs,
                   [&session](int tab) { session.multi_user.SSTab1 = tab; });
  return tabs;
}

/// Painted when it changes, but not more often than the eye can follow: a deletion lets no event in between
/// its steps.
QLabel* make_status(const char* name, controls::Label& control, QWidget* parent) {
  auto* const label = new QLabel(parent);
  label->setObjectName(name);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  // A long path must not widen the window.
  label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  bind_paced(*label, control);
  return label;
}

/// Who failed in the last run, as soon as it happens; nothing takes room while nobody did.
QWidget* make_failures(Desktop& session, QWidget* parent) {
  windows::RunCourse& course = session.multi_user.course;
  auto* const box = new QGroupBox("Failed", parent);
  box->setObjectName("failures_box");
  auto* const row = new QHBoxLayout(box);
  auto* const list = new ListPane(
      course.failures, {.headings = {"Account", "Reason"}, .many_selected = true, .empty_text = {}}, box);
  list->setObjectName("failures");
  list->setAccessibleName("Failed");
  list->setMaximumHeight(list->fontMetrics().height() * 6);
  row->addWidget(list, 1);
  QPushButton* const retry = add_button(*row, "Ret&ry the Failed Ones", "retry_failed",
                                        [&session] { windows::retry_failed_Click(session); });
  retry->setToolTip("They become the selection, and the run begins again with its preview");
  const auto show = [box, &course] { box->setVisible(!course.failures.empty()); };
  show();
  keep(*box, course.failures.watch([show](const controls::ListChange& change) {
    if (change.kind == controls::ListChange::Kind::kInserted ||
        change.kind == controls::ListChange::Kind::kReset)
      show();
  }));
  return box;
}

QHBoxLayout* make_foot(Desktop& session, QWidget* parent) {
  MultiUser& window = session.multi_user;
  auto* const foot = new QHBoxLayout;
  foot->addWidget(make_status("Label3", window.Label3, parent), 2);
  foot->addWidget(make_status("progress", window.progress, parent), 1);
  foot->addWidget(make_status("run_pace", window.course.pace, parent), 1);
  return foot;
}

void follow_pointer(QDialog& dialog, const MultiUser& window) {
  follow(dialog, window.mouse_pointer, [&dialog](int pointer) {
    if (pointer == 0)
      dialog.unsetCursor();
    else
      dialog.setCursor(Qt::WaitCursor);
  });
}

}  // namespace

std::unique_ptr<QDialog> make_multi_user(Desktop& session, QWidget* parent) {
  auto window = std::make_unique<MultiUserDialog>(session, parent);
  QDialog* const dialog = window.get();
  dialog->setObjectName("MultiUser");
  dialog->setWindowTitle("Multi User Functions");
  auto* const rows = new QVBoxLayout(dialog);
  rows->addWidget(make_multi_lists(session, dialog), 1);
  rows->addWidget(make_tabs(session, dialog));
  rows->addWidget(make_failures(session, dialog));
  auto* const foot = make_foot(session, dialog);
  rows->addLayout(foot);
  add_button(*foot, "&Close", "Command7", session.multi_user.Command7, [dialog] { dialog->reject(); });
  follow_pointer(*dialog, session.multi_user);
  dialog->resize(1000, 660);
  return window;
}

}  // namespace twk::screens
