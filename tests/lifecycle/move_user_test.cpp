#include "lifecycle/move_user.hpp"

#include "lifecycle/file_operation.hpp"
#include "lifecycle/lifecycle_world.hpp"
#include "lifecycle/rehearsal.hpp"
#include "stores/side_tables.hpp"

namespace twk::lifecycle {
namespace {

using lab::DomainKind;
using test::LifecycleWorld;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using Names = std::set<std::string>;

/// jo moves from shares of her own on FS1 to the site's server FS2, where the template makes shares too.
class MoveWorld : public LifecycleWorld {
 public:
  explicit MoveWorld(DomainKind kind) : LifecycleWorld(kind) {
    site.NTServer = "FS2";
    staff.HomeDir = "\\\\%Server%\\%UserName%$";
    staff.HomeShare = "%UserName%$";
    staff.ProfilePath = "\\\\%Server%\\%UserName%.prf$";
    staff.ProfileShare = "%UserName%.prf$";
    put("FS1/D/Users/jo/a.txt", "aaaa");
    put("FS1/D/Users/jo/Mail/b.txt", "bbb");
    put("FS1/D/Profiles/jo/NTUser.dat");
    share("FS1", "jo$", "D:\\Users\\jo");
    share("FS1", "jo.prf$", "D:\\Profiles\\jo");
  }
  void start_at(const std::string& home, const std::string& profile, int data) {
    set("Setup", "BatchFileMove", "moved.cmd %Domain% %NTServer% %UserName%");
    start_with(home, profile);
    stores::write_permissions(session, "SharePerm.dat",
                              std::vector{stores::PermissionRecord{false, "Everyone", "Full Control", ""}});
    session::MultiUser& window = session.multi_user;
    window.Multi_Site.text = std::string("Head Office");
    window.Multi_Template.text = stores::padded_template_name("Staff");
    window.UserData.index = data;
    session.runs.Move_Running = true;
  }
  void start_at_own_shares(int data) { start_at("\\\\FS1\\jo$", "\\\\FS1\\jo.prf$", data); }
  bool move() { return Move_One_User(session, key()); }
};

constexpr int kMove = 0;
constexpr int kCopy = 1;
constexpr int kNothing = 2;

const Names kEmpty = {"Users/", "Profiles/"};
const Names kWhole = {
    "Users/",    "Users/jo/",    "Users/jo/a.txt",        "Users/jo/Mail/", "Users/jo/Mail/b.txt",
    "Profiles/", "Profiles/jo/", "Profiles/jo/NTUser.dat"};
const Names kFolders = {"Users/", "Users/jo/", "Profiles/", "Profiles/jo/"};

class MoveUser : public testing::TestWithParam<DomainKind> {};
INSTANTIATE_TEST_SUITE_P(Kinds, MoveUser,
                         testing::Values(DomainKind::kNative, DomainKind::kMixed, DomainKind::kNt),
                         test::kind_name);

TEST_P(MoveUser, DataSharesAndAccountGoToTheNewServer) {
  MoveWorld world(GetParam());
  world.start_at_own_shares(kMove);
  world.session.multi_user.Add_to_Groups.value = 1;
  world.session.multi_user.Change_Logon.value = 1;
  world.session.multi_user.Run_CMD.value = 1;
  EXPECT_TRUE(world.move());
  EXPECT_EQ(world.tree("FS1/D"), kEmpty);
  EXPECT_EQ(world.tree("FS2/D"), kWhole);
  EXPECT_EQ(world.shares("FS1"), Names());
  EXPECT_EQ(world.shares("FS2"), (Names{"jo$", "jo.prf$"}));
  EXPECT_EQ(world.property("jo", "HomeDirectory"), "\\\\FS2\\jo$");
  EXPECT_EQ(world.property("jo", "Profile"), "\\\\FS2\\jo.prf$");
  EXPECT_EQ(world.property("jo", world.is_nt() ? "HomeDirDrive" : "HomeDrive"), "H:");
  EXPECT_EQ(world.property("jo", "LoginScript"), "staff.cmd");
  EXPECT_THAT(world.groups_of("jo"), testing::Contains(world.is_nt() ? "Staff" : "CN=Staff"));
  EXPECT_THAT(world.process.command_lines,
              testing::ElementsAre(world.is_nt() ? "moved.cmd TWK FS2 jo" : "moved.cmd twk.test FS2 jo"));
  EXPECT_THAT(world.log_tab(), testing::ElementsAre("GREEN  jo Moved"));
}

/// A move, what it leaves on both servers, and what it tells.
struct Case {
  const char* name;
  int data;
  bool moved;
  Names old_tree;
  Names new_tree;
  Names old_shares;
  const char* home;  ///< of the account afterwards
  std::vector<const char*> log;
  std::function<void(MoveWorld&)> prepare;
};

const char* const kOldHome = "\\\\FS1\\jo$";
const char* const kNewHome = "\\\\FS2\\jo$";
const Names kOldShares = {"jo$", "jo.prf$"};

/// The question of the second half of `prepare` is answered No.
void ask(MoveWorld& world, const char* text) {
  world.session.multi_user.No_Prompt.value = 0;
  world.dialogs.expect(text, platform::Answer::kNo);
}

const Case kCases[] = {
    {"a copy leaves the source and takes its shares",
     kCopy,
     true,
     kWhole,
     kWhole,
     {},
     kNewHome,
     {"Profile Copied from \\\\FS1\\jo.prf$ to \\\\FS2\\jo.prf$\n", "Home Dir Copied from "},
     {}},
    {"nothing leaves the data and repoints the account",
     kNothing,
     true,
     kWhole,
     kFolders,
     kOldShares,
     kNewHome,
     {"Created New Home Dir: \\\\FS2\\D$\\Users\\jo\n", "Creating Home Share: jo$\n",
      "User Moved Completed\n"},
     {}},
    {"the old home is missing and the person declines",
     kMove,
     false,
     kEmpty,
     kEmpty,
     {},
     kOldHome,
     {"Cannot Find Users Home Directory\nMove Cancelled\n"},
     [](MoveWorld& world) {
       for (const char* const share : {"jo$", "jo.prf$"})
         world.services.network.NetShareDel("FS1", share);
       std::filesystem::remove_all(world.server_folder("FS1/D/Users/jo"));
       std::filesystem::remove_all(world.server_folder("FS1/D/Profiles/jo"));
       ask(world, "Cannot find Users Existing Home Dir\r\nDo you want to continue ?");
     }},
    {"the new home is there and the person declines",
     kMove,
     false,
     kWhole,
     {"Users/", "Users/jo/", "Profiles/"},
     kOldShares,
     kOldHome,
     {"Home Directory \\\\FS2\\D$\\Users\\jo Already Exist \nUser move cancelled.\n"},
     [](MoveWorld& world) {
       std::filesystem::create_directories(world.server_folder("FS2/D/Users/jo"));
       ask(world, "Home Dir \\\\FS2\\D$\\Users\\jo Already Exist \r\nContinue ?");
     }},
    {"the new profile is there and the person declines",
     kMove,
     false,
     kWhole,
     kFolders,
     kOldShares,
     kOldHome,
     {"Created New Home Dir: ",
      "Profile Directory \\\\FS2\\D$\\Profiles\\jo Already Exist \nUser cancelled move.\n"},
     [](MoveWorld& world) {
       std::filesystem::create_directories(world.server_folder("FS2/D/Profiles/jo"));
       ask(world, "Profile Dir \\\\FS2\\D$\\Profiles\\jo Already Exist");
     }},
    {"the new home cannot be made",
     kMove,
     false,
     kWhole,
     {"Profiles/"},
     kOldShares,
     kOldHome,
     {"Error Creating Home dir :\\\\FS2\\D$\\Users\\jo\nError Number: 76\n"},
     [](MoveWorld& world) { std::filesystem::remove_all(world.server_folder("FS2/D/Users")); }},
    {"the share of the profile is not made: nothing is removed",
     kMove,
     true,
     kWhole,
     {"Users/", "Users/jo/", "Users/jo/a.txt", "Users/jo/Mail/", "Users/jo/Mail/b.txt", "Profiles/",
      "Profiles/jo/"},
     {"jo.prf$"},
     kNewHome,
     {"Error Creating Profile Share: jo.prf$\n",
      "Could Not copy Profile because the New Profile Share was not created...\nNot removing any profile "
      "shares "
      "or deleting Dirs.\nError Copying Profile Dir ",
      "Home Dir Copied from "},
     [](MoveWorld& world) { world.share("FS2", "jo.prf$", "D:\\Users"); }},
    {"the share of the home is not made: its data stays",
     kMove,
     true,
     {"Users/", "Users/jo/", "Users/jo/a.txt", "Users/jo/Mail/", "Users/jo/Mail/b.txt", "Profiles/"},
     {"Users/", "Users/jo/", "Profiles/", "Profiles/jo/", "Profiles/jo/NTUser.dat"},
     {"jo$"},
     kNewHome,
     {"Could Not copy Home because the New Home Share was not created...\nNot removing any home shares or "
      "deleting Dirs.\n"},
     [](MoveWorld& world) { world.share("FS2", "jo$", "D:\\Users"); }},
    {"new shares that are open to everybody: the old shares and their folders stay",
     kMove,
     true,
     kFolders,
     kWhole,
     kOldShares,
     kNewHome,
     {"Error Creating Home Share: jo$\n", "Home Dir moved from ",
      "Unable to Delete Home Dir: \\\\FS1\\D$\\Users\\jo\n"},
     [](MoveWorld& world) {
       world.session.platform.files.remove(world.session.form1.dbpath.text.get() + "SharePerm.dat");
     }},
    {"a link in the home is not copied, and all of it stays",
     kMove,
     true,
     {"Users/", "Users/jo/", "Users/jo/a.txt", "Users/jo/Mail/", "Users/jo/Mail/b.txt", "Users/jo/Mail/out",
      "Profiles/"},
     {"Users/", "Users/jo/", "Profiles/", "Profiles/jo/", "Profiles/jo/NTUser.dat"},
     {},
     kNewHome,
     {"Mail\\out is a link, which is not copied\nError Copying Home Dir ",
      "Not Deleting Home Dir: \\\\FS1\\D$\\Users\\jo Due to error copying data\n"},
     [](MoveWorld& world) {
       std::filesystem::create_directory_symlink("/etc", world.server_folder("FS1/D/Users/jo/Mail/out"));
     }},
    {"a file cannot be copied",
     kMove,
     true,
     {"Users/", "Users/jo/", "Users/jo/a.txt", "Users/jo/Mail/", "Users/jo/Mail/b.txt", "Profiles/"},
     {"Users/", "Users/jo/", "Users/jo/a.txt/", "Profiles/", "Profiles/jo/", "Profiles/jo/NTUser.dat"},
     {},
     kNewHome,
     {"a.txt", "Error Copying Home Dir ", " Due to error copying data\n"},
     [](MoveWorld& world) {
       std::filesystem::create_directories(world.server_folder("FS2/D/Users/jo/a.txt"));
     }},
    {"the account cannot be written: the data has moved",
     kMove,
     false,
     kEmpty,
     kWhole,
     {},
     kOldHome,
     {"Error Setting User Details, Can't find Domain PDC..\nError Number: "},
     [](MoveWorld& world) {
       world.directory.before = test::fail_at("SetInfo", 1, platform::ads_error::kServerDown);
     }},
    {"the user cannot be read",
     kMove,
     false,
     kWhole,
     kEmpty,
     kOldShares,
     kOldHome,
     {"Error Getting Users Details, Check PDC/Network Connection\nError Number: "},
     [](MoveWorld& world) {
       world.directory.before = [path = world.path_of("jo")](std::string_view operation,
                                                             std::string_view on) {
         if (operation == "GetObject" && base::equals_fold(on, path))
           base::raise(platform::ads_error::kServerDown, "no");
       };
     }}};

TEST_P(MoveUser, WhatFailsLeavesTheSourceWholeAndIsTold) {
  for (const Case& one : kCases) {
    SCOPED_TRACE(one.name);
    MoveWorld world(GetParam());
    world.start_at_own_shares(one.data);
    if (one.prepare)
      one.prepare(world);
    EXPECT_EQ(world.move(), one.moved);
    world.directory.before = {};
    EXPECT_EQ(world.tree("FS1/D"), one.old_tree);
    EXPECT_EQ(world.tree("FS2/D"), one.new_tree);
    EXPECT_EQ(world.shares("FS1"), one.old_shares);
    EXPECT_EQ(world.property("jo", "HomeDirectory"), one.home);
    for (const char* const text : one.log)
      EXPECT_THAT(world.log(), HasSubstr(text));
  }
}

TEST_P(MoveUser, ProfilesThatAreNotTheUsersStayWhereTheyAre) {
  const struct {
    const char* profile;
    const char* log;
  } cases[] = {{"\\\\FS1\\jo.prf$\\nt.man", "Unable to Move Mandatory Profiles.\n"},
               {"\\\\FS1\\NetLogon\\jo", "Unable to Move Profile From NETLOGON directory.\n"},
               {"%LOGONSERVER%\\jo", "Unable to Move Profile From %LOGONSERVER%.\n"}};
  for (const auto& one : cases) {
    SCOPED_TRACE(one.profile);
    MoveWorld world(GetParam());
    world.put("FS1/D/Profiles/jo/nt.man/f");
    world.start_at(kOldHome, one.profile, kMove);
    EXPECT_TRUE(world.move());
    EXPECT_TRUE(world.there("FS1/D/Profiles/jo/nt.man/f"));
    EXPECT_FALSE(world.there("FS1/D/Users/jo"));
    EXPECT_EQ(world.property("jo", "Profile"), "\\\\FS2\\jo.prf$");
    EXPECT_THAT(world.log(), HasSubstr(one.log));
  }
}

TEST_P(MoveUser, MoveToWhereTheUserIsTouchesNothing) {
  for (const char* const home : {"\\\\FS1\\Users\\jo", "\\\\FS1\\D$\\Users\\jo", "\\\\FS1\\Users2\\jo"}) {
    SCOPED_TRACE(home);
    MoveWorld world(GetParam());
    world.site.NTServer = "FS1";
    world.staff.HomeDir = "\\\\%Server%\\Users\\%UserName%";
    world.staff.HomeShare = world.staff.ProfileShare = "";
    world.staff.ProfileDirPath = world.staff.ProfilePath = "";
    for (const char* const share : {"jo$", "jo.prf$"})
      world.services.network.NetShareDel("FS1", share);
    world.share("FS1", "Users", "D:\\Users");
    world.share("FS1", "Users2", "D:\\Users");
    world.start_at(home, "", kMove);
    world.move();
    EXPECT_EQ(world.tree("FS1/D"), kWhole);
    EXPECT_THAT(world.log(), HasSubstr("Error Copying Home Dir "));
  }
}

TEST_P(MoveUser, FilesOfTheTargetAreReplacedWhenThePersonAgrees) {
  for (const bool yes : {true, false}) {
    MoveWorld world(GetParam());
    world.put("FS2/D/Users/jo/a.txt", "older");
    world.start_at_own_shares(kMove);
    world.session.multi_user.No_Prompt.value = 0;
    world.dialogs.expect("Home Dir \\\\FS2\\D$\\Users\\jo Already Exist", platform::Answer::kYes);
    world.dialogs.expect("already contains a file named\r\n\\\\FS2\\jo$\\a.txt",
                         yes ? platform::Answer::kYes : platform::Answer::kNo);
    EXPECT_TRUE(world.move());
    EXPECT_EQ(test::get_file(world.server_folder("FS2/D/Users/jo/a.txt").string()), yes ? "aaaa" : "older");
    EXPECT_EQ(world.there("FS1/D/Users/jo/a.txt"), !yes);
  }
}

/// Presses Cancel at the n-th turn of the message loop.
class CancellingDialogs final : public platform::Dialogs {
 public:
  platform::Answer MsgBox(std::string_view, platform::Buttons, platform::Icon, std::string_view) override {
    return platform::Answer::kYes;
  }
  std::string InputBox(std::string_view, std::string_view, bool) override { return {}; }
  std::optional<std::string> open_file(std::string_view, std::string_view) override { return {}; }
  void beep() override {}
  void DoEvents() override {
    if (on_events)
      on_events();
  }
  std::function<void()> on_events;
};

TEST(MoveManyFiles, CancelBetweenFilesLeavesTheSourceWhole) {
  CancellingDialogs dialogs;
  test::LabSession world(DomainKind::kNative, "", &dialogs);
  const auto users = world.folder.path() / "servers/FS1/D/Users";
  std::filesystem::create_directories(users / "jo");
  std::filesystem::create_directories(users / "new");
  for (int i = 0; i < 200; ++i)
    test::put_file((users / "jo" / std::to_string(i)).string(), "text");
  world.start();
  std::vector<std::string> told;
  const auto& text = world.session.multi_user.progress.caption;
  const auto watch = text.watch([&] { told.push_back(text.get()); });
  dialogs.on_events = [&] { world.session.import.ImportStopped = told.size() >= 2; };
  world.session.runs.Move_Running = true;
  EXPECT_FALSE(File_Operation(world.session, "\\\\FS1\\D$\\Users\\jo\\*.*", "\\\\FS1\\D$\\Users\\new",
                              FileWork::kMove));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(users / "jo"), {}), 200);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(users / "new"), {}), 64);
  EXPECT_EQ(told.back(), "Moving \\\\FS1\\D$\\Users\\jo: 64 of 200 files, 256 bytes of 800 bytes");
}

