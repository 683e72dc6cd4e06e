#include "app/connection_window.hpp"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <memory>
#include <vector>

#include "screens/widgets/application.hpp"
#include "screens/widgets/text.hpp"
#include "world/real_domains.hpp"

namespace twk::app {
namespace {

constexpr int kIconSize = 32;

class ConnectionWindow final : public QDialog {
 public:
  ConnectionWindow(const world::ConnectionOptions& options, const FailedConnection& failed, QWidget* parent,
                   ConnectionTest test)
      : QDialog(parent), run_test_(std::move(test)) {
    setObjectName("connection");
    setWindowTitle("Connection to the Domain");
    auto* const layout = new QVBoxLayout(this);
    if (!failed.problem.isEmpty())
      add_problem(*layout, failed.problem);
    auto* const form = new QFormLayout;
    layout->addLayout(form);
    add_fields(*form);
    add_steps(*layout, failed.steps);
    add_buttons(*layout, !failed.problem.isEmpty());
    fill(options);
    resize(sizeHint().expandedTo({680, 680}));
  }
  [[nodiscard]] const ChosenConnection& chosen() const { return chosen_; }

 private:
  void add_problem(QVBoxLayout& layout, const QString& problem) {
    auto* const row = new QHBoxLayout;
    auto* const picture = new QLabel(this);
    picture->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(kIconSize));
    row->addWidget(picture, 0, Qt::AlignTop);
    auto* const text = new QLabel(problem, this);
    text->setObjectName("problem");
    text->setTextFormat(Qt::PlainText);
    text->setWordWrap(true);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    row->addWidget(text, 1);
    auto* const help = new QPushButton("H&elp", this);
    help->setObjectName("help");
    help->setAutoDefault(false);
    connect(help, &QPushButton::clicked, this, [this, problem] { screens::show_advice(this, problem); });
    row->addWidget(help, 0, Qt::AlignTop);
    layout.addLayout(row);
  }

  QLineEdit* add_line(QFormLayout& form, const char* caption, const char* name, const char* placeholder) {
    auto* const line = new QLineEdit(this);
    line->setObjectName(name);
    line->setPlaceholderText(placeholder);
    form.addRow(caption, line);
    return line;
  }

  void add_fields(QFormLayout& form) {
    domain_ = new QComboBox(this);
    domain_->setObjectName("domain");
    domain_->setEditable(true);
    form.addRow("&Domain:", domain_);
    server_ = add_line(form, "&Server:", "server", "found by the name service");
    port_ = add_line(form, "&Port:", "port", "the usual one");
    method_ = new QComboBox(this);
    method_->setObjectName("method");
    for (const world::ConnectionMethod& method : world::connection_methods())
      method_->addItem(screens::to_qt(method.caption), screens::to_qt(method.word));
    form.addRow("&Method:", method_);
    user_ = add_line(form, "&User:", "user", "");
    password_ = add_line(form, "Pass&word:", "password", "asked for when it is needed, never stored");
    password_->setEchoMode(QLineEdit::Password);
    auto* const row = new QHBoxLayout;
    ca_file_ = new QLineEdit(this);
    ca_file_->setObjectName("ca_file");
    ca_file_->setPlaceholderText("the certificates that this system trusts");
    auto* const browse = new QPushButton("&Browse…", this);
    browse->setAutoDefault(false);
    row->addWidget(ca_file_, 1);
    row->addWidget(browse);
    form.addRow("CA &file:", row);
    if (QLabel* const caption = qobject_cast<QLabel*>(form.labelForField(row)))
      caption->setBuddy(ca_file_);
    connect(method_, &QComboBox::currentIndexChanged, this, [this] { show_placeholder(); });
    connect(browse, &QPushButton::clicked, this, [this] { this->browse(); });
  }

  void add_steps(QVBoxLayout& layout, const std::vector<TimedStep>& ended) {
    auto* const box = new QGroupBox("Test", this);
    auto* const inside = new QVBoxLayout(box);
    auto* const area = new QScrollArea(box);
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    steps_ = new ConnectionSteps(all_step_names(), area);
    area->setWidget(steps_);
    inside->addWidget(area);
    layout.addWidget(box, 1);
    for (std::size_t i = 0; i < ended.size(); ++i)
      steps_->show(i, ended[i]);
  }

