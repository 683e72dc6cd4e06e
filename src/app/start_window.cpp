#include "app/start_window.hpp"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSettings>
#include <QVBoxLayout>

#include "screens/help/help_topics.hpp"
#include "screens/widgets/icons.hpp"
#include "screens/widgets/text.hpp"
#include "world/world.hpp"

namespace twk::app {
namespace {

constexpr const char* kRecent = "labs/recent";
constexpr qsizetype kMostRecent = 8;
constexpr int kChoiceIcon = 48;

class StartWindow final : public QDialog {
 public:
  explicit StartWindow(platform::Dialogs& dialogs) : dialogs_(dialogs) {
    setObjectName("start");
    setWindowTitle("Tarnwick");
    auto* const layout = new QVBoxLayout(this);
    add_heading(*layout);
    add_recent_labs(*layout);
    add_buttons(*layout);
    resize(sizeHint().expandedTo({520, 360}));
  }

  [[nodiscard]] StartChoice choice() const { return {lab_}; }

 private:
  void add_heading(QVBoxLayout& layout) {
    auto* const row = new QHBoxLayout;
    auto* const picture = new QLabel(this);
    picture->setPixmap(screens::icon("tarnwick").pixmap(kChoiceIcon));
    row->addWidget(picture);
    auto* const text = new QLabel(
        "Connect to a domain, or choose a lab to work in.\n"
        "A lab is a whole small domain inside a folder: nothing leaves this computer.",
        this);
    text->setWordWrap(true);
    row->addWidget(text, 1);
    layout.addLayout(row);
  }

  void add_recent_labs(QVBoxLayout& layout) {
    auto* const caption = new QLabel("&Recent labs:", this);
    layout.addWidget(caption);
    recent_ = new QListWidget(this);
    recent_->setObjectName("recent");
    for (const QString& folder : recent_labs())
      recent_->addItem(new QListWidgetItem(screens::icon("folder"), QDir::toNativeSeparators(folder)));
    recent_->setTextElideMode(Qt::ElideMiddle);
    caption->setBuddy(recent_);
    caption->setVisible(recent_->count() > 0);
    recent_->setVisible(recent_->count() > 0);
    layout.addWidget(recent_, 1);
    if (recent_->count() == 0)
      layout.addStretch(1);
    else
      recent_->setCurrentRow(0);
    connect(recent_, &QListWidget::itemActivated, this, [this] { open_recent(); });
  }

  void add_buttons(QVBoxLayout& layout) {
    auto* const row = new QHBoxLayout;
    const auto add = [&](const QString& caption, const char* name, const char* picture, auto action) {
      auto* const button = new QPushButton(screens::icon(picture), caption, this);
      button->setObjectName(name);
      button->setAutoDefault(false);
      connect(button, &QPushButton::clicked, this, action);
      row->addWidget(button);
      return button;
    };
    add("&Connect to a Domain…", "connect", "domain", [this] { choose({}); });
    add("&Open a Lab…", "open", "folder", [this] { open_other(); });
    auto* const make = add("&Make a Sample Lab…", "make", "new", [this] { make_one(); });
    row->addStretch(1);
    add("&Quit", "quit", "exit1", [this] { reject(); });
    auto* const again = add("Open", "again", "folder", [this] { open_recent(); });
    again->setVisible(recent_->count() > 0);
    (recent_->count() > 0 ? again : make)->setDefault(true);
    layout.addLayout(row);
  }

  void choose(const QString& folder) {
    lab_ = folder;
    accept();
  }

  void open_recent() {
    if (const QListWidgetItem* const item = recent_->currentItem())
      choose(QDir::fromNativeSeparators(item->text()));
  }

  void open_other() {
    const QString folder = choose_lab(this);
    if (!folder.isEmpty())
      choose(folder);
  }

  void make_one() {
    if (const auto folder = make_sample_lab(dialogs_, this))
      choose(*folder);
  }

  platform::Dialogs& dialogs_;
  QListWidget* recent_ = nullptr;
  QString lab_;
};

}  // namespace

QStringList recent_labs() {
  QStringList labs;
  for (const QString& folder : QSettings().value(kRecent).toStringList()) {
    if (world::may_be_lab(screens::from_qt(folder)))
      labs << folder;
  }
  return labs;
}

void remember_lab(const QString& folder) {
  const QString full = QDir(folder).absolutePath();
  QStringList labs = recent_labs();
  labs.removeAll(full);
  labs.prepend(full);
  QSettings().setValue(kRecent, QStringList(labs.mid(0, kMostRecent)));
}

QString choose_lab(QWidget* parent) {
  return QFileDialog::getExistingDirectory(parent, "Open a Lab", QDir::homePath());
}

std::optional<StartChoice> choose_start(platform::Dialogs& dialogs) {
  StartWindow window(dialogs);
  screens::open_help_with_f1(window);
  if (window.exec() != QDialog::Accepted)
    return std::nullopt;
  return window.choice();
}

}  // namespace twk::app
