#include "app/program.hpp"

#include <QMessageBox>
#include <QScreen>
#include <QTimer>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

#include "app/single_instance.hpp"
#include "app/start_window.hpp"
#include "base/errors.hpp"
#include "screens/application.hpp"
#include "screens/help_topics.hpp"
#include "screens/main_window.hpp"
#include "screens/program_windows.hpp"
#include "screens/qt_dialogs.hpp"
#include "screens/text.hpp"
#include "session/activity_log.hpp"
#include "session/start_up.hpp"
#include "world/world.hpp"

namespace twk::app {
namespace {

void complain(const QString& text) {
  std::fprintf(stderr, "tarnwick: %s\n", qUtf8Printable(text));
}

/// In pixels of the device.
int screen_width() {
  const QScreen* const screen = QGuiApplication::primaryScreen();
  return static_cast<int>(std::lround(screen->size().width() * screen->devicePixelRatio()));
}

/// A lab and the session in it, from its opening to the end of the main window.
class Workplace {
 public:
  /// Raises what cannot be opened: no lab, files of another version, files that do not read.
  Workplace(const Options& options, const std::string& folder)
      : world_(checked(folder), dialogs_, [this](const std::string& text) { repairs_.push_back(text); }) {
    world_.choose_domain_and_database(options.database);
    session_ = std::make_unique<session::Session>(world_.services(), options.command_line,
                                                  world_.program_directory());
    dialogs_.set_session(*session_);
    start();
    for (const std::string& repair : repairs_)
      session::LOG_TAB(*session_, session::kYellow, repair);
  }

  int work() {
    if (outcome_ == session::StartUp::kNotPermitted)
      return kExitNotPermitted;
    screens::MainWindow window(*session_);
    window.show();
    screens::open_help_with_f1(window);
    QTimer::singleShot(
        0, &window, [&] { screens::run_guarded([&] { screens::show_tip_at_start(&window, *session_); }); });
    return QApplication::exec();
  }

 private:
  static const std::string& checked(const std::string& folder) {
    if (world::may_be_lab(folder))
      return folder;
    throw base::RuntimeError(base::error::kPathNotFound, folder + " is no lab: it holds no lab.conf");
  }

  void start() {
    const auto splash = screens::make_splash(*session_);
    try {
      outcome_ = session::start_session(*session_);
    } catch (const std::exception& failure) {
      if (session::is_debug(*session_))
        end_on_failure(failure);
      throw;
    }
  }

  screens::QtDialogs dialogs_;
  std::vector<std::string> repairs_;
  world::World world_;
  std::unique_ptr<session::Session> session_;
  session::StartUp outcome_ = session::StartUp::kReady;
};

void tell_unopened(const QString& lab, const std::exception& failure) {
  const QString text = "The lab cannot be opened: " + lab;
  complain(text + "\n" + screens::describe_failure(failure));
  QMessageBox box(QMessageBox::Critical, "TWK", text, QMessageBox::Ok);
  box.setTextFormat(Qt::PlainText);
  box.setInformativeText(screens::describe_failure(failure));
  box.exec();
}

/// None for a lab that cannot be opened; a box told.
std::unique_ptr<Workplace> open(const Options& options, const QString& lab) {
  try {
    auto workplace = std::make_unique<Workplace>(options, screens::from_qt(lab));
    remember_lab(lab);
    return workplace;
  } catch (const std::exception& failure) {
    tell_unopened(lab, failure);
    return nullptr;
  }
}

int run_on_chosen_lab(const Options& options, screens::QtDialogs& dialogs) {
  while (const auto lab = choose_lab(dialogs)) {
    if (const auto workplace = open(options, *lab))
      return workplace->work();
  }
  return 0;
}

int end_second_start(const SingleInstance& instance) {
  QGuiApplication::setApplicationDisplayName("..Duplicate instance");
  if (!instance.call_first())
    complain("it runs already, and does not answer");
  return 0;
}

}  // namespace

int run(const Options& options) {
  const SingleInstance instance;
  if (!instance.is_first())
    return end_second_start(instance);
  screens::QtDialogs dialogs;
  if (!session::screen_is_wide_enough(dialogs, screen_width()))
    return kExitFault;
  if (options.command_line == "/DEBUG")
    static_cast<screens::Application*>(qApp)->on_failure = end_on_failure;
  if (options.lab.empty())
    return run_on_chosen_lab(options, dialogs);
  const auto workplace = open(options, screens::to_qt(options.lab));
  return workplace ? workplace->work() : kExitBadData;
}

void end_on_failure(const std::exception& failure) {
  complain(screens::describe_failure(failure));
  screens::show_failure(failure);
  std::_Exit(kExitFault);
}

}  // namespace twk::app
