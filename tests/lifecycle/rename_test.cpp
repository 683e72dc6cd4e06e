#include "lifecycle/lifecycle_world.hpp"
#include "lifecycle/rename/rename_names.hpp"
#include "lifecycle/rename/rename_nt.hpp"
#include "session/account_windows.hpp"
#include "session/form1.hpp"
#include "session/multi_user.hpp"
#include "windows/account/rename_nt.hpp"
#include "windows/account/rename_user.hpp"

namespace twk::lifecycle {
namespace {

using lab::DomainKind;
using test::kNewStarters;
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

/// Paths of an account "jo" and the result of renaming it to "ann".
struct Case {
  const char* name;
  const char* home;
  const char* profile;
  const char* account;  ///< afterwards; "jo" when nothing was renamed
  const char* new_home;
  const char* new_profile;
  const char* told;  ///< in the log tab
  Names folders;     ///< of the drive, without "Users" and "Profiles"
  Names shares;
  std::function<void(LifecycleWorld&)> prepare;
};

const Names kJo = {"Users/jo/", "Users/jo/a.txt", "Users/john/"};
const Names kAnn = {"Users/ann/", "Users/ann/a.txt", "Users/john/"};

Names with(Names names, const Names& more) {
  names.insert(more.begin(), more.end());
  return names;
}

std::function<void(LifecycleWorld&)> folder(const char* name) {
  return [name](LifecycleWorld& world) {
    std::filesystem::create_directories(world.server_folder("FS1/D/" + std::string(name)));
  };
}

std::function<void(LifecycleWorld&)> share(const char* name, const char* path) {
  return [name, path](LifecycleWorld& world) { world.share("FS1", name, path); };
}

std::function<void(LifecycleWorld&)> user(const char* name, const char* home) {
  return [name, home](LifecycleWorld& world) { world.add_user(name, home); };
}

const Case kCases[] = {
    {"a share of the user's own goes along",
     "\\\\FS1\\jo$",
     "",
     "ann",
     "\\\\FS1\\ann$",
     "",
     "GREEN  Home Directory and Share renamed for ann",
     kAnn,
     {"ann$", "Users"},
     {}},
    {"a common share stays",
     "\\\\FS1\\Users\\jo",
     "",
     "ann",
     "\\\\FS1\\Users\\ann",
     "",
     "GREEN",
     kAnn,
     {"Users"},
     [](LifecycleWorld& world) { world.services.network.NetShareDel("FS1", "jo$"); }},
    {"another share that only the user has on the folder follows",
     "\\\\FS1\\Users\\jo",
     "\\\\FS1\\jo$\\p",
     "ann",
     "\\\\FS1\\Users\\ann",
     "\\\\FS1\\ann$\\p",
     "GREEN",
     kAnn,
     {"ann$", "Users"},
     {}},
    {"a share of another name stands for the new folder",
     "\\\\FS1\\H7$",
     "",
     "ann",
     "\\\\FS1\\H7$",
     "",
     "GREEN",
     kAnn,
     {"H7$", "Users"},
     [](LifecycleWorld& world) {
       world.services.network.NetShareDel("FS1", "jo$");
       world.share("FS1", "H7$", "D:\\Users\\jo");
     }},
    {"a share of nobody's paths is somebody's",
     "\\\\FS1\\jo$",
     "",
     "jo",
     "\\\\FS1\\jo$",
     "",
     "the share Dept",
     kJo,
     {"jo$", "Dept", "Users"},
     share("Dept", "D:\\Users\\jo")},
    {"a folder below the user's stays where it is in it",
     "\\\\FS1\\jo$\\Mail",
     "",
     "ann",
     "\\\\FS1\\ann$\\Mail",
     "",
     "GREEN",
     with(kAnn, {"Users/ann/Mail/"}),
     {"ann$", "Users"},
     folder("Users/jo/Mail")},
    {"the last folder of the name is the user's",
     "\\\\FS1\\jo-all\\jo",
     "",
     "ann",
     "\\\\FS1\\jo-all\\ann",
     "",
     "GREEN",
     with(kJo, {"Users/jo/ann/"}),
     {"jo$", "jo-all", "Users"},
     [](LifecycleWorld& world) {
       folder("Users/jo/jo")(world);
       world.share("FS1", "jo-all", "D:\\Users\\jo");
     }},
    {"a profile goes along with the home, also before it is there",
     "\\\\FS1\\jo$",
     "\\\\FS1\\jo$\\profile",
     "ann",
     "\\\\FS1\\ann$",
     "\\\\FS1\\ann$\\profile",
     "GREEN",
     kAnn,
     {"ann$", "Users"},
     {}},
    {"a profile within the home has a name of its own",
     "\\\\FS1\\jo$",
     "\\\\FS1\\jo$\\jo.v2",
     "ann",
     "\\\\FS1\\ann$",
     "\\\\FS1\\ann$\\ann.v2",
     "GREEN",
     with(kAnn, {"Users/ann/ann.v2/"}),
     {"ann$", "Users"},
     folder("Users/jo/jo.v2")},
    {"a longer word is another name",
     "\\\\FS1\\Users\\john",
     "",
     "ann",
     "\\\\FS1\\Users\\john",
     "",
     "YELLOW  Home Directory not renamed for ann: No folder of \\\\FS1\\D$\\Users\\john has the name jo",
     kJo,
     {"jo$", "Users"},
     {}},
    {"a drive is no folder of a user",
     "\\\\FS1\\D$",
     "",
     "ann",
     "\\\\FS1\\D$",
     "",
     "has the name jo",
     kJo,
     {"jo$", "Users"},
     {}},
    {"the new folder is there",
     "\\\\FS1\\jo$",
     "",
     "jo",
     "\\\\FS1\\jo$",
     "",
     "RED  Error Renaming jo: \\\\FS1\\D$\\Users\\ann already exists",
     with(kJo, {"Users/ann/"}),
     {"jo$", "Users"},
     folder("Users/ann")},
    {"the new share is there",
     "\\\\FS1\\jo$",
     "",
     "jo",
     "\\\\FS1\\jo$",
     "",
     "has a share ann$ already",
     kJo,
     {"jo$", "ann$", "Users"},
     share("ann$", "D:\\Profiles")},
    {"the new folder is another account's",
     "\\\\FS1\\jo$",
     "",
     "jo",
     "\\\\FS1\\jo$",
     "",
     "is the home of ann.lee",
     kJo,
     {"jo$", "Users"},
     user("ann.lee", "\\\\FS1\\Users\\ann")},
    {"the folder is another account's",
     "\\\\FS1\\jo$",
     "",
     "jo",
     "\\\\FS1\\jo$",
     "",
     "the home of ann.lee",
     kJo,
     {"jo$", "Users"},
     user("ann.lee", "\\\\FS1\\Users\\jo\\sub")},
    {"others come through the share",
     "\\\\FS1\\Jo-all",
     "",
     "jo",
     "\\\\FS1\\Jo-all",
     "",
     "the home of ann.lee",
     kJo,
     {"Jo-all", "Users"},
     [](LifecycleWorld& world) {
       world.services.network.NetShareDel("FS1", "jo$");
       world.share("FS1", "Jo-all", "D:\\Users\\jo");
       world.add_user("ann.lee", "\\\\FS1\\Jo-all\\ann.lee");
     }},
    {"a link is on the way",
     "\\\\FS1\\Users\\l\\jo",
     "",
     "jo",
     "\\\\FS1\\Users\\l\\jo",
     "",
     "is a link",
     with(kJo, {"Users/l", "Profiles/jo/"}),
     {"jo$", "Users"},
     [](LifecycleWorld& world) {
       folder("Profiles/jo")(world);
       std::filesystem::create_directory_symlink("../Profiles", world.server_folder("FS1/D/Users/l"));
     }},
    {"the share is not there",
     "\\\\FS1\\none$\\jo",
     "",
     "ann",
     "\\\\FS1\\none$\\jo",
     "",
     "RED  Failed to find Home Dir: \\\\FS1\\none$\\jo is not there",
     kJo,
     {"jo$", "Users"},
     {}},
    {"a path that leads elsewhere",
     "\\\\FS1\\jo$\\..\\john",
     "",
     "ann",
     "\\\\FS1\\jo$\\..\\john",
     "",
     "RED  Failed to find Home Dir",
     kJo,
     {"jo$", "Users"},
     {}},
    {"no share in the path",
     "\\\\FS1",
     "",
     "ann",
     "\\\\FS1",
     "",
     "RED  Failed to Rename Home directory and share for ann: Could not get share for \\\\FS1",
     kJo,
     {"jo$", "Users"},
     {}},
    {"a profile in NETLOGON",
     "",
     "\\\\FS1\\NetLogon\\jo",
     "ann",
     "",
     "\\\\FS1\\NetLogon\\jo",
     "RED  Failed to Rename Profile directory and share for ann: Unable Rename NETLOGON Share",
     kJo,
     {"jo$", "Users"},
     {}},
    {"a profile on the logon server",
     "",
     "\\\\%LogonServer%\\x\\jo",
     "ann",
     "",
     "\\\\%LogonServer%\\x\\jo",
     "Unable to Rename share from %LOGONSERVER%",
     kJo,
     {"jo$", "Users"},
     {}},
    {"a home named NETLOGON is renamed",
     "\\\\FS1\\NETLOGON\\jo",
     "",
     "ann",
     "\\\\FS1\\NETLOGON\\ann",
     "",
     "GREEN",
     kAnn,
     {"NETLOGON", "Users"},
     [](LifecycleWorld& world) {
       world.services.network.NetShareDel("FS1", "jo$");
       world.share("FS1", "NETLOGON", "D:\\Users");
     }}};

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

