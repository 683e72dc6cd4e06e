#include <QtWidgets>
#include <cstdio>
#include <future>
#include <memory>
#include <stdexcept>

#include "app/connecting_window.hpp"
#include "app/connection_window.hpp"
#include "app/start_window.hpp"
#include "controls/tree_view.hpp"
#include "directory/loading/ad_load.hpp"
#include "directory/tree/tree.hpp"
#include "records/records.hpp"
#include "screens/help/help_topics.hpp"
#include "screens/main/main_window.hpp"
#include "screens/program/program_windows.hpp"
#include "screens/program/qt_dialogs.hpp"
#include "screens/program/windows.hpp"
#include "screens/widgets/application.hpp"
#include "screens/widgets/text.hpp"
#include "support/temporary_directory.hpp"
#include "windows/account/details_tab.hpp"
#include "windows/account/popup_commands.hpp"
#include "windows/account/unsaved.hpp"
#include "windows/create_user.hpp"
#include "windows/csv_layout.hpp"
#include "windows/editors/custom_properties.hpp"
#include "windows/editors/edit_properties.hpp"
#include "windows/editors/logon_hours.hpp"
#include "windows/editors/permissions_window.hpp"
#include "windows/groups/copy_group.hpp"
#include "windows/groups/groups_window.hpp"
#include "windows/import_options.hpp"
#include "windows/log_window.hpp"
#include "windows/mail/search_mail.hpp"
#include "windows/main_window.hpp"
#include "windows/manage_ou.hpp"
#include "windows/multi_user/delete_options.hpp"
#include "windows/multi_user/delete_tab.hpp"
#include "windows/multi_user/multi_user_window.hpp"
#include "windows/multi_user/properties_tab.hpp"
#include "windows/share_points_form.hpp"
#include "windows/site_tab.hpp"
#include "windows/start_up.hpp"
#include "windows/state/account_windows.hpp"
#include "windows/state/ad_properties.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/group_windows.hpp"
#include "windows/state/import_windows.hpp"
#include "windows/state/multi_user.hpp"
#include "windows/state/whereabouts.hpp"
#include "windows/template_tab.hpp"
#include "windows/tree/ad_options.hpp"
#include "windows/tree/find_user.hpp"
#include "world/sample_lab.hpp"

