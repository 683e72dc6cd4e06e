#include "app/program.hpp"

#include <QAction>
#include <QDir>
#include <QMenu>
#include <QMessageBox>
#include <QScreen>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "app/connecting_window.hpp"
#include "app/connection_window.hpp"
#include "app/single_instance.hpp"
#include "app/start_window.hpp"
#include "app/waiting_window.hpp"
#include "base/errors.hpp"
#include "screens/help/help_topics.hpp"
#include "screens/main/main_window.hpp"
#include "screens/program/program_windows.hpp"
#include "screens/program/qt_dialogs.hpp"
#include "screens/widgets/application.hpp"
#include "screens/widgets/bind.hpp"
#include "screens/widgets/icons.hpp"
#include "screens/widgets/text.hpp"
#include "session/log_tab.hpp"
#include "windows/start_up.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/whereabouts.hpp"
#include "world/real_domains.hpp"
#include "world/stored_connection.hpp"
#include "world/world.hpp"

namespace twk::app {
namespace {

void complain(const QString& text) {
  std::fprintf(stderr, "tarnwick: %s\n", qUtf8Printable(text));
}

/// In device pixels.
int screen_width() {
  const QScreen* const screen = QGuiApplication::primaryScreen();
  return static_cast<int>(std::lround(screen->size().width() * screen->devicePixelRatio()));
}

/// Makes a workplace's world; `tell` receives what the person should know about it.
using MakeWorld = std::function<std::unique_ptr<world::World>(
    platform::Dialogs& dialogs, const std::function<void(const std::string&)>& tell)>;

/// Lets the next start use a connection. If it cannot be stored, this run still uses it.
void keep(const live::Folders& folders, const world::ConnectionOptions& options) {
  if (!world::store_connection(folders, options))
    complain("the connection cannot be stored in " + screens::to_qt(live::registry_folder(folders)));
}

/// Where the program goes on after the main window was left for another place.
struct Next {
  QString lab = {};           ///< its folder; empty: a real domain that the person chooses
  bool start_window = false;  ///< where the person chooses a place
};

/// A start of the program, and where its windows lead to.
struct Journey {
  Options options;
  std::optional<Next> next;
};

/// A world and the session in it, from its opening to the end of the main window.
class Workplace {
 public:
  /// Raises when something cannot be opened: no lab, files of another version, unreadable files, a domain
  /// that does not answer.
  Workplace(const Options& options, const MakeWorld& make_world)
      : database_(options.database),
        world_(make_world(dialogs_, [this](const std::string& text) { tell(text); })) {
    world_->choose_domain_and_database(options.database);
    session_ = std::make_unique<windows::Desktop>(world_->services(), options.command_line,
                                                  world_->program_directory());
    dialogs_.set_session(*session_);
    start();
    find_whereabouts(options);
    started_ = true;
    for (const std::string& text : std::exchange(told_, {}))
      tell(text);
  }

  /// Shows the main window until it is closed. `next` is where the person went from there.
  int work(std::optional<Next>& next) {
    next.reset();
    if (outcome_ == windows::StartUp::kNotPermitted)
      return kExitNotPermitted;
    screens::MainWindow window(*session_);
    add_places(window, next);
    if (!world_->is_lab())
      add_connection_entry(window);
    window.show();
    screens::open_help_with_f1(window);
    QTimer::singleShot(
        0, &window, [&] { screens::run_guarded([&] { screens::show_tip_at_start(&window, *session_); }); });
    return QApplication::exec();
  }

 private:
  /// The log tab has no row before the session has started, and starting clears it.
  void tell(const std::string& text) {
    if (started_)
      session::LOG_TAB(*session_, session::kYellow, text);
    else
      told_.push_back(text);
  }

  void start() {
    const auto splash = screens::make_splash(*session_);
    try {
      outcome_ = windows::start_session(*session_);
    } catch (const std::exception& failure) {
      if (session::is_debug(*session_))
        end_on_failure(failure);
      throw;
    }
  }

