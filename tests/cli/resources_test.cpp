#include "cli/twk_fixture.hpp"
#include "lab/store/base64.hpp"
#include "platform/security_descriptor.hpp"

namespace twk::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

const std::string kUsers = "\\\\FS1\\D$\\Users";
const std::string kHome = kUsers + "\\John.Smith";

/// A sample lab in which John Smith was created.
class Resources : public TwkLab {
 protected:
  Resources() { EXPECT_EQ(create({"--ou", kNewStarters, "John", "Smith"}).exit_code, 0); }

  /// The entries as "deny Read TWK\x".
  std::vector<std::string> entries_of(const nlohmann::json& shown) {
    std::vector<std::string> entries;
    for (const auto& entry : shown["entries"]) {
      entries.push_back(entry["type"].get<std::string>() + " " + entry["access"].get<std::string>() + " " +
                        entry["account"].get<std::string>());
    }
    return entries;
  }
  std::vector<std::string> list_of(const std::string& path) {
    return entries_of(result_of({"acl", "show", path}));
  }
  std::string owner_of(const std::string& path) { return result_of({"acl", "show", path})["owner"]; }
  void expect_refused(Arguments arguments, int exit_code, const std::string& words) {
    const ProgramResult result = run(arguments);
    EXPECT_EQ(result.exit_code, exit_code) << arguments.back();
    EXPECT_THAT(result.err, HasSubstr(words));
    EXPECT_EQ(result.out, "");
  }
};

TEST_F(Resources, ASampleCreationAppliesTheTable) {
  EXPECT_THAT(list_of(kHome),
              ElementsAre("allow Change TWK\\John.Smith", "allow Change TWK\\John.Smith",
                          "allow Full Control TWK\\Domain Admins", "allow Full Control TWK\\Domain Admins",
                          "allow Full Control NT AUTHORITY\\SYSTEM"));
  const nlohmann::json first = result_of({"acl", "show", kHome})["entries"][0];
  EXPECT_EQ(first["mask"], "0x001301BF");
  EXPECT_EQ(first["appliesTo"], "this folder, subfolders");
  EXPECT_EQ(first["inherited"], false);
  EXPECT_THAT(run({"acl", "show", kHome}).out, HasSubstr("TWK\\John.Smith       allow  Change"));
}

TEST_F(Resources, AccessIsGrantedReplacedAndDenied) {
  ASSERT_EQ(run({"acl", "set", kHome, "--account", "Staff", "--access", "read"}).exit_code, 0);
  EXPECT_EQ(list_of(kHome).front(), "allow Read TWK\\Staff");
  EXPECT_EQ(list_of(kHome).size(), 7U);
  ASSERT_EQ(run({"acl", "set", kHome, "--account", "Staff", "--access", "No Access", "--replace"}).exit_code,
            0);
  EXPECT_THAT(list_of(kHome), ElementsAre("deny No Access TWK\\Staff", "deny No Access TWK\\Staff",
                                          "allow Full Control NT AUTHORITY\\SYSTEM"));
  EXPECT_THAT(run({"log", "show"}).out,
              HasSubstr("Setting Permissions on " + kHome + "\nSet Permissions for Staff\n"));
}

TEST_F(Resources, WhatAUserCanDoThereIsShown) {
  struct Case {
    std::string user;
    bool full, change, read, write;
  };
  for (const Case& one :
       {Case{"John.Smith", false, true, true, true}, Case{"TWK\\Administrator", true, true, true, true}}) {
    const nlohmann::json rights = result_of({"acl", "check", kHome, one.user});
    EXPECT_EQ(rights["full"], one.full) << one.user;
    EXPECT_EQ(rights["change"], one.change) << one.user;
    EXPECT_EQ(rights["read"], one.read) << one.user;
    EXPECT_EQ(rights["write"], one.write) << one.user;
    EXPECT_EQ(rights["rights"]["changePermissions"], one.full) << one.user;
    EXPECT_EQ(rights["rights"]["writeData"], one.write) << one.user;
  }
  ASSERT_EQ(run({"acl", "set", kHome, "--account", "Domain Users", "--access", "No Access"}).exit_code, 0);
  EXPECT_EQ(result_of({"acl", "check", kHome, "John.Smith"})["read"], false) << "by a group";
  EXPECT_THAT(run({"acl", "check", kHome, "John.Smith"}).out, HasSubstr("Write         no\n"));
}

