#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "screens/program/program_windows.hpp"
#include "screens/widgets/icons.hpp"

namespace twk::screens {
namespace {

constexpr int kPicture = 64;

QLabel* text_label(const QString& text, QWidget* parent) {
  auto* const label = new QLabel(text, parent);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return label;
}

}  // namespace

void show_about(QWidget* parent) {
  QDialog window(parent);
  window.setObjectName("frmAbout");
  window.setWindowTitle("About Tarnwick");
  auto* const layout = new QVBoxLayout(&window);
  auto* const row = new QHBoxLayout;
  row->setSpacing(16);
  auto* const picture = new QLabel(&window);
  picture->setPixmap(icon("tarnwick").pixmap(kPicture));
  row->addWidget(picture, 0, Qt::AlignTop);
  auto* const column = new QVBoxLayout;
  QLabel* const name = text_label("Tarnwick", &window);
  QFont font = name->font();
  font.setBold(true);
  font.setPointSizeF(font.pointSizeF() + 6);
  name->setFont(font);
  column->addWidget(name);
  QLabel* const version = text_label(QString("Version ") + TWK_VERSION, &window);
  version->setObjectName("version");
  column->addWidget(version);
  column->addSpacing(8);
  column->addWidget(
      text_label("User accounts of Windows domains, from Linux: created whole from templates and sites, one "
                 "at a time or "
                 "from a file.",
                 &window));
  column->addWidget(text_label(
      "Free software under the GNU General Public License, version 3 or later, without any warranty.",
      &window));
  column->addWidget(text_label(QString("Qt ") + qVersion(), &window));
  column->addStretch(1);
  row->addLayout(column, 1);
  layout->addLayout(row);
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok, &window);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &window, &QDialog::accept);
  layout->addWidget(buttons);
  window.resize(window.sizeHint().expandedTo({420, 0}));
  window.exec();
}

}  // namespace twk::screens
