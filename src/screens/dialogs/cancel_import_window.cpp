#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

#include "screens/program/windows.hpp"
#include "screens/widgets/form.hpp"
#include "screens/widgets/text.hpp"
#include "windows/import.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/import_windows.hpp"

namespace twk::screens {
namespace {

QLabel* add_caption(QBoxLayout& box, const char* name, controls::Label& control) {
  auto* const text = new QLabel(box.parentWidget());
  text->setObjectName(name);
  text->setWordWrap(true);
  box.addWidget(text);
  bind_paced(*text, control);
  return text;
}

}  // namespace

std::unique_ptr<QDialog> make_cancel_import(windows::Desktop& session, QWidget* parent) {
  auto window = std::make_unique<QDialog>(parent);
  QDialog* const dialog = window.get();
  dialog->setObjectName("CancelImport");
  follow(*dialog, session.cancel_import.heading.caption,
         [dialog](const std::string& title) { dialog->setWindowTitle(to_qt(title)); });
  windows::Form1& form = session.form1;
  auto* const column = new QVBoxLayout(dialog);
  add_caption(*column, "Import_Text", form.Import_Text);
  auto* const bar = new QProgressBar(dialog);
  bar->setObjectName("ProgressBar1");
  bar->setAccessibleName("Progress of the current user");
  column->addWidget(bar);
  bind_to(*bar, form.ProgressBar1);
  add_caption(*column, "progress", form.progress);
  // The window is as large as it opens, and this text comes later, in two lines.
  auto* const pace = add_caption(*column, "import_pace", form.import_pace);
  pace->setMinimumHeight(2 * pace->fontMetrics().lineSpacing());
  column->addStretch();
  auto* const row = new QHBoxLayout;
  column->addLayout(row);
  row->addStretch();
  auto* const stop = add_button(*row, "&Stop", "CancelButton", session.cancel_import.CancelButton,
                                [dialog] { dialog->reject(); });
  stop->setDefault(true);
  row->addStretch();
  // Esc and the window's cross stop too.
  QObject::connect(dialog, &QDialog::rejected, dialog, [&session] { windows::CancelButton_Click(session); });
  dialog->setMinimumWidth(dialog->fontMetrics().averageCharWidth() * 55);
  return window;
}

}  // namespace twk::screens
