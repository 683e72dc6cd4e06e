#include "lifecycle/lifecycle_world.hpp"
#include "lifecycle/rename/rename_names.hpp"
#include "lifecycle/rename/rename_nt.hpp"
#include "windows/account/rename_nt.hpp"
#include "windows/state/account_windows.hpp"

namespace twk::lifecycle {
namespace {

using test::LifecycleWorld;
using testing::Contains;
using testing::HasSubstr;
using Names = std::set<std::string>;

TEST(RenameNames, NoFolderIsNamedWhatServersRefuseOrUnderstandOtherwise) {
  for (const char* const name :
       {"",    " ",    ".",    "..",  "a.",  "a ",   "a\\b",     "a/b",     "con:x",  "*",   "What? <x>",
        "a|b", "a\"b", "a\tb", "CON", "nul", "Com1", "lpt9.txt", "AUX .v2", "conin$", "com²"})
    EXPECT_NE(why_no_folder_name(name), "") << name;
  EXPECT_NE(why_no_folder_name(std::string(256, 'a')), "");
  for (const char* const name : {"ann", "West, Ann", "a.b", "Console", "com10", "comet", "nul1", "é", "[x]"})
    EXPECT_EQ(why_no_folder_name(name), "") << name;
  EXPECT_NE(why_no_share_name("West, Ann"), "");
  EXPECT_EQ(why_no_share_name("ann$"), "");
}

TEST(RenameNames, OnlyTheNameAsAWordIsReplaced) {
  EXPECT_EQ(replace_word("jo.v2 Jo$ john joé", "jo", "ann"), "ann.v2 ann$ john joé");
  EXPECT_EQ(replace_word("jo", "jo", "jo.jo"), "jo.jo");
  EXPECT_EQ(replace_word("john", "jo", "ann"), "john");
}

using Prepare = std::function<void(LifecycleWorld&)>;

const Names kJo = {"Users/jo/", "Users/jo/a.txt", "Users/john/"};
const Names kAnn = {"Users/ann/", "Users/ann/a.txt", "Users/john/"};

/// Paths of an account "jo" and the result of renaming it to "ann".
struct RenameCase {
  std::string name;
  std::string home;
  std::string new_home;
  std::string told;             ///< in the log tab
  std::string account = "ann";  ///< afterwards; "jo" when nothing was renamed
  Names folders = kJo;          ///< of the drive, without "Users" and "Profiles"
  Names shares = {"jo$", "Users"};
  std::string profile = {};
  std::string new_profile = {};
  Prepare prepare = {};