/// Saves a picture of each tab and window of the program, over a sample lab: for looking at what was changed,
/// and for the documentation.
///
///     tarnwick_pictures FOLDER [--dark|--kde-dark] [--size WIDTHxHEIGHT]
namespace twk::pictures {
namespace {

constexpr const char* kNewStarters = "OU=New Starters,DC=twk,DC=test";

struct Person {
  const char* first;
  const char* last;
};
constexpr Person kPeople[] = {{"Ada", "Marsh"}, {"Ben", "Okafor"}, {"Clara", "Novak"}};

struct Colours {
  QColor window;
  QColor base;
  QColor text;
  QColor highlight;
  QColor link;
  QColor placeholder;
};
const Colours kDark = {{45, 45, 48},   {30, 30, 32},   {235, 235, 235},
                       {50, 110, 190}, {90, 160, 240}, {150, 150, 150}};
/// Those of the dark theme of KDE, which leaves black for placeholders.
const Colours kKdeDark = {{49, 54, 59},   {35, 38, 41},   {252, 252, 252},
                          {61, 174, 233}, {29, 153, 243}, {0, 0, 0, 128}};

void use_colours(const Colours& colours) {
  QPalette dark;
  for (const auto& [role, colour] : std::initializer_list<std::pair<QPalette::ColorRole, QColor>>{
           {QPalette::Window, colours.window},
           {QPalette::WindowText, colours.text},
           {QPalette::Base, colours.base},
           {QPalette::AlternateBase, colours.window},
           {QPalette::Text, colours.text},
           {QPalette::Button, colours.window},
           {QPalette::ButtonText, colours.text},
           {QPalette::ToolTipBase, colours.base},
           {QPalette::ToolTipText, colours.text},
           {QPalette::PlaceholderText, colours.placeholder},
           {QPalette::Link, colours.link},
           {QPalette::Highlight, colours.highlight},
           {QPalette::HighlightedText, Qt::white}})
    dark.setColor(role, colour);
  for (const auto role : {QPalette::Text, QPalette::ButtonText, QPalette::WindowText})
    dark.setColor(QPalette::Disabled, role, QColor(130, 130, 130));
  QApplication::setPalette(dark);
}

/// Opens what the pictures show: an OU with users in it, a template, a log with rows.
void fill(windows::Desktop& session) {
  windows::Form1& form = session.form1;
  for (const Person& person : kPeople) {
    controls::TreeNode* const unit = form.TreeView1.find(kNewStarters);
    form.TreeView1.select(unit);
    directory::TreeView1_Expand(session, *unit);
    form.nutemplate.text = records::padded_template_name("Staff");
    form.NUsitename.text = std::string("Head Office");
    form.strFirst.text = person.first;
    form.strLast.text = person.last;
    form.UserID_Box.text = std::string();
    windows::CreateUser_Click(session);
  }
  windows::show_user_details(session, *form.TreeView1.find(kNewStarters)->children.back());
  form.SSTab1 = windows::tab::kNewUser;
  form.ListView2.select(&form.ListView2.at(0));
  windows::ListView2_Click(session);
  form.nutemplate.text = records::padded_template_name("Staff");
  form.NUsitename.text = std::string("Head Office");
  form.templatelst.text = records::padded_template_name("Staff");
  windows::templatelst_Click(session);
}

/// A window by its name, and the routine that fills it and shows it.
struct Window {
  const char* name;
  std::function<void(windows::Desktop& session)> open;
};

/// Opens a window as its button does.
template <typename Routine>
std::function<void(windows::Desktop&)> by(Routine routine) {
  return [routine](windows::Desktop& session) { routine(session); };
}

/// The window for many users at a tab, with users to choose from and a selection of which one was deleted.
std::function<void(windows::Desktop&)> multi_user(int tab) {
  return [tab](windows::Desktop& session) {
    windows::MultiUser& window = session.multi_user;
    if (window.ListView1.empty()) {
      window.ListView2.clear();
      directory::Load_AD_Users(session, "LDAP://" + session.DomainName, true, "subtree", "",
                               directory::UserList::kSelection);
      for (int i = 0; i < 3; ++i)
        controls::move_row(window.ListView2, window.ListView2.at(0), window.ListView1);
      controls::move_row(window.ListView3, window.ListView3.at(0), window.ListView1);
      controls::move_row(window.ListView4, window.ListView4.at(0), window.ListView1);
      window.ListView1.set_ghosted(window.ListView1.at(1), true);
      window.Label3.caption = std::string("Delete Completed, Check log for errors");
    }
    window.SSTab1 = tab;
    windows::show_multi_user(session);
  };
}

/// The tab of properties with one that is chosen.
std::function<void(windows::Desktop&)> with_property(const char* name) {
  return [name](windows::Desktop& session) {
    windows::prepare_properties(session);
    session.ad_properties.AD_Properties.text = std::string(name);
    windows::AD_Properties_Click(session);
    multi_user(windows::multi_tab::kProperties)(session);
  };
}

std::vector<Window> windows() {
  const auto shown = [](const char* name, void (*load)(windows::Desktop&)) {
    return [name, load](windows::Desktop& session) {
      load(session);
      session.platform.dialogs.show_modal(name);
    };
  };
  return {{"ad-options", shown("frmADOptions", windows::frmADOptions_Load)},
          {"csv-import",
           [](windows::Desktop& session) {
             windows::load_csv_layout(session, TWK_SOURCE_DIR "/samples/new-starters.csv");
             session.platform.dialogs.show_modal("CSV_Import");
           }},
          {"csv-import-headings",
           [](windows::Desktop& session) {
             windows::load_csv_layout(session, TWK_SOURCE_DIR "/samples/starters-semicolon.csv");
             session.csv_import.chkCsv.value = 1;
             windows::chkCsv_Click(session);
             session.platform.dialogs.show_modal("CSV_Import");
           }},
          {"custom", by(windows::show_custom)},
          {"edit-properties",
           [](windows::Desktop& session) {
             controls::ListView& rows = session.form1.ListView7;
             rows.select(&rows.at(0));
             windows::Listviewmnu_Edit(session, 0);
           }},
          {"find-user", by(windows::Find_User)},
          {"group-add", by(windows::Groupsfrm_Add_Group_Click)},
          {"import-options", shown("ImportGrps", windows::ImportGrps_Load)},
          {"log", [](windows::Desktop& session) { windows::show_block_of(session, session.log_rows.at(0)); }},
          {"logon-hours", by(windows::LogonHours_Click)},
          {"multi-user", by(windows::show_multi_user)},
          {"multi-user-delete", multi_user(windows::multi_tab::kDelete)},
          {"multi-user-move", multi_user(windows::multi_tab::kMove)},
          {"multi-user-accounts", multi_user(windows::multi_tab::kAccounts)},
          {"multi-user-groups", multi_user(windows::multi_tab::kGroups)},
          {"multi-user-properties", with_property("otherTelephone")},
          {"multi-user-property-time", with_property("WTSTimeoutIdle")},
          {"permissions", by(windows::Set_Security_Click)},
          {"share-permissions", by(windows::Sharepermissions_Click)},
          {"run-preview",
           [](windows::Desktop& session) {
             windows::MultiUser& window = session.multi_user;
             window.Delete_NT_Account.value = 1;
             window.Delete_Data.value = 1;
             windows::show_delete_options(session);
             windows::Del_User_Click(session);
           }},
          {"leaving",
           [](windows::Desktop& session) {
             session.form1.UM_Office.text = std::string("London");
             windows::may_leave_details(session);
           }},
          {"rename-user",
           [](windows::Desktop& session) {
             session.form1.TreeView1.select(session.form1.TreeView1.find(kNewStarters)->children.front());
             windows::Rename_User(session);
           }},
          {"rename-nt",
           [](windows::Desktop& session) {
             session.rename_nt.User_Logon.text = std::string("Ada.Marsh");
             session.rename_nt.Full_Name.text = std::string("Ada Marsh");
             session.platform.dialogs.show_modal("Rename_NT");
           }},
          {"wks-profile",
           [](windows::Desktop& session) {
             windows::Delete_WKS_Profile(session, *session.form1.TreeView1.selected());
             session.form1.TreeView1.select(session.form1.TreeView1.find(kNewStarters));
           }},
          {"search-mailbox",
           [](windows::Desktop& session) {
             mail::MailboxDeletion request;
             request.SamName = "Ada.Marsh";
             request.place = {"EX55", "Head Office", "Tarnwick"};
             windows::choose_mailbox(session, request);
           }},
          {"select-ou", by(windows::Manage_OU)},
          {"share-points", by(windows::btnSharePoints_Click)},
          {"variables", by(windows::Variables)}};
}

class Album {
 public:
  explicit Album(const QString& folder) : folder_(folder) {
    if (!QDir().mkpath(folder))
      throw std::runtime_error("cannot make the folder " + screens::from_qt(folder));
  }

