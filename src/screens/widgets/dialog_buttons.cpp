#include "screens/widgets/dialog_buttons.hpp"

#include <QPushButton>

#include "screens/widgets/application.hpp"
#include "screens/widgets/text.hpp"

namespace twk::screens {

QDialogButtonBox* add_ok_cancel(QDialog& dialog, QBoxLayout& box, const char* ok_name,
                                const std::function<bool()>& ok, const Action& cancel) {
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
  buttons->button(QDialogButtonBox::Ok)->setObjectName(ok_name);
  buttons->button(QDialogButtonBox::Ok)->setDefault(true);
  box.addWidget(buttons);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, [&dialog, ok] {
    run_guarded([&] {
      if (ok())
        dialog.accept();
    });
  });
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  QObject::connect(&dialog, &QDialog::rejected, &dialog, [cancel] { run_guarded(cancel); });
  return buttons;
}

QLabel* add_hint(QWidget& parent, QBoxLayout& box, const char* name, controls::Label& control) {
  auto* const hint = new QLabel(&parent);
  hint->setObjectName(name);
  hint->setTextFormat(Qt::PlainText);
  hint->setWordWrap(true);
  box.addWidget(hint);
  follow(*hint, control.caption, [hint](const std::string& text) {
    hint->setText(to_qt(text));
    hint->setVisible(!text.empty());
  });
  return hint;
}

void follow_title(QDialog& dialog, controls::Label& title) {
  follow(dialog, title.caption, [&dialog](const std::string& text) { dialog.setWindowTitle(to_qt(text)); });
}

}  // namespace twk::screens