  [[nodiscard]] RenameCase with_profile(const std::string& old_path, const std::string& new_path) const {
    RenameCase other = *this;
    other.profile = old_path;
    other.new_profile = new_path;
    return other;
  }
  [[nodiscard]] RenameCase leaving(const Names& all_folders) const {
    RenameCase other = *this;
    other.folders = all_folders;
    return other;
  }
  [[nodiscard]] RenameCase sharing(const Names& all_shares) const {
    RenameCase other = *this;
    other.shares = all_shares;
    return other;
  }
  [[nodiscard]] RenameCase after(const Prepare& step) const {
    RenameCase other = *this;
    other.prepare = step;
    return other;
  }
};

/// Account, folder and the share "jo$" get the new name.
RenameCase renamed(const char* name, const char* home, const char* new_home, const char* told = "GREEN") {
  return RenameCase{name, home, new_home, told}.leaving(kAnn).sharing({"ann$", "Users"});
}

/// Only the account gets it.
RenameCase left(const char* name, const char* home, const char* told) {
  return {name, home, home, told};
}

RenameCase refused(const char* name, const char* home, const char* told) {
  return {name, home, home, told, "jo"};
}

Names joined(Names names, const Names& more) {
  names.insert(more.begin(), more.end());
  return names;
}

Prepare folder(const char* name) {
  return [name](LifecycleWorld& world) {
    std::filesystem::create_directories(world.server_folder("FS1/D/" + std::string(name)));
  };
}

Prepare share(const char* name, const char* path) {
  return [name, path](LifecycleWorld& world) { world.share("FS1", name, path); };
}

/// A share in place of "jo$".
Prepare only_share(const char* name, const char* path) {
  return [name, path](LifecycleWorld& world) {
    world.services.network.NetShareDel("FS1", "jo$");
    world.share("FS1", name, path);
  };
}

Prepare user(const char* name, const char* home) {
  return [name, home](LifecycleWorld& world) { world.add_user(name, home); };
}

const RenameCase kRenameCases[] = {
    renamed("a share of the user's own goes along", R"(\\FS1\jo$)", R"(\\FS1\ann$)",
            "GREEN  Home Directory and Share renamed for ann"),
    renamed("a common share stays", R"(\\FS1\Users\jo)", R"(\\FS1\Users\ann)")
        .sharing({"Users"})
        .after([](LifecycleWorld& world) { world.services.network.NetShareDel("FS1", "jo$"); }),
    renamed("another share that only the user has on the folder follows", R"(\\FS1\Users\jo)",
            R"(\\FS1\Users\ann)")
        .with_profile(R"(\\FS1\jo$\p)", R"(\\FS1\ann$\p)"),
    renamed("a share of another name stands for the new folder", R"(\\FS1\H7$)", R"(\\FS1\H7$)")
        .sharing({"H7$", "Users"})
        .after(only_share("H7$", "D:\\Users\\jo")),
    refused("a share of nobody's paths is somebody's", R"(\\FS1\jo$)", "the share Dept")
        .sharing({"jo$", "Dept", "Users"})
        .after(share("Dept", "D:\\Users\\jo")),
    renamed("a folder below the user's stays where it is in it", R"(\\FS1\jo$\Mail)", R"(\\FS1\ann$\Mail)")
        .leaving(joined(kAnn, {"Users/ann/Mail/"}))
        .after(folder("Users/jo/Mail")),
    renamed("the last folder of the name is the user's", R"(\\FS1\jo-all\jo)", R"(\\FS1\jo-all\ann)")
        .leaving(joined(kJo, {"Users/jo/ann/"}))
        .sharing({"jo$", "jo-all", "Users"})
        .after([](LifecycleWorld& world) {
          folder("Users/jo/jo")(world);
          world.share("FS1", "jo-all", "D:\\Users\\jo");
        }),
    renamed("a profile goes along with the home, also before it is there", R"(\\FS1\jo$)", R"(\\FS1\ann$)")
        .with_profile(R"(\\FS1\jo$\profile)", R"(\\FS1\ann$\profile)"),
    renamed("a profile within the home has a name of its own", R"(\\FS1\jo$)", R"(\\FS1\ann$)")
        .with_profile(R"(\\FS1\jo$\jo.v2)", R"(\\FS1\ann$\ann.v2)")
        .leaving(joined(kAnn, {"Users/ann/ann.v2/"}))
        .after(folder("Users/jo/jo.v2")),
    left("a longer word is another name", R"(\\FS1\Users\john)",
         R"(YELLOW  Home Directory not renamed for ann: No folder of \\FS1\D$\Users\john has the name jo)"),
    left("a drive is no folder of a user", R"(\\FS1\D$)", "has the name jo"),
    refused("the new folder is there", R"(\\FS1\jo$)",
            R"(RED  Error Renaming jo: \\FS1\D$\Users\ann already exists)")
        .leaving(joined(kJo, {"Users/ann/"}))
        .after(folder("Users/ann")),
    refused("the new share is there", R"(\\FS1\jo$)", "has a share ann$ already")
        .sharing({"jo$", "ann$", "Users"})
        .after(share("ann$", "D:\\Profiles")),
    refused("the new folder is another account's", R"(\\FS1\jo$)", "is the home of ann.lee")
        .after(user("ann.lee", R"(\\FS1\Users\ann)")),
    refused("the folder is another account's", R"(\\FS1\jo$)", "the home of ann.lee")
        .after(user("ann.lee", R"(\\FS1\Users\jo\sub)")),
    refused("others come through the share", R"(\\FS1\Jo-all)", "the home of ann.lee")
        .sharing({"Jo-all", "Users"})
        .after([](LifecycleWorld& world) {
          only_share("Jo-all", "D:\\Users\\jo")(world);
          world.add_user("ann.lee", R"(\\FS1\Jo-all\ann.lee)");
        }),
    refused("a link is on the way", R"(\\FS1\Users\l\jo)", "is a link")
        .leaving(joined(kJo, {"Users/l", "Profiles/jo/"}))
        .after([](LifecycleWorld& world) {
          folder("Profiles/jo")(world);
          std::filesystem::create_directory_symlink("../Profiles", world.server_folder("FS1/D/Users/l"));
        }),
    left("the share is not there", R"(\\FS1\none$\jo)",
         R"(RED  Failed to find Home Dir: \\FS1\none$\jo is not there)"),
    left("a path that leads elsewhere", R"(\\FS1\jo$\..\john)", "RED  Failed to find Home Dir"),
    left("no share in the path", R"(\\FS1)",
         R"(RED  Failed to Rename Home directory and share for ann: Could not get share for \\FS1)"),
    left("a profile in NETLOGON", "",
         "RED  Failed to Rename Profile directory and share for ann: Unable Rename NETLOGON Share")
        .with_profile(R"(\\FS1\NetLogon\jo)", R"(\\FS1\NetLogon\jo)"),
    left("a profile on the logon server", "", "Unable to Rename share from %LOGONSERVER%")
        .with_profile(R"(\\%LogonServer%\x\jo)", R"(\\%LogonServer%\x\jo)"),
    renamed("a home named NETLOGON is renamed", R"(\\FS1\NETLOGON\jo)", R"(\\FS1\NETLOGON\ann)")
        .sharing({"NETLOGON", "Users"})
        .after(only_share("NETLOGON", "D:\\Users"))};

/// A window over "jo" in a domain without a directory, with a home on the share "jo$".
class NtRename {
 public:
  NtRename() {
    world.put("FS1/D/Users/jo/a.txt");
    std::filesystem::create_directories(world.server_folder("FS1/D/Users/john"));
    world.share("FS1", "Users", "D:\\Users");
    world.share("FS1", "jo$", "D:\\Users\\jo");
  }
  void order(const std::string& name) {
    controls::TreeNode& node = world.node_of("jo", "ann");
    RenameNtOrder order = rename_order_nt(world.session, node);
    order.logon = name;
    order.logon_changed = true;
    order.folders = true;
    order.terms.even_if_shared = session::Consent::kNo;
    rename_nt(world.session, node, order, world.view);
  }
  [[nodiscard]] Names folders() const {
    Names all = world.tree("FS1/D");
    for (const char* const other : {"Users/", "Profiles/"})
      all.erase(other);
    return all;
  }

