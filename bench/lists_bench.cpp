// The lists of the multi-user window over 100,000 users: what a person waits for.
#include <QLineEdit>
#include <QPushButton>

#include "bench_world.hpp"
#include "screens/application.hpp"
#include "screens/list_pane.hpp"
#include "screens/windows.hpp"

namespace {

using namespace twk;

constexpr int kUsers = 100000;

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

void measure(session::Session& session) {
  session::MultiUser& state = session.multi_user;
  for (int i = 0; i < kUsers; ++i) {
    // In no order, as a directory gives them.
    const std::string name = std::to_string((static_cast<long>(i) * 7919) % kUsers) + " finch";
    state.ListView2.add("LDAP://twk.test/CN=" + name, name, "USER");
  }
  std::unique_ptr<QDialog> window;
  const double opened = bench::seconds([&] {
    window = screens::make_window("MultiUser", session, nullptr);
    window->show();
    paint(*window);
  });
  std::printf("%-64s %9.1f ms\n", "open the window", opened * 1e3);
  auto& users = *window->findChild<screens::ListPane*>("ListView2");
  auto& selection = *window->findChild<screens::ListPane*>("ListView1");
  auto& filter = *window->findChild<QLineEdit*>("ListView2_filter");
  print(*window, "filter by a digit (about half stay)", [&] { filter.setText("7"); });
  print(*window, "filter by one more", [&] { filter.setText("77"); });
  print(*window, "filter off", [&] { filter.clear(); });
  print(*window, "sort the other way", [&] { users.sortByColumn(0, Qt::DescendingOrder); });
  print(*window, "select all", [&] { users.selectAll(); });
  print(*window, "filter with all selected", [&] { filter.setText("7"); });
  print(*window, "filter off again", [&] { filter.clear(); });
  print(*window, "select all", [&] { users.selectAll(); });
  print(*window, "take all into the selection",
        [&] { window->findChild<QPushButton*>("Command1")->click(); });
  print(*window, "select all of the selection", [&] { selection.selectAll(); });
  print(*window, "give all back", [&] { window->findChild<QPushButton*>("Command2")->click(); });
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
  plan.users = 0;
  lab::create_lab(folder.path() / "lab", plan);
  lab::Lab lab(folder.path() / "lab", [](const std::string&) {});
  bench::NobodyThere dialogs;
  session::Session session(lab.platform(dialogs), "", lab.database_path());
  std::printf("the lists of the multi-user window over %d users\n", kUsers);
  measure(session);
  return 0;
}