TEST_P(MoveUser, RehearsalTellsTheStepsInOrderAndChangesNothing) {
  MoveWorld world(GetParam());
  world.start_at_own_shares(kMove);
  std::vector<std::string> steps;
  const auto tell = [&](const std::string& step) { steps.push_back(step); };
  Rehearsal rehearsal(world.session.platform, tell);
  session::Session rehearsed(rehearsal.services(), "", world.session.program_directory);
  rehearsed.DirectoryMode = world.session.DirectoryMode;
  rehearsed.DomainName = world.session.DomainName;
  rehearsed.NTDomainName = world.session.NTDomainName;
  rehearsed.form1.dbpath.text = world.session.form1.dbpath.text.get();
  rehearsed.form1.chkAdmin_Shares.value = 1;
  rehearsed.multi_user.Multi_Site.text = std::string("Head Office");
  rehearsed.multi_user.Multi_Template.text = stores::padded_template_name("Staff");
  rehearsed.multi_user.No_Prompt.value = 1;
  rehearsed.runs.Move_Running = true;
  rehearsed.runs.rehearse = tell;
  EXPECT_TRUE(Move_One_User(rehearsed, world.key()));
  const auto at = [&](std::string_view text) {
    const auto found = std::find_if(steps.begin(), steps.end(),
                                    [&](const std::string& step) { return step.find(text) != base::npos; });
    EXPECT_NE(found, steps.end()) << text << " in " << testing::PrintToString(steps);
    return found - steps.begin();
  };
  std::vector<std::ptrdiff_t> places;
  for (const char* const text :
       {"Make the folder \\\\FS2\\D$\\Users\\jo", "Make the folder \\\\FS2\\D$\\Profiles\\jo",
        "Make the share jo.prf$ on FS2", "Make the share jo$ on FS2",
        "Move what \\\\FS1\\jo.prf$ holds to \\\\FS2\\jo.prf$: 1 files", "lanmanserver/jo.prf$",
        "Remove the folder \\\\FS1\\D$\\Profiles\\jo",
        "Move what \\\\FS1\\jo$ holds to \\\\FS2\\jo$: 2 files, 7 bytes", "lanmanserver/jo$",
        "Remove the folder \\\\FS1\\D$\\Users\\jo", "HomeDirectory = \\\\FS2\\jo$"})
    places.push_back(at(text));
  EXPECT_TRUE(std::is_sorted(places.begin(), places.end())) << testing::PrintToString(steps);
  EXPECT_EQ(world.tree("FS1/D"), kWhole);
  EXPECT_EQ(world.tree("FS2/D"), kEmpty);
  EXPECT_EQ(world.shares("FS1"), kOldShares);
  EXPECT_EQ(world.property("jo", "HomeDirectory"), kOldHome);
}

}  // namespace
}  // namespace twk::lifecycle