  void add_buttons(QVBoxLayout& layout, bool failed_before) {
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    test_ = buttons->addButton("&Test connection", QDialogButtonBox::ActionRole);
    test_->setObjectName("test");
    test_->setAutoDefault(false);
    if (failed_before) {
      auto* const without = buttons->addButton("Work wit&hout It", QDialogButtonBox::ActionRole);
      without->setObjectName("without");
      without->setAutoDefault(false);
      without->setToolTip("Settings, sites and templates can be edited without the domain.");
      connect(without, &QPushButton::clicked, this, [this] { choose(true); });
    }
    QPushButton* const ok = buttons->button(QDialogButtonBox::Ok);
    ok->setText("&Connect");
    ok->setObjectName("connect");
    ok->setDefault(true);
    connect(test_, &QPushButton::clicked, this, [this] { test(); });
    connect(buttons, &QDialogButtonBox::accepted, this, [this] { choose(false); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout.addWidget(buttons);
  }

  void fill(const world::ConnectionOptions& options) {
    domain_->setEditText(screens::to_qt(options.domain));
    discover();
    server_->setText(screens::to_qt(options.server));
    port_->setText(screens::to_qt(options.port));
    const int method = method_->findData(screens::to_qt(options.method));
    method_->setCurrentIndex(method < 0 ? 0 : method);
    user_->setText(screens::to_qt(options.user));
    ca_file_->setText(screens::to_qt(options.ca_file));
    show_placeholder();
  }

  /// A name service that does not answer takes seconds. What was typed meanwhile stays.
  void discover() {
    discovery_ = std::make_unique<Errand>([this](Errand::Home& home) {
      home.post([this, domains = world::real_domains().discover()] {
        const QString typed = domain_->currentText();
        for (const std::string& domain : domains)
          domain_->addItem(screens::to_qt(domain));
        if (!typed.isEmpty())
          domain_->setEditText(typed);
      });
    });
  }

  void show_placeholder() {
    user_->setPlaceholderText(method_->currentIndex() == 0 ? "the owner of the Kerberos ticket" : "");
  }

  [[nodiscard]] world::ConnectionOptions options() const {
    const auto text = [](const QString& typed) { return screens::from_qt(typed.trimmed()); };
    return {.domain = text(domain_->currentText()),
            .server = text(server_->text()),
            .port = text(port_->text()),
            .method = text(method_->currentData().toString()),
            .user = text(user_->text()),
            .ca_file = text(ca_file_->text())};
  }

  /// None, with a box, for invalid fields.
  std::optional<live::LiveSettings> settings() {
    try {
      live::LiveSettings settings = world::required_settings(options());
      settings.password = screens::from_qt(password_->text());
      return settings;
    } catch (const std::exception& failure) {
      QMessageBox box(QMessageBox::Critical, "TWK", "There is no such connection.", QMessageBox::Ok, this);
      box.setTextFormat(Qt::PlainText);
      box.setInformativeText(screens::to_qt(failure.what()));
      screens::add_remedies(box);
      box.exec();
      return std::nullopt;
    }
  }

  void browse() {
    const QString file =
        QFileDialog::getOpenFileName(this, "CA File", {}, "Certificates (*.pem *.crt *.cer);;All Files (*)");
    if (!file.isEmpty())
      ca_file_->setText(file);
  }

  void test() {
    if (is_testing_) {
      // The check that is running ends in the background.
      trial_.reset();
      return end_test("stopped");
    }
    const auto settings = this->settings();
    if (!settings)
      return;
    steps_->clear();
    steps_->begin();
    is_testing_ = true;
    test_->setText("&Stop Test");
    const auto show = [this](std::size_t place, const TimedStep& ended) { steps_->show(place, ended); };
    // Nobody is asked for a password here; only what was typed counts.
    trial_ = start_check(run_test_, *settings, kAllSteps, {show, [this] { end_test({}); }, {}});
  }

  void end_test(const QString& text) {
    is_testing_ = false;
    steps_->end(text);
    test_->setText("&Test connection");
  }

  void choose(bool without_domain) {
    if (!settings())
      return;
    chosen_ = {options(), screens::from_qt(password_->text()), without_domain};
    accept();
  }

  ConnectionTest run_test_;
  QComboBox* domain_ = nullptr;
  QLineEdit* server_ = nullptr;
  QLineEdit* port_ = nullptr;
  QComboBox* method_ = nullptr;
  QLineEdit* user_ = nullptr;
  QLineEdit* password_ = nullptr;
  QLineEdit* ca_file_ = nullptr;
  ConnectionSteps* steps_ = nullptr;
  QPushButton* test_ = nullptr;
  bool is_testing_ = false;
  ChosenConnection chosen_;
  std::unique_ptr<Errand> trial_;  ///< the last members: they end before what they show
  std::unique_ptr<Errand> discovery_;
};

}  // namespace

std::optional<ChosenConnection> choose_connection(const world::ConnectionOptions& options,
                                                  const FailedConnection& failed, QWidget* parent,
                                                  const ConnectionTest& test) {
  ConnectionWindow window(options, failed, parent, test ? test : usual_connection_test({}));
  if (window.exec() != QDialog::Accepted)
    return std::nullopt;
  return window.chosen();
}

}  // namespace twk::app
