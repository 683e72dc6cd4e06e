#include "app/server_trial.hpp"

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <cstdio>
#include <exception>
#include <string_view>

#include "screens/widgets/text.hpp"
#include "world/real_domains.hpp"
#include "world/server_check.hpp"

namespace twk::app {
namespace {

using live::CheckStep;
using live::LiveSettings;
using live::StepOutcome;

constexpr const char* kWord = "--try-file-servers";

/// A line of what the two processes say to each other.
QByteArray line_of(const QJsonObject& object) {
  return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

QJsonObject object_of(const QByteArray& line) {
  return QJsonDocument::fromJson(line).object();
}

QByteArray order_of(const LiveSettings& settings, const std::string& database) {
  return line_of({{"domain", screens::to_qt(settings.domain)},
                  {"server", screens::to_qt(settings.server)},
                  {"port", settings.port},
                  {"ticket", settings.logon == LiveSettings::Logon::kTicket},
                  {"ldaps", settings.tls == LiveSettings::Tls::kLdaps},
                  {"ca_file", screens::to_qt(settings.ca_file)},
                  {"user", screens::to_qt(settings.user)},
                  {"password", screens::to_qt(settings.password)},
                  {"seconds", settings.timeout_seconds},
                  {"database", screens::to_qt(database)}});
}

LiveSettings settings_of(const QJsonObject& order) {
  const auto text = [&](const char* name) { return screens::from_qt(order[name].toString()); };
  LiveSettings settings;
  settings.domain = text("domain");
  settings.server = text("server");
  settings.port = static_cast<std::uint16_t>(order["port"].toInt());
  settings.logon = order["ticket"].toBool() ? LiveSettings::Logon::kTicket : LiveSettings::Logon::kPassword;
  settings.tls = order["ldaps"].toBool() ? LiveSettings::Tls::kLdaps : LiveSettings::Tls::kStartTls;
  settings.ca_file = text("ca_file");
  settings.user = text("user");
  settings.password = text("password");
  settings.timeout_seconds = order["seconds"].toInt();
  return settings;
}

/// Nobody is asked in that process.
class NoDialogs final : public platform::Dialogs {
 public:
  platform::Answer MsgBox(std::string_view /*text*/, platform::Buttons /*buttons*/, platform::Icon /*icon*/,
                          std::string_view /*title*/) override {
    return platform::Answer::kCancel;
  }
  std::string InputBox(std::string_view /*prompt*/, std::string_view /*title*/, bool /*secret*/) override {
    return {};
  }
  std::optional<std::string> open_file(std::string_view /*title*/, std::string_view /*filter*/) override {
    return std::nullopt;
  }
  void beep() override {}
  void DoEvents() override {}
};

void report(const CheckStep& step) {
  const QByteArray line = line_of({{"step", screens::to_qt(step.name)},
                                   {"outcome", static_cast<int>(step.outcome)},
                                   {"detail", screens::to_qt(step.detail)}});
  std::fwrite(line.constData(), 1, static_cast<std::size_t>(line.size()), stdout);
  std::fflush(stdout);
}

void check(const QJsonObject& order) {
  NoDialogs dialogs;
  world::World world(
      world::real_domains().make_ground(settings_of(order), {}, live::user_folders(), std::nullopt), dialogs);
  world.choose_domain_and_database(screens::from_qt(order["database"].toString()));
  world::check_servers(world, report);
}

CheckStep broken_off(const QString& why) {
  return {"file servers", StepOutcome::kFailed, "the check ended early: " + screens::from_qt(why)};
}

}  // namespace

std::optional<int> answer_server_trial(int argc, char** argv) {
  if (argc != 2 || std::string_view(argv[1]) != kWord)
    return std::nullopt;
  QFile input;
  if (!input.open(stdin, QIODevice::ReadOnly))
    return 1;
  try {
    check(object_of(input.readLine()));
  } catch (const std::exception& failure) {
    report(broken_off(failure.what()));
  }
  return 0;
}

std::vector<CheckStep> try_servers(const LiveSettings& settings, const std::string& database,
                                   const live::Prompts& prompts,
                                   const std::function<void(const CheckStep&)>& tell) {
  constexpr int kPace = 100;  // milliseconds between two looks whether the person has had enough
  std::vector<CheckStep> steps;
  const auto add = [&](CheckStep step) {
    tell(step);
    steps.push_back(std::move(step));
  };
  QProcess trial;
  trial.setProcessChannelMode(QProcess::ForwardedErrorChannel);
  trial.start(QCoreApplication::applicationFilePath(), {kWord});
  trial.write(order_of(settings, database));
  trial.closeWriteChannel();
  while (trial.state() != QProcess::NotRunning || trial.canReadLine()) {
    if (prompts.is_stopped && prompts.is_stopped()) {
      trial.kill();
      trial.waitForFinished();
      return steps;
    }
    if (!trial.canReadLine())
      trial.waitForReadyRead(kPace);
    if (!trial.canReadLine())
      continue;
    const QJsonObject told = object_of(trial.readLine());
    add({screens::from_qt(told["step"].toString()), static_cast<StepOutcome>(told["outcome"].toInt()),
         screens::from_qt(told["detail"].toString())});
  }
  if (trial.error() == QProcess::FailedToStart || trial.error() == QProcess::Crashed)
    add(broken_off(trial.errorString()));
  return steps;
}

}  // namespace twk::app