TEST_F(Resources, TheTableIsAppliedAsACreationWould) {
  ASSERT_EQ(run({"table", "set", "permissions"}, "%UserName%,Read,%UserName%,yes\n").exit_code, 0);
  ASSERT_EQ(run({"acl", "set", kHome, "--from-table", "John.Smith"}).exit_code, 0);
  expect_refused({"acl", "show", kHome}, 77, "Access is denied");
  ASSERT_EQ(run({"owner", "take", kHome}).exit_code, 0);
  EXPECT_THAT(list_of(kHome), ElementsAre("allow Read TWK\\John.Smith", "allow Read TWK\\John.Smith",
                                          "allow Full Control NT AUTHORITY\\SYSTEM"));
  EXPECT_EQ(owner_of(kHome), "BUILTIN\\Administrators");

  ASSERT_EQ(run({"table", "set", "permissions"}, "Staff,Read\nnobody,Read\n").exit_code, 0);
  const ProgramResult partly = run({"acl", "set", kHome, "--from-table", "John.Smith"});
  EXPECT_EQ(partly.exit_code, 1);
  EXPECT_THAT(partly.out,
              HasSubstr("YELLOW  The table was refused in part: nobody on " + kHome + ": No mapping"));
  EXPECT_EQ(list_of(kHome).front(), "allow Read TWK\\Staff");
  EXPECT_THAT(run({"log", "show"}).out, HasSubstr("Failed to set Permissions for nobody\n"));

  ASSERT_EQ(run({"table", "set", "permissions"}, "Staff,Read,nobody\n").exit_code, 0);
  const ProgramResult unowned = run({"acl", "set", kHome, "--from-table", "John.Smith"});
  EXPECT_EQ(unowned.exit_code, 1) << unowned.out;

  ASSERT_EQ(run({"table", "set", "permissions"}, "").exit_code, 0);
  expect_refused({"acl", "set", kHome, "--from-table", "John.Smith"}, 2, "has no rows");
}

TEST_F(Resources, ATreeIsTakenOver) {
  std::filesystem::create_directories(lab() + "/servers/FS1/D/Users/John.Smith/deep");
  put_file(lab() + "/servers/FS1/D/Users/John.Smith/deep/f.txt", "x");
  ASSERT_EQ(run({"owner", "take", kHome, "--account", "John.Smith"}).exit_code, 0);
  EXPECT_EQ(owner_of(kHome), "TWK\\John.Smith");
  EXPECT_EQ(list_of(kHome).size(), 5U) << "the list stays";
  EXPECT_EQ(owner_of(kHome + "\\deep\\f.txt"), "BUILTIN\\Administrators");

  ASSERT_EQ(
      run({"acl", "set", kHome, "--account", "Staff", "--access", "Full Control", "--recurse"}).exit_code, 0);
  EXPECT_EQ(owner_of(kHome + "\\deep\\f.txt"), "TWK\\Staff");
  ASSERT_EQ(run({"owner", "take", kHome, "--recurse"}).exit_code, 0);
  for (const std::string below : {"", "\\deep", "\\deep\\f.txt"}) {
    EXPECT_EQ(owner_of(kHome + below), "BUILTIN\\Administrators");
    EXPECT_THAT(list_of(kHome + below), ElementsAre("allow Full Control BUILTIN\\Administrators",
                                                    "allow Full Control BUILTIN\\Administrators",
                                                    "allow Full Control NT AUTHORITY\\SYSTEM"))
        << below;
  }
}

