#include "app/connection_window.hpp"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QThread>
#include <memory>
#include <vector>

#include "screens/widgets/application.hpp"
#include "screens/widgets/icons.hpp"
#include "screens/widgets/text.hpp"
#include "session/activity_log.hpp"
#include "world/real_domains.hpp"
#include "world/stored_connection.hpp"

namespace twk::app {
namespace {

using live::CheckStep;
using live::StepOutcome;

constexpr int kIconSize = 32;
constexpr int kLightSize = 16;

QIcon light_of(StepOutcome outcome) {
  switch (outcome) {
    case StepOutcome::kPassed:
      return screens::icon(session::kGreen);
    case StepOutcome::kWarning:
      return screens::icon(session::kYellow);
    case StepOutcome::kFailed:
      return screens::icon(session::kRed);
    case StepOutcome::kSkipped:
      break;
  }
  return {};
}

class ConnectionWindow final : public QDialog {
 public:
  ConnectionWindow(const world::ConnectionOptions& options, const QString& problem, QWidget* parent,
                   ConnectionTest test)
      : QDialog(parent), run_test_(std::move(test)) {
    setObjectName("connection");
    setWindowTitle("Connection to the Domain");
    auto* const layout = new QVBoxLayout(this);
    if (!problem.isEmpty())
      add_problem(*layout, problem);
    auto* const form = new QFormLayout;
    layout->addLayout(form);
    add_fields(*form);
    add_steps(*layout);
    add_buttons(*layout, !problem.isEmpty());
    fill(options);
    resize(sizeHint().expandedTo({620, 520}));
  }
  ConnectionWindow(const ConnectionWindow&) = delete;
  ConnectionWindow& operator=(const ConnectionWindow&) = delete;
  /// Every step of a test ends by itself after a while; its thread must not outlive the window.
  ~ConnectionWindow() override {
    if (thread_ != nullptr)
      thread_->wait();
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

  void add_steps(QVBoxLayout& layout) {
    auto* const box = new QGroupBox("Test", this);
    auto* const grid = new QGridLayout(box);
    grid->setColumnStretch(2, 1);
    int row = 0;
    for (const std::string& name : live::check_step_names()) {
      StepRow& step = steps_.emplace_back();
      step.light = new QLabel(box);
      step.light->setFixedWidth(kLightSize + 2);
      step.name = new QLabel(screens::to_qt(name), box);
      step.detail = new QLabel(box);
      step.detail->setObjectName("step" + QString::number(row));
      step.detail->setTextFormat(Qt::PlainText);
      step.detail->setWordWrap(true);
      step.detail->setTextInteractionFlags(Qt::TextSelectableByMouse);
      grid->addWidget(step.light, row, 0, Qt::AlignTop);
      grid->addWidget(step.name, row, 1, Qt::AlignTop);
      grid->addWidget(step.detail, row, 2, Qt::AlignTop);
      ++row;
    }
    grid->setRowStretch(row, 1);
    layout.addWidget(box, 1);
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
    for (const std::string& domain : world::real_domains().discover())
      domain_->addItem(screens::to_qt(domain));
    if (!options.domain.empty())
      domain_->setEditText(screens::to_qt(options.domain));
    server_->setText(screens::to_qt(options.server));
    port_->setText(screens::to_qt(options.port));
    const int method = method_->findData(screens::to_qt(options.method));
    method_->setCurrentIndex(method < 0 ? 0 : method);
    user_->setText(screens::to_qt(options.user));
    ca_file_->setText(screens::to_qt(options.ca_file));
    show_placeholder();
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

  void show_step(std::size_t place, const CheckStep& step) {
    const StepRow& row = steps_.at(place);
    row.light->setPixmap(light_of(step.outcome).pixmap(kLightSize));
    row.light->setAccessibleName(screens::to_qt(live::outcome_word(step.outcome)));
    row.name->setEnabled(step.outcome != StepOutcome::kSkipped);
    row.detail->setEnabled(step.outcome != StepOutcome::kSkipped);
    row.detail->setText(screens::to_qt(step.detail));
  }

  void show_no_steps() {
    for (std::size_t i = 0; i < steps_.size(); ++i)
      show_step(i, {});
  }

  void test() {
    const auto settings = this->settings();
    if (!settings || thread_ != nullptr)
      return;
    show_no_steps();
    test_->setEnabled(false);
    test_->setText("Testing…");
    thread_.reset(QThread::create([this, settings = *settings, run = run_test_] {
      std::size_t place = 0;
      // Nobody can be asked from here; only what was typed counts.
      run(settings, {}, [&](const CheckStep& step) {
        QMetaObject::invokeMethod(
            this, [this, at = place++, step] { show_step(at, step); }, Qt::QueuedConnection);
      });
    }));
    connect(thread_.get(), &QThread::finished, this, [this] {
      thread_->wait();
      thread_.reset();
      test_->setText("&Test connection");
      test_->setEnabled(true);
    });
    thread_->start();
  }

  void choose(bool without_domain) {
    if (!settings())
      return;
    chosen_ = {options(), screens::from_qt(password_->text()), without_domain};
    accept();
  }

  struct StepRow {
    QLabel* light = nullptr;
    QLabel* name = nullptr;
    QLabel* detail = nullptr;
  };

  ConnectionTest run_test_;
  QComboBox* domain_ = nullptr;
  QLineEdit* server_ = nullptr;
  QLineEdit* port_ = nullptr;
  QComboBox* method_ = nullptr;
  QLineEdit* user_ = nullptr;
  QLineEdit* password_ = nullptr;
  QLineEdit* ca_file_ = nullptr;
  std::vector<StepRow> steps_;
  QPushButton* test_ = nullptr;
  std::unique_ptr<QThread> thread_;
  ChosenConnection chosen_;
};

}  // namespace

std::optional<ChosenConnection> choose_connection(const world::ConnectionOptions& options,
                                                  const QString& problem, QWidget* parent,
                                                  const ConnectionTest& test) {
  const auto usual = [](const live::LiveSettings& settings, const live::Prompts& prompts,
                        const std::function<void(const CheckStep&)>& tell) {
    return world::real_domains().check_connection(settings, prompts,
                                                  {world::stored_unit(live::user_folders())}, tell);
  };
  ConnectionWindow window(options, problem, parent, test ? test : ConnectionTest(usual));
  if (window.exec() != QDialog::Accepted)
    return std::nullopt;
  return window.chosen();
}

}  // namespace twk::app
