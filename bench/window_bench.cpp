// The main window over a domain of 100,000 users and 5,000 groups: what a person waits for.
#include <QLineEdit>
#include <QScrollBar>

#include "bench_world.hpp"
#include "records/records.hpp"
#include "screens/main/main_window.hpp"
#include "screens/widgets/application.hpp"
#include "screens/widgets/list_pane.hpp"
#include "windows/account/details_tab.hpp"
#include "windows/foresight.hpp"
#include "windows/start_up.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/group_windows.hpp"
#include "windows/state/new_user.hpp"
#include "world/sample_lab.hpp"

namespace {

using namespace twk;

constexpr std::size_t kUsers = 100000;
constexpr std::size_t kGroups = 5000;
constexpr std::size_t kUnits = 10;

/// Lets the toolkit do all that waits: layout, queued calls, and to paint what changed.
void paint() {
  for (int i = 0; i < 3; ++i)
    QCoreApplication::processEvents();
}

struct Longest {
  double mean = 0;
  double longest = 0;
};

/// Seconds of each of many small things that a person does, painted.
Longest each(int times, const std::function<void(int)>& act) {
  Longest result;
  for (int i = 0; i < times; ++i) {
    const double took = bench::seconds([&] {
      act(i);
      paint();
    });
    result.mean += took / times;
    result.longest = std::max(result.longest, took);
  }
  return result;
}

void print(const char* what, double seconds) {
  std::printf("%-64s %9.1f ms\n", what, seconds * 1e3);
}

void print(const char* what, const Longest& figures) {
  std::printf("%-64s %9.1f ms, longest %.1f ms\n", what, figures.mean * 1e3, figures.longest * 1e3);
}

controls::TreeNode* largest_unit(windows::Desktop& session) {
  controls::TreeNode* const root = session.form1.TreeView1.first();
  for (controls::TreeNode* const node : root->children) {
    if (node->image == "OU" && node->text != "Users")
      return node;
  }
  return nullptr;
}

/// What the New User tab says of a user before it is made: first with a copy of the loaded domain, then for
/// each letter.
void measure_foresight(windows::Desktop& session, controls::TreeNode& unit) {
  session.form1.TreeView1.select(&unit);
  session.form1.nutemplate.text = records::padded_template_name("Staff");
  session.form1.NUsitename.text = std::string("Head Office");
  session.form1.strFirst.text = std::string("Ada");
  session.form1.strLast.text = std::string("Marsh");
  paint();
  windows::forget_foresight(session);
  print("foresee a new user, the first time", bench::seconds([&] { windows::foresee_new_user(session); }));
  print("  after another letter", each(20, [&](int) {
          session.form1.strLast.text = session.form1.strLast.text.get() + "x";
          windows::foresee_new_user(session);
        }));
  std::printf("  %s\n", session.new_user.foresight.verdict.caption.get().c_str());
}

void measure(windows::Desktop& session) {
  print("load the domain", bench::seconds([&] { windows::start_session(session); }));
  std::unique_ptr<screens::MainWindow> window;
  print("from the load's end to the painted window", bench::seconds([&] {
          window = std::make_unique<screens::MainWindow>(session);
          window->show();
          paint();
        }));

  print("paint the whole window", each(50, [&](int) { window->repaint(); }));

  controls::TreeNode* const unit = largest_unit(session);
  screens::TreePane& tree = window->tree();
  print("open a unit with all its users", bench::seconds([&] {
          tree.expand(tree.index_of(*unit));
          paint();
        }));
  std::printf("%-64s %9zu\n", "  users in it", unit->children.size());
  print("scroll the tree by a page", each(200, [&](int i) { tree.verticalScrollBar()->setValue(i * 20); }));

  session.form1.SSTab1 = windows::tab::kNewUser;
  auto* const first = window->findChild<QLineEdit*>("strFirst");
  print("type a letter into a name", each(50, [&](int) { first->insert("x"); }));

  measure_foresight(session, *unit);

  controls::TreeNode& user = *unit->children.back();
  print("show the details of a user with its groups", bench::seconds([&] {
          windows::show_user_details(session, user);
          paint();
        }));
  auto* const groups = window->findChild<screens::ListPane*>("ListView3");
  print("filter the groups by one more letter",
        each(6, [&](int i) { groups->set_filter(QString("finance").left(i + 1)); }));
  print("open the window of the groups, the first time", bench::seconds([&] {
          session.groups.visible = true;
          paint();
        }));
  session.groups.visible = false;
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const screens::Application application(argc, argv);
  bench::Folder folder;
  lab::LabPlan plan;
  plan.users = kUsers;
  plan.groups = kGroups;
  plan.ous = kUnits;
  bench::NobodyThere dialogs;
  world::make_sample_lab(folder.path() / "lab", plan, dialogs);
  lab::Lab lab(folder.path() / "lab", [](const std::string&) {});
  const platform::Platform services = lab.platform(dialogs);
  bench::set(services, "Setup", "Domain", "twk.test");
  std::string database = lab.database_path();
  database.pop_back();
  windows::Desktop session(services, "", database);
  std::printf("a window over %zu users and %zu groups\n", kUsers, kGroups);
  measure(session);
  return 0;
}
