#include <QMessageBox>

#include "screens/program/windows.hpp"
#include "screens/widgets/text.hpp"
#include "windows/state/details_changes.hpp"

namespace twk::screens {

std::unique_ptr<QDialog> make_leaving(windows::Desktop& session, QWidget* parent) {
  windows::Leaving& leaving = session.details.leaving;
  auto window =
      std::make_unique<QMessageBox>(QMessageBox::Warning, "Unsaved Changes", to_qt(leaving.text),
                                    QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, parent);
  QMessageBox* const box = window.get();
  box->setObjectName("Leaving");
  box->setTextFormat(Qt::PlainText);
  box->setDefaultButton(QMessageBox::Save);
  box->setEscapeButton(QMessageBox::Cancel);
  QObject::connect(box, &QDialog::finished, box, [&leaving](int button) {
    using Answer = windows::Leaving::Answer;
    leaving.answer = button == QMessageBox::Save      ? Answer::kSave
                     : button == QMessageBox::Discard ? Answer::kDiscard
                                                      : Answer::kCancel;
  });
  return window;
}

}  // namespace twk::screens
