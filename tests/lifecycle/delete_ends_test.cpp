#include "lifecycle/delete_world.hpp"

namespace twk::lifecycle {
namespace {

using testing::HasSubstr;

class DeleteEnds : public testing::TestWithParam<DomainKind> {};
INSTANTIATE_TEST_SUITE_P(Kinds, DeleteEnds, kKinds, test::kind_name);

Names all_but(std::initializer_list<std::string> gone) {
  Names left = kAll;
  for (const std::string& name : gone)
    left.erase(name);
  return left;
}
const Names kWithoutHome = all_but({"Users/jo/", "Users/jo/Mail/", "Users/jo/a.txt", "Users/jo/Mail/b.txt"});
const Names kBothShares = {"jo$", "jo.prf$"};

/// One user, and what is left of it: by default the share of the home and its folder go with the account.
struct Case {
  std::string name;
  std::string log;
  std::string light = "GREEN";  ///< "RED" for an account that is kept
  std::string home = R"(\\FS1\jo$)";
  std::string profile = {};
  Names tree = kWithoutHome;
  Names shares = {"jo.prf$"};
  std::function<void(LifecycleWorld&)> prepare = {};

  [[nodiscard]] Case at(const std::string& home_path, const std::string& profile_path = {}) const {
    Case other = *this;
    other.home = home_path;
    other.profile = profile_path;
    return other;
  }
  [[nodiscard]] Case leaving(const Names& of_drive, const Names& of_shares) const {
    Case other = *this;
    other.tree = of_drive;
    other.shares = of_shares;
    return other;
  }
  [[nodiscard]] Case after(const std::function<void(LifecycleWorld&)>& step) const {
    Case other = *this;
    other.prepare = step;
    return other;
  }
};

/// A share of the folder of all homes in place of "jo$".
std::function<void(LifecycleWorld&)> only_share(const char* name) {
  return [name](LifecycleWorld& world) {
    world.services.network.NetShareDel("FS1", "jo$");
    world.share("FS1", name, "D:\\Users");
  };
}

/// Writes a.txt of the home as locked into the server's records.
void lock_file(LifecycleWorld& world) {
  std::string journal = test::get_file(world.server_folder("FS1/server.journal.ldif").string());
  std::string dn = "CN=Folders";
  for (const char* const below : {"", "D", "Users", "jo", "a.txt"}) {
    dn = *below == '\0' ? dn : "CN=" + std::string(below) + "," + dn;
    journal += "dn: " + dn + "\nchangetype: add\nobjectClass: fileObject\n";
    journal += dn.starts_with("CN=a.txt") ? "locked: TRUE\n# end\n\n" : "# end\n\n";
  }
  world.put("FS1/server.journal.ldif", journal);
}

const Case kCases[] = {
    Case{"a mandatory profile stays", "Unable to Delete Mandatory Profiles.\n"}.at(
        R"(\\FS1\jo$)", R"(\\FS1\Profiles\jo\nt.MAN)"),
    Case{"a profile in NETLOGON stays", "Cannot Delete Netlogon Directory.\n"}.at(R"(\\FS1\jo$)",
                                                                                  R"(\\FS1\netlogon\jo)"),
    Case{"a profile on the logon server stays", "Cannot Delete From %Netlogon% Server.\n"}.at(
        R"(\\FS1\jo$)", R"(%LogonServer%\x)"),
    Case{"a local home is left alone", "Home Share and Profile Share are the Same...\n"}
        .at(R"(D:\Users\jo)")
        .leaving(kAll, kBothShares),
    Case{"neither home nor profile", "Home Share and Profile Share are the Same...\nDeleted User Account"}
        .at("")
        .leaving(kAll, kBothShares),
    Case{"a share that is not there", "Home Dir Path :\nDeleted Share: none$\n", "YELLOW"}
        .at(R"(\\FS1\none$)")
        .leaving(kAll, kBothShares),
    Case{"a server that is not there", "it cannot be found out who uses it", "RED"}
        .at(R"(\\NOWHERE\none$)")
        .leaving(kAll, kBothShares),
    Case{"a tail keeps the share", "Deleted Dir: \\\\FS1\\D$\\Users\\jo\n"}
        .at(R"(\\FS1\Users\jo)")
        .leaving(kWithoutHome, {"jo.prf$", "Users"})
        .after(only_share("Users")),
    Case{"a common share stays", "Not deleting share Common on FS1: it leads to others as well: ann\n"}
        .at(R"(\\FS1\Common\jo)", R"(\\FS1\COMMON\jo\prf)")
        .leaving(kWithoutHome, {"jo.prf$", "Common"})
        .after(only_share("Common")),
    Case{"a share above nothing but both goes with them", "Deleted Common Share: Common\n"}
        .at(R"(\\FS1\Common\jo)", R"(\\FS1\COMMON\jo\prf)")
        .leaving({"Users/", "Profiles/", "Profiles/jo/", "Profiles/jo/NTUser.dat"}, {"jo.prf$"})
        .after([](LifecycleWorld& world) {
          only_share("Common")(world);
          std::filesystem::remove_all(world.server_folder("FS1/D/Users/ann"));
        }),
    Case{"a home that its own share alone leads to is emptied before the share and the account go",
         "The empty folder D:\\Users\\jo of FS1 stays: only its own share led to it\n", "YELLOW"}
        .leaving(all_but({"Users/jo/Mail/", "Users/jo/a.txt", "Users/jo/Mail/b.txt"}), {"jo.prf$"})
        .after([](LifecycleWorld& world) {
          world.files.before = [](std::string_view path) {
            if (path.starts_with("\\\\FS1\\D$"))
              base::raise(base::error::kPathNotFound, "no such share");
          };
        }),
    Case{"a locked file stops the deletion and is named",
         "a.txt on FS1 (access is denied or the file is in use; ", "YELLOW"}
        .leaving(all_but({"Users/jo/Mail/", "Users/jo/Mail/b.txt"}), {"jo.prf$"})
        .after(lock_file),
    Case{"the directory refuses to delete the account", "Unable to Delete User", "RED"}
        .leaving(kAll, {"jo.prf$"})
        .after([](LifecycleWorld& world) {
          world.directory.before = [](std::string_view operation, std::string_view path) {
            if (operation == "Delete" && path.find("lanmanserver") == base::npos)
              base::raise(platform::ads_error::kAccessDenied, "no");
          };
        }),
    Case{"an account that cannot be read", "Unable to get user info from Domain, User:", "RED"}
        .leaving(kAll, kBothShares)
        .after([](LifecycleWorld& world) {
          world.directory.before = test::fail_at("GetObject", 1, platform::ads_error::kServerDown);
        })};

TEST_P(DeleteEnds, WhatFailsOrIsProtectedStaysAndIsReported) {
  for (const Case& one : kCases) {
    SCOPED_TRACE(one.name);
    const bool gone = one.light != "RED";
    LifecycleWorld world(GetParam());
    give_own_shares(world);
    world.start_with(one.home, one.profile);
    tick_all(world);
    if (one.prepare)
      one.prepare(world);
    EXPECT_EQ(world.delete_jo(), gone);
    world.directory.before = {};
    EXPECT_EQ(world.has_jo(), !gone);
    EXPECT_EQ(world.tree("FS1/D"), one.tree);
    EXPECT_EQ(world.shares("FS1"), one.shares);
    EXPECT_THAT(world.log(), HasSubstr(one.log));
    EXPECT_THAT(world.log_tab().back(), testing::StartsWith(one.light));
  }
}

/// Homes of jo that are not hers alone; ann has her own home and terminal-server home, and bob's home
/// is where `others` says.
TEST_P(DeleteEnds, NothingIsDeletedWhenAnyOfItIsNotTheUsersAlone) {
  const struct {
    const char* home;
    const char* why;
    const char* others = "";
  } attacks[] = {
      {"\\\\FS1\\Users\\..\\ann", "leads elsewhere"},
      {"\\\\FS1\\Users\\jo\\..", "leads elsewhere"},
      {"\\\\FS1\\Users\\. .\\x", "leads elsewhere"},
      {"\\\\FS1\\\\jo", "names no share"},
      {"\\\\FS1\\", "names no share"},
      {"\\\\\\\\\\\\", "only of backslashes"},
      {"\\\\FS1\\D$", "one of the server's own"},
      {"\\\\FS1\\D$\\", "names no folder below its share"},
      {"\\\\FS1\\Users\\", "names no folder below its share"},
      {"\\\\FS1\\Users\\\\", "names no folder below its share"},
      {"\\\\FS1\\Data", "the whole drive"},
      {"\\\\FS1\\D$\\Users", "the share Users (D:\\Users)"},
      {"\\\\FS1\\Users\\a*", "holds a character"},
      {"\\\\FS1\\Users\\jo.", "end a server drops"},
      {"\\\\FS1\\Users\\out", "is a link"},
      {"\\\\FS1\\Users\\out\\jo", "is a link"},
      {"\\\\FS1\\Users", "the home of ann (\\\\fs1.twk.test\\users\\ANN)"},
      {"\\\\FS1\\D$\\Users\\ann", "the home of ann"},
      {"\\\\FS1\\Users\\ann\\sub", "the home of ann"},
      {"\\\\FS1\\Users\\ts", "the terminal-server home of ann (\\\\FS1\\D$\\Users\\ts\\ann)"},
      {"\\\\FS1\\Users\\jo", "the home of bob (\\\\FS1\\Users\\jo\\sub)", "\\\\FS1\\Users\\jo\\sub"},
      {"\\\\FS1\\jo$", "the home of bob (//10.0.0.1/jo$/sub)", "//10.0.0.1/jo$/sub"},
      {"\\\\FS1\\jo$", "the home of bob (\\\\FS1\\Users\\x\\..\\jo \\)", "\\\\FS1\\Users\\x\\..\\jo \\"}};
  LifecycleWorld world(GetParam());
  give_own_shares(world);
  world.share("FS1", "Users", "D:\\Users");
  world.share("FS1", "Data", "D:\\");
  world.put("FS1/D/Users/out/jo/outside.txt");
  std::filesystem::rename(world.server_folder("FS1/D/Users/out"), world.server_folder("FS2/D/Users/out"));
  std::filesystem::create_directory_symlink(world.server_folder("FS2/D/Users/out"),
                                            world.server_folder("FS1/D/Users/out"));
  world.add_user("ann", "\\\\fs1.twk.test\\users\\ANN");
  world.services.network.WTSSetUserConfig("DC1", "ann", platform::WtsConfigClass::kTerminalServerHomeDir,
                                          std::string("\\\\FS1\\D$\\Users\\ts\\ann"));
  world.add_user("bob", "");
  world.start_with("", "");
  tick_all(world);
  const Names before = world.tree("FS1/D");
  const Names shares = world.shares("FS1");
  for (const auto& attack : attacks) {
    SCOPED_TRACE(attack.home);
    world.set_home("jo", attack.home);
    world.set_home("bob", attack.others);
    EXPECT_FALSE(world.delete_jo());
    EXPECT_TRUE(world.has_jo());
    EXPECT_EQ(world.tree("FS1/D"), before);
    EXPECT_EQ(world.shares("FS1"), shares);
    EXPECT_TRUE(world.there("FS2/D/Users/out/jo/outside.txt"));
    EXPECT_THAT(world.log_tab().back(), testing::StartsWith("RED  Not deleting "));
    EXPECT_THAT(world.log_tab().back(), HasSubstr(attack.why));
  }
}

}  // namespace
}  // namespace twk::lifecycle
