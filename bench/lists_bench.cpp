// The lists of the multi-user window over 100,000 users: what a person waits for.
#include <QPushButton>

#include "bench_world.hpp"
#include "directory/loading/ad_load.hpp"
#include "screens/program/qt_dialogs.hpp"
#include "screens/program/windows.hpp"
#include "screens/widgets/application.hpp"
#include "screens/widgets/list_pane.hpp"
#include "windows/start_up.hpp"
#include "windows/state/multi_user.hpp"

namespace {

using namespace twk;

constexpr std::size_t kUsers = 100000;

void paint(QWidget& widget) {
  for (int i = 0; i < 3; ++i)
    QCoreApplication::processEvents();
  widget.repaint();
}

void print(QWidget& widget, const char* what, const std::function<void()>& act) {
  const double taken = bench::seconds([&] {
    act();
    paint(widget);
  });
  std::printf("%-64s %9.1f ms\n", what, taken * 1e3);
  std::fflush(stdout);
}

void measure(windows::Desktop& session) {
  windows::MultiUser& state = session.multi_user;
  windows::start_session(session);
  directory::Load_AD_Users(session, "LDAP://twk.test", true, "subtree", "", directory::UserList::kSelection);
  std::unique_ptr<QDialog> window;
  const double opened = bench::seconds([&] {
    window = screens::make_window("MultiUser", session, nullptr);
    window->show();
    paint(*window);
  });
  std::printf("%-64s %9.1f ms\n", "open the window", opened * 1e3);
  auto& users = *window->findChild<screens::ListPane*>("ListView2");
  auto& selection = *window->findChild<screens::ListPane*>("ListView1");
  print(*window, "filter by a letter", [&] { users.set_filter("a"); });
  print(*window, "filter by one more", [&] { users.set_filter("an"); });
  print(*window, "filter off", [&] { users.set_filter({}); });
  print(*window, "sort the other way", [&] { users.sortByColumn(0, Qt::DescendingOrder); });
  print(*window, "select all", [&] { users.selectAll(); });
  print(*window, "filter with all selected", [&] { users.set_filter("a"); });
  print(*window, "filter off again", [&] { users.set_filter({}); });
  print(*window, "select all", [&] { users.selectAll(); });
  print(*window, "take all into the selection",
        [&] { window->findChild<QPushButton*>("Command1")->click(); });
  print(*window, "select all of the selection", [&] { selection.selectAll(); });
  print(*window, "give all back", [&] { window->findChild<QPushButton*>("Command2")->click(); });
  state.SSTab1 = windows::multi_tab::kAccounts;
  state.LockAcc.index = windows::lock_acc::kFindLocked;
  print(*window, "search all users for locked accounts",
        [&] { window->findChild<QPushButton*>("btnGo")->click(); });
  print(*window, "take one into the selection", [&] {
    users.setCurrentIndex(users.model()->index(50000, 0));
    window->findChild<QPushButton*>("Command1")->click();
  });
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const screens::Application application(argc, argv);
  bench::Folder folder;
  lab::LabPlan plan;
  plan.users = kUsers;
  lab::create_lab(folder.path() / "lab", plan);
  lab::Lab lab(folder.path() / "lab", [](const std::string&) {});
  screens::QtDialogs dialogs;
  const platform::Platform services = lab.platform(dialogs);
  bench::set(services, "Setup", "Domain", "twk.test");
  windows::Desktop session(services, "", lab.database_path());
  dialogs.set_session(session);
  std::printf("the lists of the multi-user window over %zu users\n", kUsers);
  measure(session);
  return 0;
}