  void save(QWidget& widget, const QString& name) {
    // What is shown after a pause is there by then, and laid out.
    constexpr int kPause = 400;  // milliseconds
    QEventLoop loop;
    QTimer::singleShot(kPause, &loop, &QEventLoop::quit);
    loop.exec();
    const QString path = folder_ + "/" + name.toLower() + ".png";
    if (!widget.grab().save(path))
      throw std::runtime_error("cannot write " + screens::from_qt(path));
  }
  /// A window that only comes back when it is closed: taken, and closed.
  void save_modal(const QString& name, const std::function<void()>& show) {
    bool taken = false;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
      if (QWidget* const modal = QApplication::activeModalWidget()) {
        timer.stop();
        save(*modal, name);
        taken = true;
        modal->close();
      }
    });
    timer.start(50);
    show();
    if (!taken)
      throw std::runtime_error("no window for " + screens::from_qt(name));
  }

 private:
  QString folder_;
};

void save_tabs(Album& album, screens::MainWindow& window) {
  for (int tab = 0; tab < window.tabs().count(); ++tab) {
    window.tabs().setCurrentIndex(tab);
    if (tab == windows::tab::kSetup)
      continue;
    album.save(window, "tab-" + screens::help_topic(tab, 0));
  }
  for (int inner = 0; inner < window.setup_tabs().count(); ++inner) {
    window.setup_tabs().setCurrentIndex(inner);
    album.save(window, "tab-" + screens::help_topic(windows::tab::kSetup, inner));
  }
  window.tabs().setCurrentIndex(0);
}