TEST_F(Resources, NoTreeIsTakenOverForNobodyOrForAnyoneItIsClosedTo) {
  const Arguments take = {"owner", "take", kHome, "--recurse", "--account"};
  Arguments nobody = take;
  nobody.push_back("nobody");
  ASSERT_EQ(run({"owner", "take", kHome, "--account", "John.Smith"}).exit_code, 0);
  expect_refused(nobody, 2, "There is no account \"nobody\".");
  expect_refused({"acl", "set", kHome, "--account", "Staff", "--access", "no access", "--recurse"}, 2,
                 "the owner of the tree");
  EXPECT_EQ(owner_of(kHome), "TWK\\John.Smith");
  put_file(lab() + "/servers/FS1/D/Users/John.Smith/f.txt", "x");
  const nlohmann::json taken = result_of({"owner", "take", kHome, "--recurse"});
  EXPECT_EQ(taken["written"], 2);
  EXPECT_EQ(taken["refused"], 0);
}

/// A list of 200 entries, and an invalid descriptor, in the file of the server.
TEST_F(Resources, LongListsAreReadAndBrokenOnesNamed) {
  platform::SecurityDescriptor descriptor;
  platform::Acl list(60000);
  for (std::uint32_t i = 0; i < 200; ++i)
    list.add(platform::Acl::kAtEnd, {0, 0, i + 1, platform::well_known::users()});
  descriptor.owner = platform::well_known::administrators();
  descriptor.set_dacl(list.trimmed());
  const base::Bytes bytes = descriptor.encode();
  const auto keep = [&](const std::string& value) {
    const std::string folder = lab() + "/servers/FS1/server";
    std::filesystem::remove(folder + ".journal.ldif");
    std::filesystem::remove(folder + ".ldif");
    put_file(folder + ".ldif",
             "dn: CN=Folders\nobjectClass: container\n\ndn: CN=D,CN=Folders\nobjectClass: fileObject\n\n"
             "dn: CN=Users,CN=D,CN=Folders\nobjectClass: fileObject\n\n"
             "dn: CN=John.Smith,CN=Users,CN=D,CN=Folders\nobjectClass: fileObject\n"
             "nTSecurityDescriptor:: " +
                 value + "\n");
  };
  std::string encoded;
  lab::append_base64(encoded, std::string(bytes.begin(), bytes.end()));
  keep(encoded);
  EXPECT_EQ(run({"acl", "set", kHome, "--account", "Staff", "--access", "Read"}).exit_code, 0);
  EXPECT_EQ(list_of(kHome).size(), 202U);
  EXPECT_EQ(run({"acl", "set", kHome, "--account", "Staff", "--access", "Read", "--replace"}).exit_code, 0);
  EXPECT_EQ(list_of(kHome).size(), 2U);
  keep("AAAA");
  for (const Arguments& broken : {Arguments{"acl", "show", kHome},
                                  {"owner", "take", kHome, "--recurse"},
                                  {"acl", "set", kHome, "--account", "Staff", "--access", "Read"}})
    expect_refused(broken, 65, "The security descriptor of D:\\Users\\John.Smith");
}

TEST_F(Resources, WhatCannotBeDoneIsExplainedInPlainWords) {
  expect_refused({"acl", "set", kHome, "--account", "nobody", "--access", "Read"}, 2,
                 "There is no account \"nobody\".");
  expect_refused({"acl", "check", kHome, "nobody"}, 2, "There is no account \"nobody\".");
  expect_refused({"owner", "take", kHome, "--account", "nobody"}, 2, "There is no account");
  expect_refused({"acl", "show", kUsers + "\\none"}, 65, "no file or folder");
  expect_refused({"acl", "show", "/tmp"}, 2, "have no security descriptor");
  expect_refused({"acl", "set", kHome, "--account", "Staff", "--access", "Write"}, 64,
                 "Full Control, Change");
  expect_refused({"acl", "set", kHome, "--account", "Staff"}, 64, "--access");
  expect_refused({"acl", "set", kHome, "--from-table", "x", "--replace"}, 64, "leave out the other options");
  EXPECT_THAT(run({"log", "show"}).out, HasSubstr("There is no account \"nobody\".\n"));
}