  void find_whereabouts(const Options& options) {
    windows::Whereabouts& place = session_->whereabouts;
    if (world_->is_lab()) {
      place.kind = windows::Whereabouts::Kind::kLab;
      place.folder = options.lab;
      return;
    }
    place.kind = windows::Whereabouts::Kind::kDomain;
    platform::Environment& environment = world_->services().environment;
    place.controller = environment.variable("LOGONSERVER");
    place.controller.erase(0, std::min(place.controller.find_first_not_of('\\'), place.controller.size()));
    place.account = environment.variable("USERNAME");
  }

  /// The entries that lead to another lab or domain: the window is closed first, with its questions.
  void add_places(screens::MainWindow& window, std::optional<Next>& next) {
    auto* const menu = window.findChild<QMenu*>("mnuFile");
    QAction* const end = menu->actions().back();
    const auto leave_for = [&window, &next](const QString& lab) {
      next = Next{.lab = lab};
      // A window that stays, because of a run or of edits, leads nowhere.
      if (!window.close())
        next.reset();
    };
    const auto add = [&](const char* name, const char* caption, const screens::Action& action) {
      auto* const entry = new QAction(caption, &window);
      entry->setObjectName(name);
      menu->insertAction(end, entry);
      screens::on_triggered(*entry, action);
    };
    add("open_lab", "&Open Lab…", [&window, leave_for] {
      const QString folder = choose_lab(&window);
      if (!folder.isEmpty())
        leave_for(folder);
    });
    auto* const recent = new QMenu("&Recent Labs", &window);
    recent->setObjectName("recent_labs");
    for (const QString& folder : recent_labs()) {
      // An ampersand in a folder's name is not a mnemonic.
      QAction* const entry = recent->addAction(QString(folder).replace("&", "&&"));
      entry->setEnabled(folder != screens::to_qt(session_->whereabouts.folder));
      screens::on_triggered(*entry, [leave_for, folder] { leave_for(folder); });
    }
    recent->setEnabled(!recent->isEmpty());
    menu->insertMenu(end, recent);
    add("new_lab", "New &Lab…", [this, &window, leave_for] {
      if (const auto folder = make_sample_lab(dialogs_, &window))
        leave_for(*folder);
    });
    add("connect", "Co&nnect…", [leave_for] { leave_for({}); });
    menu->insertSeparator(end);
  }

  void add_connection_entry(screens::MainWindow& window) {
    auto* const menu = window.findChild<QMenu*>("mnuFile");
    auto* const entry = new QAction(screens::icon("domain"), "&Connection…", &window);
    entry->setObjectName("connection");
    menu->insertAction(menu->actions().back(), entry);
    QObject::connect(entry, &QAction::triggered, &window,
                     [this, &window] { screens::run_guarded([&] { change_connection(window); }); });
  }

  void change_connection(QWidget& window) {
    const auto chosen = choose_connection(world::read_connection(world_->stored_registry()), {}, &window,
                                          usual_connection_test(database_));
    if (!chosen)
      return;
    if (!world::save_connection(world_->stored_registry(), chosen->options))
      throw base::RuntimeError(base::error::kPathFileAccess,
                               "Cannot write the settings in " + world_->settings_folder());
    session_->form1.StatusBar1.panel1 = "The connection is used from the next start on.";
  }

