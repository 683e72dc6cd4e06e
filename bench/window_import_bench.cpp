// An import in the main window, painted, beside the same import without a window.
#include <algorithm>
#include <cstdlib>

#include "bench_world.hpp"
#include "controls/tree_view.hpp"
#include "directory/tree/tree.hpp"
#include "records/records.hpp"
#include "screens/main/main_window.hpp"
#include "screens/program/qt_dialogs.hpp"
#include "screens/widgets/application.hpp"
#include "windows/import.hpp"
#include "windows/start_up.hpp"
#include "windows/state/form1.hpp"
#include "world/sample_lab.hpp"

namespace {

using namespace twk;

constexpr int kLines = 1000;
constexpr int kRuns = 2;

std::string write_lines(const std::filesystem::path& folder, int first) {
  const std::filesystem::path path = folder / ("lines" + std::to_string(first) + ".csv");
  std::ofstream lines(path);
  for (int i = first; i < first + kLines; ++i)
    lines << "U" << i << ",,Name" << i << "\n";
  return path.string();
}

void start(windows::Desktop& session) {
  windows::start_session(session);
  controls::TreeView& tree = session.form1.TreeView1;
  controls::TreeNode* const unit = tree.find("OU=New Starters,DC=twk,DC=test");
  directory::TreeView1_Expand(session, *unit);
  tree.select(unit);
  session.form1.nutemplate.text = records::padded_template_name("Staff");
  session.form1.NUsitename.text = std::string("Head Office");
}

/// By the clock on the wall: a window is painted so many times a second, however fast users are made.
double import(windows::Desktop& session, const std::string& path) {
  const double taken = bench::seconds([&] { windows::Import_File(session, path); });
  if (session.import.ImportAddedCount != kLines) {
    std::fprintf(stderr, "only %d of %d users were created\n", session.import.ImportAddedCount, kLines);
    std::exit(1);
  }
  return taken;
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const screens::Application application(argc, argv);
  bench::Folder folder;
  bench::NobodyThere nobody;
  lab::LabPlan plan;
  plan.users = 1000;
  world::make_sample_lab(folder.path() / "lab", plan, nobody);
  lab::Lab lab(folder.path() / "lab", [](const std::string&) {});
  bench::set(lab.platform(nobody), "Setup", "Domain", "twk.test");
  std::string database = lab.database_path();
  database.pop_back();

  screens::QtDialogs dialogs;
  windows::Desktop shown(lab.platform(dialogs), "", database);
  dialogs.set_session(shown);
  start(shown);
  screens::MainWindow window(shown);
  window.show();
  windows::Desktop unseen(lab.platform(nobody), "", database);
  start(unseen);

  double painted = 0;
  double plain = 0;
  for (int run = 0; run < kRuns; ++run) {
    const double first = import(unseen, write_lines(folder.path(), 2 * run * kLines));
    const double second = import(shown, write_lines(folder.path(), (2 * run + 1) * kLines));
    plain = run == 0 ? first : std::min(plain, first);
    painted = run == 0 ? second : std::min(painted, second);
  }
  std::printf("import of %d lines: %6.0f users a second, in the window %6.0f, %.2f times as fast\n", kLines,
              kLines / plain, kLines / painted, plain / painted);
  return 0;
}