TEST_F(Resources, SharesAreListedAddedShownAndDeleted) {
  ASSERT_EQ(run({"table", "set", "share-permissions"}, "%UserName%,Change\nEveryone,Read\n").exit_code, 0);
  ASSERT_EQ(run({"share", "add", "FS1", "John$", "D:\\Users\\John.Smith", "--remark", "Home", "--table",
                 "John.Smith"})
                .exit_code,
            0);
  nlohmann::json shown = result_of({"share", "show", "\\\\fs1", "john$"});
  EXPECT_EQ(shown["path"], "D:\\Users\\John.Smith");
  EXPECT_EQ(shown["remark"], "Home");
  EXPECT_EQ(shown["defaultList"], false);
  EXPECT_THAT(entries_of(shown), ElementsAre("allow Change TWK\\John.Smith", "allow Read Everyone"));
  ASSERT_EQ(run({"share", "add", "FS1", "Plain", "D:\\Users"}).exit_code, 0);
  EXPECT_EQ(result_of({"share", "show", "FS1", "Plain"})["entries"].size(), 0U);

  std::vector<std::string> names;
  for (const auto& row : json_lines(run({"--json", "share", "list", "FS1"}).out))
    names.push_back(row["name"]);
  EXPECT_THAT(names, testing::IsSupersetOf({"D$", "John$", "Plain", "Users"}));

  EXPECT_EQ(run({"share", "delete", "FS1", "john$"}, "n\n").exit_code, 2);
  EXPECT_EQ(run({"--yes", "share", "delete", "FS1", "john$"}).exit_code, 0);
  expect_refused({"share", "show", "FS1", "John$"}, 2, "no share \"John$\"");
  EXPECT_TRUE(std::filesystem::exists(lab() + "/servers/FS1/D/Users/John.Smith"));
  EXPECT_THAT(run({"log", "show"}).out, HasSubstr("Creating Shares: \\\\FS1\\John$\n"));
}

TEST_F(Resources, AShareIsNeverOpenToMoreThanTheTableSays) {
  const Arguments add = {"share", "add", "FS1", "John$", "D:\\Users\\John.Smith", "--table", "John.Smith"};
  ASSERT_EQ(run({"table", "set", "share-permissions"}, "nobody,Change\n").exit_code, 0);
  expect_refused(add, 2, "not found: nobody, and no row is left that gives John.Smith access");
  expect_refused({"share", "show", "FS1", "John$"}, 2, "no share");
  ASSERT_EQ(run({"table", "set", "share-permissions"}, "nobody,Change\n%UserName%,Read\n").exit_code, 0);
  const ProgramResult made = run(add);
  EXPECT_EQ(made.exit_code, 1);
  EXPECT_THAT(made.out, HasSubstr("not found: nobody, which gets no access"));
  EXPECT_THAT(entries_of(result_of({"share", "show", "FS1", "John$"})),
              ElementsAre("allow Read TWK\\John.Smith"));
}

TEST_F(Resources, SharesThatCannotBeMadeAreRefused) {
  expect_refused({"share", "list", "FS9"}, 2, "There is no server FS9.");
  expect_refused({"share", "add", "FS9", "x", "D:\\Users"}, 2, "There is no server FS9.");
  expect_refused({"share", "add", "FS1", "users", "D:\\Users"}, 2, "already");
  expect_refused({"share", "add", "FS1", "x", "D:\\none"}, 2, "no folder");
  expect_refused({"share", "show", "FS1", "User"}, 2, "Near: \"Users\"");
  expect_refused({"share", "delete", "FS1", "none"}, 2, "no share \"none\"");
  EXPECT_EQ(run({"--yes", "share", "delete", "FS1", "D$"}).exit_code, 77);
}

class NtResources : public TwkLab {
 protected:
  static void SetUpTestSuite() { make("nt"); }
};

TEST_F(NtResources, AccountsAreAskedForAtTheController) {
  ASSERT_EQ(create({"John", "Smith"}).exit_code, 0);
  ASSERT_EQ(run({"acl", "set", kHome, "--account", "Staff", "--access", "Read"}).exit_code, 0);
  ASSERT_EQ(run({"owner", "take", kHome, "--account", "John.Smith"}).exit_code, 0);
  const nlohmann::json shown = result_of({"acl", "show", kHome});
  EXPECT_EQ(shown["owner"], "OLDNT\\John.Smith");
  EXPECT_EQ(shown["entries"][0]["account"], "OLDNT\\Staff");
  EXPECT_EQ(shown["entries"][2]["account"], "OLDNT\\John.Smith") << "by the table of the sample";
}

}  // namespace
}  // namespace twk::test
