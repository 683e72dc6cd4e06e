#include "lifecycle/trees/tree_copy.hpp"

#include <gmock/gmock.h>

#include "base/errors.hpp"
#include "local/posix_files.hpp"
#include "support/temporary_directory.hpp"

namespace twk::lifecycle {
namespace {

namespace fs = std::filesystem;

struct Trees {
  Trees() {
    fs::create_directories(folder.path() / "from/mail");
    fs::create_directories(folder.path() / "to");
    test::put_file(folder / "outside", "kept");
    test::put_file(folder / "from/mail/a", "one");
  }
  void copy() {
    tree = read_tree(files, from);
    copy_tree(files, tree, to, plan_copy(files, tree, to), {});
  }
  void link_in_place_of_mail() const {
    fs::remove_all(folder.path() / "from/mail");
    fs::create_directory_symlink(folder.path(), folder.path() / "from/mail");
  }

  test::TemporaryDirectory folder;
  local::PosixFiles files;
  std::string from = folder / "from";
  std::string to = folder / "to";
  Tree tree;
};

TEST(TreeCopy, WhatChangedSinceItWasReadIsKeptAndReported) {
  const struct {
    const char* told;
    std::function<void(Trees&)> step;  ///< its last action is refused
  } cases[] = {
      {"is a link, which is not copied",
       [](Trees& t) {
         t.link_in_place_of_mail();
         t.copy();
       }},
      {"is no longer a folder",
       [](Trees& t) {
         t.tree = read_tree(t.files, t.from);
         t.link_in_place_of_mail();
         remove_tree(t.files, t.tree, {});
       }},
      {"a changed after it was copied, and is kept",
       [](Trees& t) {
         t.copy();
         test::put_file(t.folder / "from/mail/a", "longer");
         remove_copied(t.files, t.tree, t.to);
       }},
      {"a is not complete in ",
       [](Trees& t) {
         t.copy();
         test::put_file(t.folder / "to/mail/a", "on");
         remove_copied(t.files, t.tree, t.to);
       }},
      {"holds a name with a backslash: b\\c",
       [](Trees& t) {
         test::put_file(t.folder / "from/b\\c", "x");
         read_tree(t.files, t.from);
       }},
      {"are the same folder",
       [](Trees& t) {
         fs::create_directory_symlink(t.from, t.folder.path() / "again");
         require_other_folder(t.files, t.from, t.folder / "again");
       }},
      {"a already exists and is a different file",
       [](Trees& t) {
         fs::create_directories(t.folder.path() / "to/mail");
         test::put_file(t.folder / "to/mail/a", "another");
         t.copy();
       }},
  };
  for (const auto& one : cases) {
    Trees trees;
    base::Trap trap;
    EXPECT_FALSE(trap([&] { one.step(trees); })) << one.told;
    EXPECT_THAT(trap.description(), testing::HasSubstr(one.told));
    EXPECT_TRUE(fs::exists(trees.folder.path() / "from/mail")) << one.told;
    EXPECT_EQ(test::get_file(trees.folder / "outside"), "kept") << one.told;
  }
}

}  // namespace
}  // namespace twk::lifecycle
