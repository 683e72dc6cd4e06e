#include "screens/program/qt_dialogs.hpp"

#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>

#include "screens/program/windows.hpp"
#include "screens/widgets/application.hpp"
#include "screens/widgets/text.hpp"
#include "screens/widgets/window_state.hpp"
#include "windows/state/account_windows.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/group_windows.hpp"
#include "windows/state/import_windows.hpp"
#include "windows/state/multi_user.hpp"
#include "windows/state/run_preview.hpp"

namespace twk::screens {
namespace {

using platform::Answer;
using platform::Buttons;
using platform::Icon;

/// Lines end in CR LF in the system's own texts.
QString lines(std::string_view text) {
  return to_qt(text).replace("\r\n", "\n");
}

QMessageBox::StandardButtons standard_buttons(Buttons buttons) {
  switch (buttons) {
    case Buttons::kOk:
      return QMessageBox::Ok;
    case Buttons::kOkCancel:
      return QMessageBox::Ok | QMessageBox::Cancel;
    case Buttons::kYesNo:
      return QMessageBox::Yes | QMessageBox::No;
    case Buttons::kYesNoCancel:
      return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
  }
  return QMessageBox::Ok;
}

QMessageBox::Icon standard_icon(Icon icon) {
  switch (icon) {
    case Icon::kCritical:
      return QMessageBox::Critical;
    case Icon::kQuestion:
      return QMessageBox::Question;
    case Icon::kExclamation:
      return QMessageBox::Warning;
    case Icon::kInformation:
      return QMessageBox::Information;
    case Icon::kNone:
      break;
  }
  return QMessageBox::NoIcon;
}

Answer answer_of(int button) {
  switch (button) {
    case QMessageBox::Ok:
      return Answer::kOk;
    case QMessageBox::Yes:
      return Answer::kYes;
    case QMessageBox::No:
      return Answer::kNo;
    default:
      return Answer::kCancel;
  }
}

/// The arrow over a box, even while the hourglass is shown for the windows behind it.
class ArrowOverBox {
 public:
  ArrowOverBox() { QApplication::setOverrideCursor(Qt::ArrowCursor); }
  ArrowOverBox(const ArrowOverBox&) = delete;
  ArrowOverBox& operator=(const ArrowOverBox&) = delete;
  ~ArrowOverBox() { QApplication::restoreOverrideCursor(); }
};

/// "CSV Files (*.csv)|*.csv|" as "CSV Files (*.csv);;All Files (*)".
QString file_filter(std::string_view filter) {
  QStringList kinds;
  const QStringList parts = to_qt(filter).split('|', Qt::SkipEmptyParts);
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2)
    kinds << (parts[i].contains('(') ? parts[i] : parts[i] + " (" + parts[i + 1] + ")");
  kinds << "All Files (*)";
  return kinds.join(";;");
}

}  // namespace

Answer QtDialogs::MsgBox(std::string_view text, Buttons buttons, Icon icon, std::string_view title) {
  const ArrowOverBox arrow;
  QMessageBox box(standard_icon(icon), title.empty() ? QString("TWK") : to_qt(title), lines(text),
                  standard_buttons(buttons), QApplication::activeWindow());
  box.setTextFormat(Qt::PlainText);
  // Enter alone must not say yes to what cannot be undone, and Esc says no.
  const QMessageBox::StandardButton no = buttons == Buttons::kYesNo ? QMessageBox::No : QMessageBox::Cancel;
  if (buttons != Buttons::kOk) {
    box.setDefaultButton(no);
    box.setEscapeButton(no);
  }
  if (icon == Icon::kCritical || icon == Icon::kExclamation)
    add_remedies(box);
  return answer_of(box.exec());
}

std::string QtDialogs::InputBox(std::string_view prompt, std::string_view title, bool secret) {
  const ArrowOverBox arrow;
  QInputDialog box(QApplication::activeWindow());
  box.setWindowTitle(to_qt(title));
  box.setLabelText(lines(prompt));
  box.setTextEchoMode(secret ? QLineEdit::Password : QLineEdit::Normal);
  box.resize(360, box.sizeHint().height());
  return box.exec() == QDialog::Accepted ? from_qt(box.textValue()) : std::string();
}

std::optional<std::string> QtDialogs::open_file(std::string_view title, std::string_view filter) {
  const ArrowOverBox arrow;
  const QString path =
      QFileDialog::getOpenFileName(QApplication::activeWindow(), to_qt(title), {}, file_filter(filter));
  if (path.isEmpty())
    return std::nullopt;
  return from_qt(path);
}

void QtDialogs::show_modal(std::string_view window) {
  const ArrowOverBox arrow;
  const auto dialog = make_window(window, *session_, QApplication::activeWindow());
  if (dialog == nullptr)
    return;
  // A question comes up over what it is about.
  const bool keeps_place = qobject_cast<QMessageBox*>(dialog.get()) == nullptr;
  if (keeps_place)
    restore_place(*dialog);
  dialog->exec();
  if (keeps_place)
    save_place(*dialog);
}

void QtDialogs::beep() {
  QApplication::beep();
}

void QtDialogs::DoEvents() {
  const bool can_stop =
      session_ != nullptr &&
      (session_->cancel_import.visible || session_->file_progress.visible || session_->copy_group.Running ||
       session_->run_preview.rehearsing || windows::is_running(session_->multi_user));
  const auto let_in = [&] {
    QCoreApplication::processEvents(can_stop ? QEventLoop::AllEvents : QEventLoop::ExcludeUserInputEvents);
  };
  // An import is done with a user long before anyone could press a button.
  if (session_ != nullptr && session_->cancel_import.visible)
    events_.do_if_due(let_in);
  else
    let_in();
}

}  // namespace twk::screens