  LifecycleWorld world{lab::DomainKind::kNt};
};

TEST(RenameFolders, TheUsersOwnFolderAndShareAndNobodyElsesGetTheNewName) {
  for (const RenameCase& one : kRenameCases) {
    SCOPED_TRACE(one.name);
    NtRename window;
    LifecycleWorld& world = window.world;
    if (one.prepare)
      one.prepare(world);
    world.start_with(one.home, one.profile);
    window.order("ann");
    EXPECT_EQ(world.property(one.account, "HomeDirectory"), one.new_home);
    EXPECT_EQ(world.property(one.account, "Profile"), one.new_profile);
    EXPECT_EQ(window.folders(), one.folders);
    EXPECT_EQ(world.shares("FS1"), one.shares);
    EXPECT_THAT(world.log_tab(), Contains(HasSubstr(one.told)));
    EXPECT_EQ(world.records(), 0);
  }
}

/// The share "jo$" with all its parts.
platform::ShareInfo502 narrow_share(LifecycleWorld& world) {
  platform::ShareInfo502 share = world.services.network.NetShareGetInfo("FS1", "jo$");
  world.services.network.NetShareDel("FS1", "jo$");
  share.shi502_remark = "Jo's, 100%\tof it";
  share.shi502_max_uses = 3;
  platform::Acl list(platform::Acl::kHeaderSize + 100);
  list.add(platform::Acl::kAtEnd, {platform::ace_type::kAllow, 0, platform::access::kGenericRead,
                                   platform::well_known::administrators()});
  share.shi502_security_descriptor.emplace().set_dacl(list.trimmed());
  world.services.network.NetShareAdd("FS1", share);
  return share;
}

TEST(RenameFolders, AShareThatIsMadeAgainIsAsItWasAlsoWhenOnlyTheCaseChanges) {
  for (const char* const name : {"ann", "JO"}) {
    NtRename window;
    LifecycleWorld& world = window.world;
    const platform::ShareInfo502 before = narrow_share(world);
    world.start_with("\\\\FS1\\jo$", "");
    window.order(name);
    const auto after = world.services.network.NetShareGetInfo("FS1", std::string(name) + "$");
    EXPECT_EQ(after.shi502_netname, std::string(name) + "$");
    EXPECT_EQ(after.shi502_path, "D:\\Users\\" + std::string(name));
    EXPECT_EQ(after.shi502_remark, before.shi502_remark);
    EXPECT_EQ(after.shi502_max_uses, 3);
    EXPECT_EQ(after.shi502_security_descriptor, before.shi502_security_descriptor);
    EXPECT_TRUE(window.folders().contains("Users/" + std::string(name) + "/a.txt"));
    EXPECT_EQ(world.property(name, "HomeDirectory"), "\\\\FS1\\" + std::string(name) + "$");
  }
}

TEST(RenameFolders, AFailedStepUndoesThePreviousOnesAndASecondTryCompletesTheWork) {
  const std::function<void(LifecycleWorld&)> faults[] = {
      [](LifecycleWorld& world) {
        world.files.before = [](std::string_view path) {
          if (path.ends_with("Users\\jo"))
            base::raise(base::error::kPermissionDenied, "denied");
        };
      },
      [](LifecycleWorld& world) {
        world.directory.before = test::fail_at("SetInfo", 1, platform::ads_error::kServerDown);
      },
      [](LifecycleWorld& world) { world.network.refused_share = "ann$"; }};
  for (const auto& fault : faults) {
    NtRename window;
    LifecycleWorld& world = window.world;
    const auto before = narrow_share(world);
    world.start_with("\\\\FS1\\jo$", "");
    fault(world);
    window.order("ann");
    EXPECT_THAT(world.log_tab(),
                Contains(HasSubstr("RED  Failed to Rename Home directory and share for ann: ")));
    EXPECT_EQ(window.folders(), kJo);
    const auto after = world.services.network.NetShareGetInfo("FS1", "jo$");
    EXPECT_EQ(after.shi502_security_descriptor, before.shi502_security_descriptor);
    EXPECT_EQ(after.shi502_path, "D:\\Users\\jo");
    EXPECT_EQ(world.property("ann", "HomeDirectory"), "\\\\FS1\\jo$");
    world.files.before = {};
    world.directory.before = {};
    world.network.refused_share.clear();
    window.order("ann");
    EXPECT_EQ(window.folders(), kAnn);
    EXPECT_EQ(world.shares("FS1"), (Names{"ann$", "Users"}));
    EXPECT_EQ(world.property("ann", "HomeDirectory"), "\\\\FS1\\ann$");
    EXPECT_EQ(world.records(), 0);
  }
}

}  // namespace
}  // namespace twk::lifecycle
