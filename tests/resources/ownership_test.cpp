#include "resources/ownership.hpp"

#include "resources/file_permission.hpp"
#include "resources/resources_world.hpp"
#include "session/run_scope.hpp"
#include "support/kept_view.hpp"

namespace twk::resources {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
namespace error = platform::security_error;

/// "tree" with the folders a (holding the folder deep, with f.txt) and b, and the file c.txt.
class OwnershipTest : public ResourcesWorld {
 protected:
  OwnershipTest() {
    std::filesystem::create_directories(database.path() / "tree/a/deep");
    std::filesystem::create_directory(database.path() / "tree/b");
    for (const std::string file : {"tree/c.txt", "tree/a/deep/f.txt"})
      test::put_file(database / file, "x");
    session.command_line = "/DEBUG";
  }

  bool take(const FilePermission& permission) { return SetFilePermission(session, server, top, permission); }
  /// The writes as "1 a\deep", by their paths below the tree.
  [[nodiscard]] std::vector<std::string> writes() const {
    std::vector<std::string> found;
    for (std::string call : calls("SetFileSecurity ")) {
      call.erase(0, std::string("SetFileSecurity ").size());
      call.erase(2, top.size());
      found.push_back(call);
    }
    return found;
  }

  std::string top = database / "tree";
  std::string server;
  const FilePermission tree{.account = "Administrators", .mode = 0, .replaceAll = true, .recurse = true};
};

TEST_F(OwnershipTest, LinksOutOfTheTreeAndBackIntoItAreNotFollowed) {
  namespace fs = std::filesystem;
  fs::create_directory(database.path() / "outside");
  test::put_file(database / "outside/secret.txt", "x");
  for (const char* const link : {"back1", "back2"})
    fs::create_directory_symlink(top, database.path() / "tree/a" / link);
  fs::create_directory_symlink(database / "outside", database.path() / "tree/out");
  EXPECT_TRUE(take(tree));
  for (const std::string& write : writes()) {
    EXPECT_EQ(write.find("secret"), std::string::npos) << write;
    EXPECT_EQ(write.find("back1\\"), std::string::npos) << write;
  }
}

TEST_F(OwnershipTest, OnlyTheOwnerIsWrittenUnderThePrivilege) {
  security.descriptors[top].set_dacl(platform::Acl::decode(list_named("old")));
  EXPECT_TRUE(take({.account = "jo", .ownerOnly = true}));
  const std::vector<std::string> wanted = {
      "OpenProcessToken",         "LookupPrivilegeValue SeRestorePrivilege",
      "AdjustTokenPrivileges on", "SetFileSecurity 1 " + top,
      "OpenProcessToken",         "LookupPrivilegeValue SeRestorePrivilege",
      "AdjustTokenPrivileges off"};
  EXPECT_EQ(std::vector<std::string>(security.calls.begin() + 2, security.calls.end()), wanted);
  EXPECT_EQ(security.descriptors[top].owner, security.accounts.at("JO"));
  EXPECT_EQ(security.descriptors[top].dacl->encode(), list_named("old"));
}

TEST_F(OwnershipTest, ARefusedOwnerIsAFailureAndThePrivilegeIsStillDropped) {
  fail_at("SetFileSecurity", 1, error::kInvalidOwner);
  EXPECT_FALSE(take({.account = "jo", .ownerOnly = true}));
  EXPECT_THAT(log(), testing::HasSubstr("Error: SetFileSecurity\nCode: 1307\n"));
  EXPECT_EQ(security.calls.back(), "AdjustTokenPrivileges off");
}

TEST_F(OwnershipTest, ATreeIsTakenOverDepthFirstOwnerBeforeList) {
  test::KeptView view(session);
  const session::RunScope scope(session, view);
  EXPECT_TRUE(take(tree));
  EXPECT_THAT(writes(), ElementsAre("1 ", "4 ",                                                    //
                                    "1 \\a", "4 \\a", "1 \\b", "4 \\b",                            //
                                    "1 \\a", "4 \\a", "1 \\b", "4 \\b", "1 \\c.txt", "4 \\c.txt",  //
                                    "1 \\a\\deep", "4 \\a\\deep", "1 \\a\\deep", "4 \\a\\deep",    //
                                    "1 \\a\\deep\\f.txt", "4 \\a\\deep\\f.txt"));
  const platform::SecurityDescriptor& file = security.descriptors[top + "\\a\\deep\\f.txt"];
  EXPECT_EQ(file.owner, platform::well_known::administrators());
  EXPECT_EQ(file.dacl, security.descriptors[top].dacl);
  EXPECT_EQ(view.told.back(), "f.txt");
  EXPECT_THAT(calls("Lookup"), ElementsAre("LookupAccountName  System", "LookupAccountName  Administrators",
                                           "LookupPrivilegeValue SeRestorePrivilege",
                                           "LookupPrivilegeValue SeRestorePrivilege"));
}

TEST_F(OwnershipTest, ARefusedFileIsSkippedAndCounted) {
  security.before = [](std::string_view operation, std::string_view path) {
    if (operation == "SetFileSecurity" && path.ends_with("\\a"))
      throw base::RuntimeError(error::kSharingViolation, "locked");
  };
  const TreeOutcome outcome = write_file_permission(session, server, top, tree);
  EXPECT_THAT(writes(), IsSupersetOf({"4 \\c.txt", "4 \\a", "4 \\a\\deep\\f.txt"}));
  EXPECT_EQ(outcome.written, 5U) << "the folder itself, b, c.txt, deep, f.txt";
  EXPECT_EQ(outcome.refused, 1U);
  EXPECT_EQ(outcome.first_reason, top + "\\a: locked (a file is in use; close it and try again)");
}

TEST_F(OwnershipTest, APersonStopsItAfterTheCurrentFolder) {
  int turns = 0;
  test::KeptView view(session);
  const session::RunScope scope(session, view);
  dialogs.on_events = [&] { session.run.stopped = ++turns == 2; };
  const TreeOutcome outcome = write_file_permission(session, server, top, tree);
  EXPECT_TRUE(outcome.stopped);
  EXPECT_EQ(outcome.written, 4U) << "the folder itself, a, b, c.txt";
  turns = 0;
  EXPECT_FALSE(take(tree));
  EXPECT_THAT(session.log.take_reasons(), ElementsAre(top + ": stopped after 4 files and folders"));
}

TEST_F(OwnershipTest, NothingOfATreeIsTakenOverForAnUnknownAccount) {
  EXPECT_THROW(take_tree(session, server, top, "nobody"), PermissionFailure);
  EXPECT_THAT(writes(), IsEmpty());
  EXPECT_EQ(take_tree(session, server, top, "jo").written, 6U);
  EXPECT_EQ(security.descriptors[top].owner, security.accounts.at("JO"));
}

TEST_F(OwnershipTest, AListIsWrittenWhereTheOwnerIsRefusedAndTheWholeIsAFailure) {
  for (const int refused : {1, 2}) {
    security.calls.clear();
    fail_at("SetFileSecurity", refused, error::kAccessDenied);
    EXPECT_FALSE(take(tree));
    EXPECT_THAT(writes(), IsSupersetOf({"1 ", "4 ", "4 \\a\\deep\\f.txt"}));
    EXPECT_EQ(security.calls.back(), "AdjustTokenPrivileges off");
  }
}

TEST_F(OwnershipTest, AFolderThatCannotBeReadEndsItsPass) {
  files.fail_from(3, base::error::kPathFileAccess);
  EXPECT_TRUE(take(tree));
  EXPECT_THAT(writes(), Contains("4 \\a"));
  EXPECT_THAT(writes(), testing::Not(Contains("4 \\a\\deep")));
}

TEST_F(OwnershipTest, TheMaskChoosesNamesButEveryFolderIsEntered) {
  const std::vector<std::string> both = {"c.txt", "f.txt"};
  for (const auto& [mask, wanted] : std::multimap<std::string, std::vector<std::string>>{{"*.TXT", both},
                                                                                         {"?.txt", both},
                                                                                         {"c*", {"c.txt"}},
                                                                                         {"*t", both},
                                                                                         {"", {}},
                                                                                         {"*.*", both},
                                                                                         {"c.tx", {}},
                                                                                         {"c.txt?", {}}}) {
    security.calls.clear();
    SetTreeSecurity(session, top, mask, {}, {});
    std::vector<std::string> names;
    for (const std::string& call : calls("SetFileSecurity 1")) {
      if (call.ends_with(".txt"))
        names.push_back(call.substr(call.rfind('\\') + 1));
    }
    EXPECT_EQ(names, wanted) << mask;
    EXPECT_THAT(writes(), Contains("4 \\a\\deep")) << mask;
  }
}

TEST_F(OwnershipTest, AMissingPrivilegeIsReportedAndTheWriteStillTried) {
  for (const std::string operation : {"OpenProcessToken", "LookupPrivilegeValue", "AdjustTokenPrivileges"}) {
    security.calls.clear();
    fail_at(operation, 1, error::kNotAllAssigned);
    dialogs.expect(operation + " failed with error code 1300");
    EXPECT_TRUE(take({.account = "jo", .ownerOnly = true})) << operation;
    EXPECT_THAT(writes(), ElementsAre("1 "));
    EXPECT_THAT(calls("AdjustTokenPrivileges off"), IsEmpty());
  }
}

}  // namespace
}  // namespace twk::resources
