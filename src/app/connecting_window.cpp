#include "app/connecting_window.hpp"

#include <QDialog>
#include <QDialogButtonBox>
#include <QEventLoop>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <memory>
#include <utility>

#include "screens/widgets/text.hpp"

namespace twk::app {
namespace {

using live::StepOutcome;

class ConnectingWindow final : public QDialog {
 public:
  explicit ConnectingWindow(const live::LiveSettings& settings) : settings_(settings) {
    setObjectName("connecting");
    setWindowTitle("Connecting");
    auto* const layout = new QVBoxLayout(this);
    auto* const heading =
        new QLabel("Connecting to the domain " + screens::to_qt(settings.domain) + "…", this);
    heading->setTextFormat(Qt::PlainText);
    layout->addWidget(heading);
    steps_ = new ConnectionSteps(logon_step_names(), this);
    layout->addWidget(steps_, 1);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Cancel)->setObjectName("cancel");
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    resize(sizeHint().expandedTo({520, 240}));
  }

  ConnectionAttempt watch(const ConnectionTest& test,
                          const std::function<std::optional<std::string>(const std::string&)>& ask) {
    attempt_.password = settings_.password;
    ConnectionListener listener{
        .on_step = [this](std::size_t place, const TimedStep& ended) { take(place, ended); },
        .on_end = [this] { accept(); },
        .ask_password = {}};
    if (ask) {
      listener.ask_password = [this, ask](const std::string& user) {
        auto password = ask(user);
        attempt_.password = password.value_or(std::string());
        return password;
      };
    }
    const auto trial = start_check(test, settings_, logon_step_count(), listener);
    steps_->begin();
    show();
    QEventLoop until_it_ends;
    connect(this, &QDialog::finished, &until_it_ends, &QEventLoop::quit);
    until_it_ends.exec();
    attempt_.cancelled = result() != QDialog::Accepted;
    return std::move(attempt_);
  }

 private:
  void take(std::size_t place, const TimedStep& ended) {
    steps_->show(place, ended);
    attempt_.failed.steps.push_back(ended);
    if (ended.step.outcome == StepOutcome::kFailed && attempt_.failed.problem.isEmpty())
      attempt_.failed.problem = "The connection failed at the step \"" + screens::to_qt(ended.step.name) +
                                "\": " + screens::to_qt(ended.step.detail);
  }

  live::LiveSettings settings_;
  ConnectionSteps* steps_ = nullptr;
  ConnectionAttempt attempt_;
};

}  // namespace

ConnectionAttempt try_to_connect(
    const live::LiveSettings& settings,
    const std::function<std::optional<std::string>(const std::string& user)>& ask,
    const ConnectionTest& test) {
  return ConnectingWindow(settings).watch(test ? test : usual_connection_test({}), ask);
}

}  // namespace twk::app
