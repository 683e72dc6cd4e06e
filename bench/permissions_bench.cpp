// Taking a tree over, owner and list of every file, at 2,000 and at 20,000 files: a file must not cost more
// in the larger one.
#include "bench_world.hpp"
#include "resources/file_permission.hpp"
#include "windows/start_up.hpp"

namespace {

using namespace twk;

constexpr int kFilesAFolder = 100;

/// "D:\Tree" with so many files, a hundred a folder, ten folders in each.
void make_tree(const std::filesystem::path& top, int files) {
  for (int folder = 0; folder * kFilesAFolder < files; ++folder) {
    const std::filesystem::path path = top / std::to_string(folder / 10) / std::to_string(folder);
    std::filesystem::create_directories(path);
    for (int file = 0; file < kFilesAFolder; ++file)
      std::ofstream(path / ("file" + std::to_string(file) + ".txt"));
  }
}

struct Figures {
  double take_over = 0;  ///< milliseconds a file
  double again = 0;
  double one_folder = 0;  ///< milliseconds
};

Figures measure(int files) {
  bench::Folder folder;
  lab::LabPlan plan;
  plan.users = 100;
  plan.ous = 1;
  plan.groups = 5;
  lab::create_lab(folder.path() / "lab", plan);
  make_tree(folder.path() / "lab/servers/FS1/D/Tree", files);
  lab::Lab lab(folder.path() / "lab", [](const std::string&) {});
  bench::NobodyThere dialogs;
  windows::Desktop session(lab.platform(dialogs), "", lab.database_path());

  std::string server;
  const std::string top = "\\\\FS1\\D$\\Tree";
  const resources::FilePermission tree{
      .account = "Administrators", .mode = 0, .replaceAll = true, .recurse = true};
  const auto take_over = [&] {
    return bench::seconds([&] {
             if (!resources::SetFilePermission(session, server, top, tree))
               std::abort();
           }) /
           files * 1e3;
  };
  Figures figures;
  figures.take_over = take_over();
  figures.again = take_over();
  figures.one_folder =
      bench::seconds([&] {
        resources::SetFilePermission(session, server, top + "\\0", {.account = "Administrators"});
      }) *
      1e3;
  return figures;
}

void print(const char* what, double small, double large) {
  std::printf("%-46s %10.3f %10.3f ms %6.2f\n", what, small, large, large / small);
}

}  // namespace

int main() {
  const Figures small = measure(2000);
  const Figures large = measure(20000);
  std::printf("%-46s %10s %10s    %6s\n", "permissions on a tree of files", "2,000", "20,000", "ratio");
  print("take it over, a file", small.take_over, large.take_over);
  print("take it over again, a file", small.again, large.again);
  print("one folder of it", small.one_folder, large.one_folder);
  return 0;
}
