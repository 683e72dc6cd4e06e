#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

#include "screens/program/windows.hpp"
#include "screens/widgets/form.hpp"
#include "windows/account/account_view.hpp"
#include "windows/state/account_windows.hpp"

namespace twk::screens {

std::unique_ptr<QDialog> make_file_progress(windows::Desktop& session, QWidget* parent) {
  auto window = std::make_unique<QDialog>(parent);
  QDialog* const dialog = window.get();
  dialog->setObjectName("FileProgress");
  dialog->setWindowTitle("Working on Files");
  windows::FileProgress& state = session.file_progress;
  auto* const column = new QVBoxLayout(dialog);
  auto* const text = new QLabel(dialog);
  text->setObjectName("text");
  text->setTextFormat(Qt::PlainText);
  text->setWordWrap(true);
  column->addWidget(text);
  bind_to(*text, state.text);
  auto* const bar = new QProgressBar(dialog);
  bar->setObjectName("done");
  bar->setAccessibleName("Progress of the files");
  column->addWidget(bar);
  bind_to(*bar, state.done);
  column->addStretch();
  auto* const row = new QHBoxLayout;
  column->addLayout(row);
  row->addStretch();
  // The work ends at its next turn, and then hides the window. Esc and the window's cross also stop it.
  const auto cancel = [&session] { windows::FileProgress_CancelButton_Click(session); };
  add_button(*row, "&Cancel", "CancelButton", state.CancelButton, cancel)->setDefault(true);
  row->addStretch();
  QObject::connect(dialog, &QDialog::rejected, dialog, cancel);
  dialog->setMinimumWidth(dialog->fontMetrics().averageCharWidth() * 70);
  return window;
}

}  // namespace twk::screens