  LifecycleWorld world{DomainKind::kNt};
};

TEST(RenameFolders, TheUsersOwnFolderAndShareAndNobodyElsesGetTheNewName) {
  for (const Case& one : kCases) {
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

class RenameInDirectory : public testing::Test {
 protected:
  void start(const std::string& home = "", const std::string& profile = "") {
    world.start_with(home, profile);
    world.session.form1.TreeView1.select(&world.node());
    windows::RenameUser_Load(world.session);
  }
  void type_full_name(const std::string& name) {
    window.Full_Name.text = name;
    windows::RenameUser_Full_Name_Change(world.session);
  }
  void type_logon_name(const std::string& name) {
    window.Logon_Name_pre2000.text = name;
    windows::RenameUser_Logon_Name_pre2000_Change(world.session);
  }
  [[nodiscard]] std::string attribute(const std::string& cn, const char* name) {
    base::Trap trap;
    std::string text;
    trap([&] {
      text = world.services.directory.GetObject("LDAP://twk.test/CN=" + cn + "," + std::string(kNewStarters))
                 ->Get(name)
                 .text();
    });
    return text;
  }

  LifecycleWorld world;
  session::RenameUser& window = world.session.rename_user;
};

TEST_F(RenameInDirectory, WindowShowsTheNamesThatTheUserHas) {
  start();
  EXPECT_EQ(window.Full_Name.text.get(), "Jo Smith");
  EXPECT_EQ(window.Display_Name.text.get(), "Jo Smith");
  EXPECT_EQ(window.User_logon_name.text.get(), "jo");
  EXPECT_EQ(window.AD_Domain.text.get(), "@twk.test");
  EXPECT_EQ(window.Logon_Name_pre2000.text.get(), "jo");
  EXPECT_EQ(window.WINNT_Domain.caption.get(), "TWK\\");
}

TEST_F(RenameInDirectory, AllNamesChangeAndTreeAndListsFollow) {
  start();
  world.session.multi_user.ListView2.add(world.key(), "Jo Smith", "USER");
  type_full_name("Marsh, Ann");
  type_logon_name("amarsh");
  window.User_logon_name.text = std::string();
  window.First_Name.text = std::string("Ann");
  window.Display_Name.text = std::string();
  EXPECT_TRUE(windows::RenameUser_Command2_Click(world.session));
  const std::string key = "LDAP://twk.test/CN=Marsh\\, Ann," + std::string(kNewStarters);
  EXPECT_EQ(attribute("Marsh\\, Ann", "samAccountName"), "amarsh");
  EXPECT_EQ(attribute("Marsh\\, Ann", "userPrincipalName"), "");
  EXPECT_EQ(attribute("Marsh\\, Ann", "givenName"), "Ann");
  EXPECT_EQ(attribute("Marsh\\, Ann", "displayName"), "");
  ASSERT_NE(world.session.form1.TreeView1.find(key), nullptr);
  EXPECT_EQ(world.session.form1.TreeView1.find(key)->text, "Marsh, Ann");
  EXPECT_NE(world.session.multi_user.ListView2.find_key(key), nullptr);
  EXPECT_THAT(world.log(), HasSubstr("User:admin\nRenaming user:Jo Smith\nChanging Names for: amarsh\n"));
  windows::RenameUser_Load(world.session);
  EXPECT_EQ(window.Full_Name.text.get(), "Marsh, Ann");
}

TEST_F(RenameInDirectory, ClashOfTheObjectsNameLeavesTheLogonNamesChanged) {
  start();
  world.services.directory.GetObject("LDAP://twk.test/" + std::string(kNewStarters))
      ->Create("organizationalUnit", "OU=x");
  const platform::ObjectPtr other =
      world.services.directory.GetObject("LDAP://twk.test/" + std::string(kNewStarters))
          ->Create("user", "CN=Ann Marsh");
  other->Put("samAccountName", "other");
  other->SetInfo();
  type_full_name("Ann Marsh");
  type_logon_name("amarsh");
  world.dialogs.expect("Error renaming user in AD\r\nCheck the names does not exist in the current OU");
  EXPECT_FALSE(windows::RenameUser_Command2_Click(world.session));
  EXPECT_EQ(world.dialogs.last_title, "Error renaming user object in AD");
  EXPECT_EQ(attribute("Jo Smith", "samAccountName"), "amarsh");
  EXPECT_NE(world.session.form1.TreeView1.find(world.key()), nullptr);
  EXPECT_EQ(world.session.form1.mouse_pointer.get(), 0);
}

TEST_F(RenameInDirectory, LogonNameInUseChangesNothing) {
  start();
  type_logon_name("admin");
  type_full_name("Ann Marsh");
  world.dialogs.expect("Error renaming user account\r\n\r\nCheck user logon name");
  EXPECT_FALSE(windows::RenameUser_Command2_Click(world.session));
  EXPECT_EQ(attribute("Jo Smith", "samAccountName"), "jo");
}

TEST_F(RenameInDirectory, OtherNamesThatAreRefusedBearTheirOwnTitle) {
  start();
  world.directory.before = test::fail_at("SetInfo", 2, platform::ads_error::kConstraint);
  world.dialogs.expect("Error renaming user account");
  EXPECT_FALSE(windows::RenameUser_Command2_Click(world.session));
  EXPECT_EQ(world.dialogs.last_title, "Error renaming user names");
}

TEST_F(RenameInDirectory, DirectoriesFollowTheNameThatTheyAreMadeOf) {
  const struct {
    bool by_common_name;
    const char* folder;
    const char* share;
  } cases[] = {{true, "Ann Marsh", "Ann Marsh$"}, {false, "amarsh", "amarsh$"}};
  for (const auto& one : cases) {
    LifecycleWorld own;
    const std::string old = one.by_common_name ? "Jo Smith" : "jo";
    own.put("FS1/D/Users/" + old + "/a.txt");
    own.share("FS1", old + "$", "D:\\Users\\" + old);
    own.start_with("\\\\FS1\\" + old + "$", "\\\\FS1\\" + old + "$\\profile");
    controls::choose(own.session.form1.CNName, own.session.form1.SamAccountName, one.by_common_name);
    own.session.form1.TreeView1.select(&own.node());
    windows::RenameUser_Load(own.session);
    session::RenameUser& names = own.session.rename_user;
    names.Full_Name.text = std::string("Ann Marsh");
    names.Logon_Name_pre2000.text = std::string("amarsh");
    names.Full_Name_Changed = names.Logon_Name_Changed = true;
    names.ReNameSD.value = 1;
    EXPECT_TRUE(windows::RenameUser_Command2_Click(own.session));
    EXPECT_TRUE(own.there("FS1/D/Users/" + std::string(one.folder) + "/a.txt")) << own.log();
    EXPECT_EQ(own.shares("FS1"), Names{one.share});
    EXPECT_EQ(own.property("amarsh", "Profile"), "\\\\FS1\\" + std::string(one.share) + "\\profile");
    EXPECT_THAT(own.log_tab(),
                testing::ElementsAre("GREEN  Home Directory and Share renamed for " + std::string(one.folder),
                                     "GREEN " + old + " to " + one.folder + " has been renamed"));
  }
}

TEST_F(RenameInDirectory, MissingFoldersAreReportedInRed) {
  start("\\\\FS1\\Users\\jo", "\\\\FS1\\Profiles\\jo");
  controls::choose(world.session.form1.SamAccountName, world.session.form1.CNName, true);
  type_logon_name("amarsh");
  window.ReNameSD.value = 1;
  EXPECT_TRUE(windows::RenameUser_Command2_Click(world.session));
  EXPECT_THAT(world.log(), testing::AllOf(HasSubstr("Failed to find Home direcotry: \n"),
                                          HasSubstr("Failed to find Profile Directory: \n")));
  EXPECT_THAT(world.log_tab(),
              testing::ElementsAre("RED  Failed to find Home Dir: \\\\FS1\\Users\\jo is not there",
                                   "RED  Failed to find profile Dir: \\\\FS1\\Profiles\\jo is not there",
                                   "GREEN jo to amarsh has been renamed"));
  EXPECT_EQ(world.property("amarsh", "HomeDirectory"), "\\\\FS1\\Users\\jo");
}

TEST_F(RenameInDirectory, FoldersWithoutTheNameStayWhichIsReported) {
  const struct {
    bool by_common_name;
    const char* told;
  } cases[] = {{true, "named after the full name, which does not change"},
               {false, "named after the logon name, which does not change"}};
  for (const auto& one : cases) {
    LifecycleWorld own;
    own.put("FS1/D/Users/jo/a.txt");
    own.share("FS1", "Users", "D:\\Users");
    own.start_with("\\\\FS1\\Users\\jo", "");
    controls::choose(own.session.form1.CNName, own.session.form1.SamAccountName, one.by_common_name);
    own.session.form1.TreeView1.select(&own.node());
    windows::RenameUser_Load(own.session);
    session::RenameUser& names = own.session.rename_user;
    (one.by_common_name ? names.Logon_Name_pre2000 : names.Full_Name).text = std::string("Ann");
    (one.by_common_name ? names.Logon_Name_Changed : names.Full_Name_Changed) = true;
    names.ReNameSD.value = 1;
    EXPECT_TRUE(windows::RenameUser_Command2_Click(own.session));
    EXPECT_TRUE(own.there("FS1/D/Users/jo/a.txt"));
    EXPECT_THAT(own.log_tab(), testing::ElementsAre(HasSubstr(one.told)));
  }
}

TEST_F(RenameInDirectory, NameThatNoFolderCanHaveRenamesNothing) {
  start("\\\\FS1\\Users\\jo");
  type_logon_name("amarsh");
  type_full_name("Ann.Lee\\Jo");
  controls::choose(world.session.form1.CNName, world.session.form1.SamAccountName, true);
  window.ReNameSD.value = 1;
  world.dialogs.expect("Nothing was renamed.\r\n\r\nNo folder can be named \"Ann.Lee\\Jo\"");
  EXPECT_FALSE(windows::RenameUser_Command2_Click(world.session));
  EXPECT_EQ(attribute("Jo Smith", "samAccountName"), "jo");
  EXPECT_THAT(world.log_tab(), testing::ElementsAre(HasSubstr("it holds the character \\")));
}

TEST_F(RenameInDirectory, PrincipalNameKeepsItsSuffixAndTheForestOffersOthers) {
  const platform::ObjectPtr partitions =
      world.services.directory.GetObject("LDAP://twk.test/CN=Partitions,CN=Configuration,DC=twk,DC=test");
  partitions->PutEx(2, "uPNSuffixes", platform::ValueList{"north.example", "TWK.test"});
  partitions->SetInfo();
  start();
  EXPECT_EQ(window.AD_Domain.items(), (std::vector<std::string>{"@twk.test", "@north.example"}));
  window.AD_Domain.text = std::string("@north.example");
  EXPECT_TRUE(windows::RenameUser_Command2_Click(world.session));
  EXPECT_EQ(attribute("Jo Smith", "userPrincipalName"), "jo@north.example");
  windows::RenameUser_Load(world.session);
  EXPECT_EQ(window.AD_Domain.text.get(), "@north.example");
  type_logon_name("ann");
  EXPECT_TRUE(windows::RenameUser_Command2_Click(world.session));
  EXPECT_EQ(attribute("Jo Smith", "userPrincipalName"), "jo@north.example");
}

class RenameInNt : public testing::Test {
 protected:
  void start(const std::string& home = "", const std::string& profile = "") {
    world.start_with(home, profile);
    world.session.form1.TreeView1.select(&world.node());
    windows::Rename_NT_Load(world.session);
  }
  void type_logon(const std::string& name) {
    window.User_Logon.text = name;
    windows::Rename_NT_User_Logon_Change(world.session);
  }

  LifecycleWorld world{DomainKind::kNt};
  session::Rename_NT& window = world.session.rename_nt;
};

TEST_F(RenameInNt, AccountFoldersAndFullNameGetTheNewName) {
  world.put("FS1/D/Users/jo/a.txt");
  world.put("FS1/D/Profiles/jo/b.txt");
  world.share("FS1", "jo$", "D:\\Users\\jo");
  world.share("FS1", "Profiles", "D:\\Profiles");
  start("\\\\FS1\\jo$", "\\\\FS1\\Profiles\\jo");
  type_logon("ann");
  window.Full_Name.text = std::string("Ann Marsh");
  windows::Rename_NT_Full_Name_Change(world.session);
  window.RenameDir.value = 1;
  EXPECT_TRUE(windows::Rename_NT_OKButton_Click(world.session));
  EXPECT_EQ(world.property("ann", "FullName"), "Ann Marsh");
  EXPECT_EQ(world.property("ann", "HomeDirectory"), "\\\\FS1\\ann$");
  EXPECT_EQ(world.property("ann", "Profile"), "\\\\FS1\\Profiles\\ann");
  EXPECT_TRUE(world.there("FS1/D/Users/ann/a.txt"));
  EXPECT_TRUE(world.there("FS1/D/Profiles/ann/b.txt"));
  EXPECT_EQ(world.session.form1.TreeView1.selected()->text, "ann");
  EXPECT_THAT(world.log_tab(), testing::ElementsAre("GREEN  jo renamed to ann",
                                                    "GREEN  Home Directory and Share renamed for ann",
                                                    "GREEN  Profile Directory and Share renamed for ann"));
  EXPECT_THAT(world.log(), HasSubstr("Rename User jo to ann\n"));
  EXPECT_THAT(world.log(), HasSubstr("Renamed Home Directory: jo to ann\n"));
}

TEST_F(RenameInNt, EachRefusedCharacterIsLoggedAndNothingIsRenamed) {
  start();
  type_logon("a*n/n");
  EXPECT_TRUE(windows::Rename_NT_OKButton_Click(world.session));
  EXPECT_THAT(world.log(),
              HasSubstr("Invalid Character in User Name: *\nInvalid Character in User Name: /\n"));
  EXPECT_THAT(world.log_tab(),
              testing::ElementsAre("RED  Error Renaming jo: no account name has the character *"));
  EXPECT_EQ(world.session.form1.StatusBar1.panel1.get(), "Invalid Character in User Name: *");
  EXPECT_TRUE(world.has_jo());
}

TEST_F(RenameInNt, OnlyTheFullNameRenamesNeitherAccountNorFolder) {
  world.put("FS1/D/Users/jo/a.txt");
  world.share("FS1", "jo$", "D:\\Users\\jo");
  start("\\\\FS1\\jo$");
  window.RenameDir.value = 1;
  EXPECT_TRUE(windows::Rename_NT_OKButton_Click(world.session));
  window.Full_Name.text = std::string("Ann");
  windows::Rename_NT_Full_Name_Change(world.session);
  EXPECT_TRUE(windows::Rename_NT_OKButton_Click(world.session));
  EXPECT_EQ(world.property("jo", "FullName"), "Ann");
  EXPECT_TRUE(world.there("FS1/D/Users/jo/a.txt"));
  type_logon("");
  EXPECT_FALSE(windows::Rename_NT_OKButton_Click(world.session));
}

TEST_F(RenameInNt, NameInUseIsReportedAndNothingIsRenamed) {
  start();
  type_logon("admin");
  EXPECT_TRUE(windows::Rename_NT_OKButton_Click(world.session));
  EXPECT_TRUE(world.has_jo());
  EXPECT_THAT(
      world.log_tab(),
      testing::ElementsAre(HasSubstr("RED  Error Renaming jo: The domain has an account admin already")));
  EXPECT_THAT(world.log(), HasSubstr("Error Number: "));
}

}  // namespace
}  // namespace twk::lifecycle
