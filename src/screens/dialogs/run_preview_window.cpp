#include <QHBoxLayout>
#include <QHeaderView>
#include <QProgressBar>
#include <QTimer>
#include <QVBoxLayout>

#include "screens/program/windows.hpp"
#include "screens/widgets/application.hpp"
#include "screens/widgets/dialog_buttons.hpp"
#include "screens/widgets/form.hpp"
#include "screens/widgets/list_pane.hpp"
#include "windows/multi_user/run_preview.hpp"
#include "windows/state/run_preview.hpp"

namespace twk::screens {
namespace {

using windows::Desktop;
using windows::RunPreview;

void add_accounts(QVBoxLayout& rows, RunPreview& preview, QDialog& dialog) {
  auto* const list =
      new ListPane(preview.accounts,
                   {.headings = {"Account", "Through", "What would be done"}, .empty_text = {}}, &dialog);
  list->setObjectName("preview_accounts");
  list->setAccessibleName("Accounts");
  list->header()->resizeSection(0, 170);
  list->header()->resizeSection(1, 110);
  list->setColumnHidden(2, !preview.rehearse);
  rows.addWidget(list, 1);
}

void add_rehearsal(QVBoxLayout& rows, RunPreview& preview, QDialog& dialog) {
  auto* const bar = new QProgressBar(&dialog);
  bar->setObjectName("preview_done");
  bar->setAccessibleName("Progress of the rehearsal");
  bind_to(*bar, preview.done);
  follow(*bar, preview.rehearsing, [bar](bool on) { bar->setVisible(on); });
  rows.addWidget(bar);
}

/// Cancel comes first to the hand: what is begun here cannot be taken back by a key.
void add_answers(QVBoxLayout& rows, Desktop& session, QDialog& dialog) {
  RunPreview& preview = session.run_preview;
  auto* const line = new QHBoxLayout;
  rows.addLayout(line);
  add_button(*line, {}, "preview_rehearse", preview.Rehearse,
             [&session] { windows::RunPreview_Rehearse_Click(session); });
  line->addStretch(1);
  add_button(*line, {}, "preview_start", preview.Start, [&session, &dialog] {
    windows::RunPreview_Start_Click(session);
    dialog.accept();
  });
  auto* const cancel = new QPushButton("Cancel", &dialog);
  cancel->setObjectName("preview_cancel");
  cancel->setDefault(true);
  QObject::connect(cancel, &QPushButton::clicked, &dialog, &QDialog::reject);
  line->addWidget(cancel);
  cancel->setFocus();
}

}  // namespace

std::unique_ptr<QDialog> make_run_preview(Desktop& session, QWidget* parent) {
  RunPreview& preview = session.run_preview;
  auto window = std::make_unique<QDialog>(parent);
  QDialog* const dialog = window.get();
  dialog->setObjectName("RunPreview");
  follow_title(*dialog, preview.title);
  auto* const rows = new QVBoxLayout(dialog);
  QLabel* const question = add_hint(*dialog, *rows, "preview_question", preview.question);
  QFont font = question->font();
  font.setBold(true);
  question->setFont(font);
  add_hint(*dialog, *rows, "preview_counts", preview.counts);
  add_accounts(*rows, preview, *dialog);
  add_hint(*dialog, *rows, "preview_effects", preview.effects);
  add_rehearsal(*rows, preview, *dialog);
  add_answers(*rows, session, *dialog);
  QObject::connect(dialog, &QDialog::finished, dialog, [&session] { windows::RunPreview_Closed(session); });
  QTimer::singleShot(0, dialog, [&session] { run_guarded([&] { windows::RunPreview_Shown(session); }); });
  dialog->resize(760, 420);
  return window;
}

}  // namespace twk::screens
