#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <array>

#include "app/start_window.hpp"
#include "screens/widgets/application.hpp"
#include "screens/widgets/text.hpp"
#include "world/sample_lab.hpp"

namespace twk::app {
namespace {

struct Kind {
  const char* caption;
  lab::DomainKind kind;
  const char* usual_name;
};

constexpr std::array<Kind, 3> kKinds = {
    {{"Active Directory, native mode", lab::DomainKind::kNative, "twk.test"},
     {"Active Directory, mixed mode", lab::DomainKind::kMixed, "twk.test"},
     {"Windows NT domain", lab::DomainKind::kNt, "OLDNT"}}};

/// The hourglass for a scope.
class Hourglass {
 public:
  Hourglass() { QApplication::setOverrideCursor(Qt::WaitCursor); }
  Hourglass(const Hourglass&) = delete;
  Hourglass& operator=(const Hourglass&) = delete;
  ~Hourglass() { QApplication::restoreOverrideCursor(); }
};

/// A folder of the person's that does not exist yet.
QString free_folder() {
  const QString first = QDir::homePath() + "/tarnwick-lab";
  QString folder = first;
  for (int i = 2; QFileInfo::exists(folder); ++i)
    folder = first + "-" + QString::number(i);
  return QDir::toNativeSeparators(folder);
}

class NewLabWindow final : public QDialog {
 public:
  NewLabWindow(platform::Dialogs& dialogs, QWidget* parent) : QDialog(parent), dialogs_(dialogs) {
    setObjectName("new_lab");
    setWindowTitle("Make a Sample Lab");
    auto* const layout = new QVBoxLayout(this);
    auto* const form = new QFormLayout;
    layout->addLayout(form);
    add_fields(*form);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    make_ = buttons->button(QDialogButtonBox::Ok);
    make_->setText("&Make");
    make_->setObjectName("make_lab");
    layout->addStretch(1);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] { make(); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(folder_, &QLineEdit::textChanged, this,
            [this](const QString& text) { make_->setEnabled(!text.trimmed().isEmpty()); });
    resize(sizeHint().expandedTo({480, 0}));
  }

  [[nodiscard]] QString folder() const { return QDir::fromNativeSeparators(folder_->text().trimmed()); }

 private:
  void add_fields(QFormLayout& form) {
    kind_ = new QComboBox(this);
    kind_->setObjectName("kind");
    for (const Kind& kind : kKinds)
      kind_->addItem(kind.caption);
    form.addRow("&Kind:", kind_);
    name_ = new QLineEdit(this);
    name_->setObjectName("domain");
    form.addRow("&Domain name:", name_);
    auto* const row = new QHBoxLayout;
    folder_ = new QLineEdit(free_folder(), this);
    folder_->setObjectName("folder");
    auto* const browse = new QPushButton("&Browse…", this);
    browse->setAutoDefault(false);
    row->addWidget(folder_, 1);
    row->addWidget(browse);
    form.addRow("&Folder:", row);
    auto* const about = new QLabel(
        "The folder is new or empty. The lab gets people, groups, a file server, the site \"Head Office\" "
        "and "
        "the template \"Staff\".",
        this);
    about->setWordWrap(true);
    form.addRow(QString(), about);
    if (QLabel* const caption = qobject_cast<QLabel*>(form.labelForField(row)))
      caption->setBuddy(folder_);
    show_usual_name();
    connect(kind_, &QComboBox::currentIndexChanged, this, [this] { show_usual_name(); });
    connect(browse, &QPushButton::clicked, this, [this] { this->browse(); });
  }

  [[nodiscard]] const Kind& kind() const {
    return kKinds.at(static_cast<std::size_t>(kind_->currentIndex()));
  }
  void show_usual_name() { name_->setPlaceholderText(kind().usual_name); }

  void browse() {
    const QString chosen = QFileDialog::getExistingDirectory(this, "Folder of the Lab", QDir::homePath());
    if (!chosen.isEmpty())
      folder_->setText(QDir::toNativeSeparators(chosen));
  }

  /// The window stays when the lab cannot be made, so that the problem can be fixed.
  void make() {
    try {
      lab::LabPlan plan;
      plan.kind = kind().kind;
      world::name_domain(plan, screens::from_qt(name_->text().trimmed()));
      const Hourglass hourglass;
      world::make_sample_lab(screens::from_qt(folder()), plan, dialogs_);
    } catch (const std::exception& failure) {
      QMessageBox box(QMessageBox::Critical, "TWK", "The lab was not made.", QMessageBox::Ok, this);
      box.setTextFormat(Qt::PlainText);
      screens::add_remedies(box);
      box.setInformativeText(screens::describe_failure(failure));
      box.exec();
      return;
    }
    accept();
  }

  platform::Dialogs& dialogs_;
  QComboBox* kind_ = nullptr;
  QLineEdit* name_ = nullptr;
  QLineEdit* folder_ = nullptr;
  QPushButton* make_ = nullptr;
};

}  // namespace

std::optional<QString> make_sample_lab(platform::Dialogs& dialogs, QWidget* parent) {
  NewLabWindow window(dialogs, parent);
  if (window.exec() != QDialog::Accepted)
    return std::nullopt;
  return window.folder();
}

}  // namespace twk::app