  std::string database_;  ///< of this run; empty: the one of the settings
  screens::QtDialogs dialogs_;
  std::vector<std::string> told_;
  bool started_ = false;
  std::unique_ptr<world::World> world_;
  std::unique_ptr<windows::Desktop> session_;
  windows::StartUp outcome_ = windows::StartUp::kReady;
};

void tell_unopened(const QString& lab, const std::exception& failure) {
  const QString text = "The lab cannot be opened: " + lab;
  complain(text + "\n" + screens::describe_failure(failure));
  QMessageBox box(QMessageBox::Critical, "TWK", text, QMessageBox::Ok);
  box.setTextFormat(Qt::PlainText);
  box.setInformativeText(screens::describe_failure(failure));
  screens::add_remedies(box);
  box.exec();
}

std::unique_ptr<world::World> make_lab_world(const std::string& folder, platform::Dialogs& dialogs,
                                             const std::function<void(const std::string&)>& tell) {
  if (!world::may_be_lab(folder))
    throw base::RuntimeError(base::error::kPathNotFound, folder + " is not a lab: it has no lab.conf");
  std::unique_ptr<world::World> lab;
  wait_for("Reading the lab " + screens::to_qt(folder) + "…", [&] {
    lab = std::make_unique<world::World>(folder, dialogs, tell);
    lab->connect();
  });
  return lab;
}

/// None, with a box, for a lab that cannot be opened.
std::unique_ptr<Workplace> open(const Options& options, const QString& lab) {
  try {
    Options here = options;
    here.lab = screens::from_qt(QDir(lab).absolutePath());
    auto workplace = std::make_unique<Workplace>(here, [folder = here.lab](auto& dialogs, const auto& tell) {
      return make_lab_world(folder, dialogs, tell);
    });
    remember_lab(lab);
    return workplace;
  } catch (const std::exception& failure) {
    tell_unopened(lab, failure);
    return nullptr;
  }
}

std::optional<std::string> ask_password(platform::Dialogs& dialogs, const std::string& user) {
  std::string password = dialogs.InputBox("Password of " + user + ":", "Log On", true);
  return password.empty() ? std::nullopt : std::optional(std::move(password));
}

/// A password that was typed before takes precedence over asking for one.
std::unique_ptr<world::World> make_domain_world(const ChosenConnection& chosen, platform::Dialogs& dialogs,
                                                const std::function<void(const std::string&)>& tell) {
  const auto ask = [&dialogs, typed = chosen.password](const std::string& user) {
    return typed.empty() ? ask_password(dialogs, user) : std::optional(typed);
  };
  auto world = world::make_live_world(chosen.options, {.password = ask, .tell = tell}, dialogs);
  if (!chosen.without_domain)
    wait_for("Connecting to the domain…", [&] { world->connect(); });
  return world;
}

/// A person who chose to work without the domain waits for nothing.
ConnectionAttempt try_to_reach(const ChosenConnection& chosen, platform::Dialogs& dialogs) {
  if (chosen.without_domain)
    return {.password = chosen.password};
  live::LiveSettings settings =
      world::required_settings(world::wanted_connection(live::user_folders(), chosen.options));
  settings.password = chosen.password;
  return try_to_connect(settings, [&](const std::string& user) { return ask_password(dialogs, user); });
}

/// Works in a real domain; a failing connection is shown in its window, to be corrected or cancelled. None
/// when the person cancelled.
std::optional<int> run_on_domain(Journey& journey, screens::QtDialogs& dialogs, ChosenConnection chosen) {
  for (;;) {
    FailedConnection failed;
    try {
      const ConnectionAttempt attempt = try_to_reach(chosen, dialogs);
      if (attempt.cancelled) {
        journey.next = Next{.start_window = true};
        return 0;
      }
      failed = attempt.failed;
      chosen.password = attempt.password;
      if (failed.problem.isEmpty()) {
        Workplace workplace(journey.options, [&](auto& boxes, const auto& tell) {
          return make_domain_world(chosen, boxes, tell);
        });
        return workplace.work(journey.next);
      }
    } catch (const base::RuntimeError& failure) {
      failed.problem = screens::to_qt(failure.description());
    }
    complain(failed.problem);
    const live::Folders folders = live::user_folders();
    auto other = choose_connection(world::wanted_connection(folders, chosen.options), failed, nullptr,
                                   usual_connection_test(journey.options.database));
    if (!other)
      return std::nullopt;
    chosen = std::move(*other);
    keep(folders, chosen.options);
  }
}

std::optional<int> connect_first(Journey& journey, screens::QtDialogs& dialogs) {
  const live::Folders folders = live::user_folders();
  auto chosen = choose_connection(world::wanted_connection(folders, journey.options.connection), {}, nullptr,
                                  usual_connection_test(journey.options.database));
  if (!chosen)
    return std::nullopt;
  keep(folders, chosen->options);
  return run_on_domain(journey, dialogs, std::move(*chosen));
}

/// False, with a box, when it raises.
bool succeeds(const std::function<void()>& act) {
  try {
    act();
    return true;
  } catch (const std::exception& failure) {
    complain(screens::describe_failure(failure));
    screens::show_failure(failure);
    return false;
  }
}

/// Unreadable settings would count as unset, and accounts would be made by other rules.
bool can_read_settings() {
  return succeeds([] { world::require_settings(live::user_folders()); });
}

bool can_reach_domains() {
  return succeeds([] { static_cast<void>(world::real_domains()); });
}

int run_on_choice(Journey& journey, screens::QtDialogs& dialogs) {
  while (const auto choice = choose_start(dialogs)) {
    if (choice->lab.isEmpty()) {
      if (!can_reach_domains())
        continue;
      if (const auto code = connect_first(journey, dialogs))
        return *code;
    } else if (const auto workplace = open(journey.options, choice->lab)) {
      return workplace->work(journey.next);
    }
  }
  return 0;
}

/// A real domain is used as soon as one is named, on the command line or in the settings.
int run_without_lab(Journey& journey, screens::QtDialogs& dialogs) {
  const Options& options = journey.options;
  if (!can_read_settings())
    return kExitBadData;
  const bool named = world::says_anything(options.connection) ||
                     !world::stored_connection(live::user_folders()).domain.empty();
  if (!named)
    return run_on_choice(journey, dialogs);
  if (!can_reach_domains())
    return kExitFault;
  if (const auto code = run_on_domain(journey, dialogs, {options.connection, {}, false}))
    return *code;
  return world::says_anything(options.connection) ? kExitBadData : run_on_choice(journey, dialogs);
}

/// None when the place cannot be opened, or the person does not want to go there after all.
std::optional<int> go_to(const Next& there, Journey& journey, screens::QtDialogs& dialogs) {
  if (there.start_window)
    return std::nullopt;
  if (there.lab.isEmpty())
    return can_reach_domains() ? connect_first(journey, dialogs) : std::nullopt;
  const auto workplace = open(journey.options, there.lab);
  return workplace ? std::optional(workplace->work(journey.next)) : std::nullopt;
}

/// Where the person went from a main window. What is not opened leads to the start window.
int go_on(Journey& journey, screens::QtDialogs& dialogs, int code) {
  while (journey.next) {
    const Next there = *std::exchange(journey.next, std::nullopt);
    // What the command line said was about the first place.
    journey.options.lab.clear();
    journey.options.database.clear();
    journey.options.connection = {};
    const auto ended = go_to(there, journey, dialogs);
    code = ended ? *ended : run_on_choice(journey, dialogs);
  }
  return code;
}

int start(Journey& journey, screens::QtDialogs& dialogs) {
  if (journey.options.lab.empty())
    return run_without_lab(journey, dialogs);
  const auto workplace = open(journey.options, screens::to_qt(journey.options.lab));
  return workplace ? workplace->work(journey.next) : kExitBadData;
}

/// One that names a place says why it is not opened: the running program may be somewhere else.
int end_second_start(const SingleInstance& instance, const Options& options) {
  QGuiApplication::setApplicationDisplayName("..Duplicate instance");
  if (!instance.call_first())
    complain("it is already running, but does not answer");
  if (!options.lab.empty() || world::says_anything(options.connection))
    complain(
        "it is already running, and its window was called instead. Open the lab or the domain there: "
        "File > Open Lab… or Connect…");
  return 0;
}

}  // namespace

int run(const Options& options) {
  const SingleInstance instance;
  if (!instance.is_first())
    return end_second_start(instance, options);
  screens::QtDialogs dialogs;
  if (!windows::screen_is_wide_enough(dialogs, screen_width()))
    return kExitFault;
  if (options.command_line == "/DEBUG")
    static_cast<screens::Application*>(qApp)->on_failure = end_on_failure;
  Journey journey{.options = options, .next = std::nullopt};
  const int code = start(journey, dialogs);
  return go_on(journey, dialogs, code);
}

void end_on_failure(const std::exception& failure) {
  complain(screens::describe_failure(failure));
  screens::show_failure(failure);
  std::_Exit(kExitFault);
}

}  // namespace twk::app
