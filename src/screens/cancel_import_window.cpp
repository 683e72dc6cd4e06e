#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

#include "batch/import.hpp"
#include "screens/application.hpp"
#include "screens/form.hpp"
#include "screens/windows.hpp"

namespace twk::screens {

std::unique_ptr<QDialog> make_cancel_import(session::Session& session, QWidget* parent) {
  auto dialog = std::make_unique<QDialog>(parent);
  dialog->setObjectName("CancelImport");
  dialog->setWindowTitle("Cancel Import");
  auto* const box = new QVBoxLayout(dialog.get());
  auto* const count = new QLabel(dialog.get());
  count->setObjectName("count");
  count->setMinimumWidth(count->fontMetrics().averageCharWidth() * 50);
  box->addWidget(count);
  bind_to(*count, session.form1.Import_Text);
  auto* const bar = new QProgressBar(dialog.get());
  bar->setAccessibleName("Progress of the user in hand");
  box->addWidget(bar);
  bind_to(*bar, session.form1.ProgressBar1);
  auto* const row = new QHBoxLayout();
  box->addLayout(row);
  row->addStretch();
  const Action stop = [&session] { batch::CancelButton_Click(session); };
  add_button(*row, "&Stop", "CancelButton", session.cancel_import.CancelButton, stop)->setDefault(true);
  // Esc and the window's cross stop as well: the run does not go on unseen.
  QObject::connect(dialog.get(), &QDialog::rejected, dialog.get(), [stop] { run_guarded(stop); });
  return dialog;
}

}  // namespace twk::screens
