#include <QCheckBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QVBoxLayout>

#include "screens/program/program_windows.hpp"
#include "screens/widgets/icons.hpp"
#include "screens/widgets/text.hpp"
#include "windows/tips.hpp"

namespace twk::screens {
namespace {

constexpr const char* kWanted = "tips/show_at_start";
constexpr const char* kNext = "tips/next";
constexpr int kTipPicture = 48;

std::string shipped_tips() {
  QFile file(":/help/TIPOFDAY.TXT");
  return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
}

bool wanted() {
  return QSettings().value(kWanted, true).toBool();
}

class TipWindow final : public QDialog {
 public:
  TipWindow(std::vector<std::string> tips, QWidget* parent) : QDialog(parent), tips_(std::move(tips)) {
    setObjectName("frmTip");
    setWindowTitle("Tip of the Day");
    auto* const layout = new QVBoxLayout(this);
    add_tip(*layout);
    add_buttons(*layout);
    show_next();
    resize(sizeHint().expandedTo({440, 220}));
  }

 private:
  void add_tip(QVBoxLayout& layout) {
    auto* const row = new QHBoxLayout;
    row->setSpacing(16);
    auto* const picture = new QLabel(this);
    picture->setPixmap(icon("help").pixmap(kTipPicture));
    row->addWidget(picture, 0, Qt::AlignTop);
    auto* const column = new QVBoxLayout;
    auto* const heading = new QLabel("Did you know…", this);
    QFont font = heading->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() + 3);
    heading->setFont(font);
    column->addWidget(heading);
    tip_ = new QLabel(this);
    tip_->setObjectName("tip");
    tip_->setTextFormat(Qt::PlainText);
    tip_->setWordWrap(true);
    tip_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    tip_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    column->addWidget(tip_, 1);
    row->addLayout(column, 1);
    layout.addLayout(row, 1);
  }

  void add_buttons(QVBoxLayout& layout) {
    auto* const row = new QHBoxLayout;
    auto* const again = new QCheckBox("&Show tips at start-up", this);
    again->setObjectName("show_tips");
    again->setChecked(wanted());
    row->addWidget(again);
    row->addStretch(1);
    auto* const next = new QPushButton("&Next Tip", this);
    next->setObjectName("next_tip");
    next->setAutoDefault(false);
    row->addWidget(next);
    auto* const close = new QPushButton("OK", this);
    close->setObjectName("ok");
    close->setDefault(true);
    row->addWidget(close);
    layout.addLayout(row);
    connect(again, &QCheckBox::toggled, this, [](bool on) { QSettings().setValue(kWanted, on); });
    connect(next, &QPushButton::clicked, this, [this] { show_next(); });
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    close->setFocus();
  }

  /// The next window continues where the last one stopped.
  void show_next() {
    QSettings settings;
    const std::size_t place = settings.value(kNext).toUInt() % tips_.size();
    tip_->setText(to_qt(tips_.at(place)));
    settings.setValue(kNext, static_cast<unsigned>((place + 1) % tips_.size()));
  }

  std::vector<std::string> tips_;
  QLabel* tip_ = nullptr;
};

}  // namespace

void show_tip(QWidget* parent, windows::Desktop& session) {
  std::vector<std::string> tips = windows::read_tips(session, shipped_tips());
  if (tips.empty())
    return;
  TipWindow window(std::move(tips), parent);
  window.exec();
}

void show_tip_at_start(QWidget* parent, windows::Desktop& session) {
  if (wanted())
    show_tip(parent, session);
}

}  // namespace twk::screens