void save_windows(Album& album, windows::Desktop& session) {
  windows::EditTemplate(session);
  session.form1.TreeView1.select(session.form1.TreeView1.find(kNewStarters));
  for (const Window& shown : windows())
    album.save_modal(QString("window-") + shown.name, [&] { shown.open(session); });
}

/// In the middle of a deletion.
void save_progress(Album& album, screens::MainWindow& window, windows::Desktop& session) {
  windows::FileProgress& state = session.file_progress;
  state.text.caption =
      std::string("Deleting \\\\FS1\\D$\\Profiles\\Ada.Marsh: 1312 of 4711 files, 46.2 MB of 160.4 MB");
  state.done.value = 28;
  state.visible = true;
  album.save(*window.findChild<QDialog*>("FileProgress"), "window-file-progress");
  state.visible = false;
}

void choose_row(controls::ListView& list, const char* name) {
  list.select(&list.at(list.place_of(*list.find_text(name).front())));
}

/// The groups window before a group is shown and with one, and a copy that has ended.
void save_groups(Album& album, screens::MainWindow& window, windows::Desktop& session) {
  windows::Groupsfrm& state = session.groups;
  windows::Toolbar1_ButtonClick(session, "Groups");
  auto* const shown = window.findChild<QDialog*>("Groupsfrm");
  album.save(*shown, "window-groups-first");
  choose_row(state.ListView1, "Staff");
  windows::Groupsfrm_Group_Details_Click(session);
  for (const std::size_t place : {std::size_t{1}, std::size_t{3}})
    state.NotMembers.set_selected(state.NotMembers.at(place), true);
  windows::Groupsfrm_NotMembers_Click(session);
  album.save(*shown, "window-groups");
  album.save_modal("window-copy-group", [&] {
    windows::frmCopy_Group_Form_Load(session);
    choose_row(session.copy_group.ImageCombo1, "Staff");
    choose_row(session.copy_group.ImageCombo2, "Domain Guests");
    QTimer::singleShot(0, [] {
      if (auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
        box->button(QMessageBox::Yes)->click();
    });
    windows::frmCopy_Group_btnCopy_Group_Click(session);
    session.platform.dialogs.show_modal("frmCopy_Group");
  });
  windows::Groupsfrm_ExitButton_Click(session);
}

/// A connection that was tried and refused.
void show_connection() {
  using live::StepOutcome;
  const std::vector<live::CheckStep> steps = {
      {"name look-up", StepOutcome::kPassed, "dc1.corp.test is 192.0.2.17"},
      {"port", StepOutcome::kPassed, "port 389 answers"},
      {"TLS", StepOutcome::kSkipped, "not used: the ticket seals the connection"},
      {"ticket", StepOutcome::kPassed, "jo@CORP.TEST, until 2026-11-25 18:47"},
      {"bind", StepOutcome::kPassed, "logged on as jo@CORP.TEST"},
      {"rights", StepOutcome::kWarning,
       "may read the domain, but has too few rights to create users in CN=Users,DC=corp,DC=test"}};
  QTimer::singleShot(0, [] {
    if (QWidget* const window = QApplication::activeModalWidget())
      window->findChild<QPushButton*>("test")->click();
  });
  app::choose_connection(
      {.domain = "corp.test", .method = "ticket"},
      {.problem =
           "The connection failed at the step \"ticket\": The Kerberos ticket of jo@CORP.TEST ended at "
           "2026-11-25 08:47. Renew it with `kinit`",
       .steps = {}},
      nullptr, [&](const auto&, const auto&, const auto& tell) {
        for (const live::CheckStep& step : steps)
          tell(step);
        return steps;
      });
}

/// A server that is silent after its port has answered.
void save_connecting(Album& album) {
  const auto answer = std::make_shared<std::promise<void>>();
  QTimer::singleShot(1200, [&album] {
    for (QWidget* const window : QApplication::topLevelWidgets()) {
      if (window->objectName() != "connecting")
        continue;
      album.save(*window, "connecting");
      window->close();
    }
  });
  live::LiveSettings settings;
  settings.domain = "corp.test";
  app::try_to_connect(settings, {}, [answer](const auto&, const auto&, const auto& tell) {
    tell({"name look-up", live::StepOutcome::kPassed, "dc1.corp.test is 192.0.2.17"});
    tell({"port", live::StepOutcome::kPassed, "port 636 answers"});
    answer->get_future().wait();
    return std::vector<live::CheckStep>();
  });
  answer->set_value();
}

void save_program_windows(Album& album, screens::MainWindow& window, windows::Desktop& session,
                          platform::Dialogs& dialogs) {
  album.save_modal("start", [&] { app::choose_start(dialogs); });
  album.save_modal("connection", show_connection);
  save_connecting(album);
  album.save_modal("new-lab", [&] { app::make_sample_lab(dialogs, &window); });
  album.save_modal("tip", [&] { screens::show_tip(&window, session); });
  album.save_modal("about", [&] { screens::show_about(&window); });
  screens::show_help(&window, "names");
  auto& help = *window.findChild<QMainWindow*>("frmHelp");
  album.save(help, "help");
  auto* const contents = help.findChild<QListWidget*>("contents");
  contents->setCurrentRow(contents->count() - 1);
  album.save(help, "help-guide");
  const auto splash = screens::make_splash(session);
  session.splash.Splash_TxT.caption = "Retrieving Domain Data...";
  session.splash.visible = true;
  album.save(*splash, "splash");
  session.splash.visible = false;
}

void take(const QString& folder, const QSize& size) {
  const test::TemporaryDirectory home;
  screens::QtDialogs dialogs;
  world::make_sample_lab(home / "lab", {}, dialogs);
  app::remember_lab(screens::to_qt(home / "lab"));
  world::World world(home / "lab", dialogs, [](const std::string&) {});
  windows::Desktop session(world.services(), "", world.program_directory());
  dialogs.set_session(session);
  windows::start_session(session);
  session.whereabouts.kind = windows::Whereabouts::Kind::kLab;
  session.whereabouts.folder = "/home/jo/lab";
  fill(session);
  screens::MainWindow window(session);
  // On a screen of few points, as at twice the size, what fits is what a person sees.
  window.resize(size.boundedTo(window.screen()->availableSize()));
  window.show();
  Album album(folder);
  save_tabs(album, window);
  save_windows(album, session);
  save_progress(album, window, session);
  save_groups(album, window, session);
  save_program_windows(album, window, session, dialogs);
}

int run() {
  QCommandLineParser parser;
  parser.addPositionalArgument("FOLDER", "Where the pictures go");
  parser.addOption({"dark", "In dark colours"});
  parser.addOption({"kde-dark", "In those of the dark theme of KDE"});
  parser.addOption({"size", "Of the main window", "WIDTHxHEIGHT", "1024x740"});
  parser.process(QCoreApplication::arguments());
  const QStringList folders = parser.positionalArguments();
  const QStringList size = parser.value("size").split('x');
  if (folders.size() != 1 || size.size() != 2) {
    std::fputs("usage: tarnwick_pictures FOLDER [--dark|--kde-dark] [--size WIDTHxHEIGHT]\n", stderr);
    return 64;
  }
  QApplication::setStyle("Fusion");
  if (parser.isSet("dark") || parser.isSet("kde-dark"))
    use_colours(parser.isSet("dark") ? kDark : kKdeDark);
  take(folders.front(), {size[0].toInt(), size[1].toInt()});
  return 0;
}

}  // namespace
}  // namespace twk::pictures

int main(int argc, char** argv) {
  // The person's own settings stay as they are.
  const twk::test::TemporaryDirectory settings;
  qputenv("XDG_CONFIG_HOME", settings.path().c_str());
  twk::screens::Application application(argc, argv);
  try {
    return twk::pictures::run();
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "tarnwick_pictures: %s\n", failure.what());
    return 70;
  }
}
