#include "lifecycle/move/move_user.hpp"

#include "lifecycle/lifecycle_world.hpp"
#include "lifecycle/rehearsal/rehearsal.hpp"
#include "lifecycle/trees/file_operation.hpp"
#include "lifecycle/trees/folder_use.hpp"
#include "session/account_windows.hpp"
#include "session/form1.hpp"
#include "session/multi_user.hpp"
#include "session/run_scope.hpp"
#include "stores/side_tables.hpp"
#include "windows/multi_user/move_tab.hpp"

namespace twk::lifecycle {
namespace {

using lab::DomainKind;
using test::LifecycleWorld;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using Names = std::set<std::string>;

enum class Moved { kNot, kWithWarnings, kWholly };

Moved moved(const session::RunOutcome& outcome) {
  if (!outcome.done)
    return Moved::kNot;
  return outcome.light == session::kGreen ? Moved::kWholly : Moved::kWithWarnings;
}

/// jo moves from her own shares on FS1 to the site's server FS2, where the template also makes shares.
class MoveWorld : public LifecycleWorld {
 public:
  explicit MoveWorld(DomainKind kind) : LifecycleWorld(kind) {
    site.NTServer = "FS2";
    staff.HomeDir = "\\\\%Server%\\%UserName%$";
    staff.HomeShare = "%UserName%$";
    staff.ProfilePath = "\\\\%Server%\\%UserName%.prf$";
    staff.ProfileShare = "%UserName%.prf$";
    fill();
  }
  void fill() {
    put("FS1/D/Users/jo/a.txt", "aaaa");
    put("FS1/D/Users/jo/Mail/b.txt", "bbb");
    put("FS1/D/Profiles/jo/NTUser.dat");
    share("FS1", "jo$", "D:\\Users\\jo");
    share("FS1", "jo.prf$", "D:\\Profiles\\jo");
  }
  /// Everything as before the first move.
  void put_back() {
    for (const std::string server : {"FS1", "FS2"}) {
      for (const std::string& name : shares(server))
        services.network.NetShareDel(server, name);
      for (const char* const name : {"/D/Users/jo", "/D/Profiles/jo"})
        std::filesystem::remove_all(server_folder(server + name));
    }
    fill();
    const platform::ObjectPtr jo = account("jo");
    jo->Put("HomeDirectory", "\\\\FS1\\jo$");
    jo->Put("Profile", "\\\\FS1\\jo.prf$");
    jo->SetInfo();
    session.form1.ListView1.clear();
  }
  void start_at(const std::string& home, const std::string& profile, int data) {
    set("Setup", "BatchFileMove", "moved.cmd %Domain% %NTServer% %UserName%");
    start_with(home, profile);
    stores::write_permissions(session, "SharePerm.dat",
                              std::vector{records::PermissionRecord{false, "Everyone", "Full Control", ""}});
    session::MultiUser& window = session.multi_user;
    window.Multi_Site.text = std::string("Head Office");
    window.Multi_Template.text = records::padded_template_name("Staff");
    window.UserData.index = data;
  }
  void start_at_own_shares(int data) { start_at("\\\\FS1\\jo$", "\\\\FS1\\jo.prf$", data); }
  Moved move() { return move_of(key()); }
  Moved move_of(const std::string& who) {
    MoveOrder order = windows::move_order(session);
    order.terms = with_silence(order.terms.silent);
    return moved(Move_One_User(session, who, order, view));
  }
  /// Steps and outcome of the same move rehearsed.
  std::pair<std::vector<std::string>, Moved> rehearse() {
    std::vector<std::string> steps;
    const auto tell = [&](const std::string& step) { steps.push_back(step); };
    Rehearsal rehearsal(session.platform, tell);
    session::Session rehearsed(rehearsal.services(), "", session.program_directory);
    rehearsed.DirectoryMode = session.DirectoryMode;
    rehearsed.DomainName = session.DomainName;
    rehearsed.NTDomainName = session.NTDomainName;
    rehearsed.dbpath = session.dbpath;
    MoveOrder order = windows::move_order(session);
    order.terms = with_silence(true);
    order.terms.rehearse = tell;
    const Moved outcome = moved(Move_One_User(rehearsed, key(), order, view));
    EXPECT_EQ(outcome == Moved::kNot, steps.empty() || steps.back().starts_with("Refused: "));
    return {steps, outcome};
  }
  /// Whether a rehearsal can know how the move ends.
  [[nodiscard]] bool is_foreseeable() const {
    return !files.before && !directory.before && network.refused_share.empty() && !dialogs.on_events &&
           session.multi_user.No_Prompt.on();
  }
  void write_template() {
    test::put_file((folder.path() / "db/Template.dat").string(), records::encode_template(staff));
  }
  void set_profile(const std::string& path) {
    const platform::ObjectPtr jo = account("jo");
    jo->Put("Profile", path);
    jo->SetInfo();
  }
  /// As if "jo" no longer had folders on FS1.
  void lose_old_folders() {
    for (const std::string name : {"Users/jo", "Profiles/jo"})
      std::filesystem::remove_all(server_folder("FS1/D/" + name));
    for (const char* const share : {"jo$", "jo.prf$"})
      services.network.NetShareDel("FS1", share);
  }
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
  EXPECT_EQ(world.move(), Moved::kWholly);
  EXPECT_EQ(world.tree("FS1/D"), kEmpty);
  EXPECT_EQ(world.tree("FS2/D"), kWhole);
  EXPECT_EQ(world.shares("FS1"), Names());
  EXPECT_EQ(world.shares("FS2"), (Names{"jo$", "jo.prf$"}));
  EXPECT_EQ(world.property("jo", "HomeDirectory"), "\\\\FS2\\jo$");
  EXPECT_EQ(world.property("jo", "Profile"), "\\\\FS2\\jo.prf$");
  EXPECT_EQ(world.property("jo", world.is_nt() ? "HomeDirDrive" : "HomeDrive"), "H:");
  EXPECT_EQ(world.property("jo", "LoginScript"), "staff.cmd");
  EXPECT_THAT(world.groups_of("jo"), testing::Contains(world.is_nt() ? "Staff" : "CN=Staff"));
  EXPECT_THAT(world.process.commands,
              testing::ElementsAre(testing::ElementsAre("moved.cmd", world.session.DomainName, "FS2", "jo")));
  EXPECT_THAT(world.log_tab(), testing::ElementsAre("GREEN  jo Moved"));
}

constexpr Moved kNotMoved = Moved::kNot;
constexpr Moved kWarned = Moved::kWithWarnings;
constexpr Moved kMoved = Moved::kWholly;

/// A move, what it leaves on both servers, and what it reports.
struct Case {
  const char* name;
  int data;
  Moved outcome;
  Names old_tree;
  Names new_tree;
  Names old_shares;
  const char* home;  ///< of the account afterwards
  const char* row;   ///< of the log tab, a part of it; empty for none
  std::vector<const char*> log;
  std::function<void(MoveWorld&)> prepare;
};

const char* const kOldHome = "\\\\FS1\\jo$";
const char* const kNewHome = "\\\\FS2\\jo$";
const Names kOldShares = {"jo$", "jo.prf$"};
const Names kHomeOnly = {"Users/",         "Users/jo/",           "Users/jo/a.txt",
                         "Users/jo/Mail/", "Users/jo/Mail/b.txt", "Profiles/"};

Names with(Names names, std::initializer_list<const char*> more) {
  names.insert(more.begin(), more.end());
  return names;
}

/// The question of the second half of `prepare` is answered No.
void ask(MoveWorld& world, const char* text) {
  world.session.multi_user.No_Prompt.value = 0;
  world.dialogs.expect(text, platform::Answer::kNo);
}

void link_in_home(MoveWorld& world) {
  std::filesystem::create_directory_symlink("/etc", world.server_folder("FS1/D/Users/jo/Mail/out"));
}

void with_new_paths(MoveWorld& world) {
  world.terms.new_paths_anyway = session::Consent::kYes;
}

const Case kCases[] = {
    {"a copy leaves the source and takes its shares",
     kCopy,
     kMoved,
     kWhole,
     kWhole,
     {},
     kNewHome,
     "GREEN  jo Moved",
     {"Profile Copied from \\\\FS1\\jo.prf$ to \\\\FS2\\jo.prf$\n", "Home Dir Copied from "},
     {}},
    {"a profile in the home goes its own way alone",
     kMove,
     kMoved,
     {"Users/", "Profiles/", "Profiles/jo/", "Profiles/jo/NTUser.dat"},
     {"Users/", "Users/jo/", "Users/jo/a.txt", "Profiles/", "Profiles/jo/", "Profiles/jo/b.txt"},
     {"jo.prf$"},
     kNewHome,
     "GREEN  jo Moved",
     {},
     [](MoveWorld& world) { world.set_profile("\\\\FS1\\D$\\Users\\jo\\Mail"); }},
    {"nothing leaves the data and repoints the account",
     kNothing,
     kMoved,
     kWhole,
     kFolders,
     kOldShares,
     kNewHome,
     "GREEN  jo Moved",
     {"Created New Home Dir: \\\\FS2\\D$\\Users\\jo\n", "Creating Home Share: jo$\n",
      "User Moved Completed\n"},
     {}},
    {"the command does not start",
     kMove,
     kWarned,
     kEmpty,
     kWhole,
     {},
     kNewHome,
     "YELLOW  jo Moved: Error Running File: moved.cmd",
     {"User Moved Completed\n"},
     [](MoveWorld& world) {
       world.session.multi_user.Run_CMD.value = 1;
       world.process.result = {0, "nothing there"};
     }},
    {"the old home is missing and the person declines",
     kMove,
     kNotMoved,
     kEmpty,
     kEmpty,
     {},
     kOldHome,
     "",
     {"Cannot Find Users Home Directory\nMove Cancelled\n"},
     [](MoveWorld& world) {
       world.lose_old_folders();
       ask(world, "Cannot find Users Existing Home Dir\r\nDo you want to continue ?");
     }},
    {"the old folders are missing on a server that answers",
     kMove,
     kWarned,
     kEmpty,
     kFolders,
     {},
     kNewHome,
     "YELLOW  jo Moved: Could not find: \\\\FS1\\jo.prf$ For copying.; Could not find: ",
     {"Error Copying Home Dir "},
     [](MoveWorld& world) { world.lose_old_folders(); }},
    {"the new home is there and the person declines",
     kMove,
     kNotMoved,
     kWhole,
     {"Users/", "Users/jo/", "Profiles/"},
     kOldShares,
     kOldHome,
     "",
     {"Home Directory \\\\FS2\\D$\\Users\\jo Already Exist \nUser move cancelled.\n"},
     [](MoveWorld& world) {
       std::filesystem::create_directories(world.server_folder("FS2/D/Users/jo"));
       ask(world, "Home Dir \\\\FS2\\D$\\Users\\jo Already Exist \r\nContinue ?");
     }},
    {"the new profile is there and the person declines",
     kMove,
     kNotMoved,
     kWhole,
     kFolders,
     kOldShares,
     kOldHome,
     "",
     {"Created New Home Dir: ",
      "Profile Directory \\\\FS2\\D$\\Profiles\\jo Already Exist \nUser cancelled move.\n"},
     [](MoveWorld& world) {
       std::filesystem::create_directories(world.server_folder("FS2/D/Profiles/jo"));
       ask(world, "Profile Dir \\\\FS2\\D$\\Profiles\\jo Already Exist");
     }},
    {"the new home cannot be made",
     kMove,
     kNotMoved,
     kWhole,
     kEmpty,
     kOldShares,
     kOldHome,
     "RED  Error Home Profile Directory.",
     {"Error Creating Home dir :\\\\FS2\\D$\\Users\\jo\nError Number: 70\n"},
     [](MoveWorld& world) {
       world.files.before = [](std::string_view path) {
         if (path == "\\\\FS2\\D$\\Users\\jo")
           base::raise(base::error::kPermissionDenied, "no");
       };
     }},
    {"a new share stands for the new folder already",
     kMove,
     kMoved,
     kEmpty,
     kWhole,
     {},
     kNewHome,
     "GREEN  jo Moved",
     {"The share already exists: jo$\n"},
     [](MoveWorld& world) {
       std::filesystem::create_directories(world.server_folder("FS2/D/Users/jo"));
       world.share("FS2", "jo$", "D:\\Users\\jo");
     }},
    {"new shares that a move which broke off has made, one in the other's folder",
     kMove,
     kMoved,
     kEmpty,
     with(kHomeOnly, {"Users/jo/prf/", "Users/jo/prf/NTUser.dat"}),
     {},
     kNewHome,
     "GREEN  jo Moved",
     {},
     [](MoveWorld& world) {
       world.staff.ProfileDirPath = "D:\\Users\\%UserName%\\prf";
       world.write_template();
       std::filesystem::create_directories(world.server_folder("FS2/D/Users/jo/prf"));
       world.share("FS2", "jo.prf$", "D:\\Users\\jo\\prf");
     }},
    {"the share of the home is not made",
     kMove,
     kNotMoved,
     kWhole,
     kFolders,
     kOldShares,
     kOldHome,
     "RED  User jo was not moved: ",
     {"Error Creating Home Share: jo$\n"},
     [](MoveWorld& world) { world.network.refused_share = "jo$"; }},
    {"the share of the profile is not made, and the account gets its new paths: nothing is removed",
     kMove,
     kWarned,
     kWhole,
     with(kHomeOnly, {"Profiles/jo/"}),
     {"jo.prf$"},
     kNewHome,
     "YELLOW  jo Moved: ",
     {"Error Creating Profile Share: jo.prf$\n",
      "Could Not copy Profile because the New Profile Share was not created...\nNot removing any profile "
      "shares or deleting Dirs.\nError Copying Profile Dir ",
      "Home Dir Copied from "},
     [](MoveWorld& world) {
       world.network.refused_share = "jo.prf$";
       with_new_paths(world);
     }},
    {"the share of the home is not made, and the account gets its new paths: its data stays",
     kMove,
     kWarned,
     kHomeOnly,
     with(kFolders, {"Profiles/jo/NTUser.dat"}),
     {"jo$"},
     kNewHome,
     "YELLOW  jo Moved: ",
     {"Could Not copy Home because the New Home Share was not created...\nNot removing any home shares or "
      "deleting Dirs.\n"},
     [](MoveWorld& world) {
       world.network.refused_share = "jo$";
       with_new_paths(world);
     }},
    {"new shares that are open to everybody: the old shares and their folders stay",
     kMove,
     kWarned,
     kFolders,
     kWhole,
     kOldShares,
     kNewHome,
     "YELLOW  jo Moved: ",
     {"Error Creating Home Share: jo$\n", "Home Dir moved from ",
      "Unable to Delete Home Dir: \\\\FS1\\D$\\Users\\jo: "},
     [](MoveWorld& world) { world.session.platform.files.remove(world.session.dbpath + "SharePerm.dat"); }},
    {"a link in the home is not copied, and all of it stays",
     kMove,
     kNotMoved,
     with(kWhole, {"Users/jo/Mail/out"}),
     with(kFolders, {"Profiles/jo/NTUser.dat"}),
     kOldShares,
     kOldHome,
     "RED  User jo was not moved: File operation failed: \\\\FS1\\jo$\\Mail\\out is a link, which is not "
     "copied",
     {"Error Copying Home Dir ", "Profile Copied from "},
     link_in_home},
    {"a link in the home, and the account gets its new paths",
     kMove,
     kWarned,
     with(kHomeOnly, {"Users/jo/Mail/out"}),
     with(kFolders, {"Profiles/jo/NTUser.dat"}),
     {"jo$"},
     kNewHome,
     "YELLOW  jo Moved: File operation failed: ",
     {"Error Copying Home Dir ", "Not Deleting Home Dir: \\\\FS1\\jo$ Due to error copying data\n"},
     [](MoveWorld& world) {
       link_in_home(world);
       with_new_paths(world);
     }},
    {"two names that are one on a server",
     kMove,
     kNotMoved,
     with(kWhole, {"Users/jo/A.txt"}),
     with(kFolders, {"Profiles/jo/NTUser.dat"}),
     kOldShares,
     kOldHome,
     "\\\\FS1\\jo$ holds both A.txt and a.txt, which are one name on a server",
     {},
     [](MoveWorld& world) { world.put("FS1/D/Users/jo/A.txt", "another"); }},
    {"a folder stands where a file goes",
     kMove,
     kNotMoved,
     kWhole,
     {"Users/", "Users/jo/", "Users/jo/a.txt/", "Profiles/", "Profiles/jo/", "Profiles/jo/NTUser.dat"},
     kOldShares,
     kOldHome,
     "a.txt exists and is a folder",
     {},
     [](MoveWorld& world) {
       std::filesystem::create_directories(world.server_folder("FS2/D/Users/jo/a.txt"));
     }},
    {"the copying is stopped, whatever is wanted of failed ones",
     kMove,
     kNotMoved,
     kWhole,
     with(kFolders, {"Profiles/jo/NTUser.dat"}),
     kOldShares,
     kOldHome,
     "RED  User jo was not moved: The copying was stopped",
     {"Error Copying Profile Dir "},
     [](MoveWorld& world) {
       world.dialogs.on_events = [&world] { world.session.run.stopped = true; };
       with_new_paths(world);
     }},
    {"the account cannot be written when the data has moved",
     kMove,
     kNotMoved,
     kEmpty,
     kWhole,
     {},
     kOldHome,
     "RED  Error Setting User Details, Can't find Domain PDC..",
     {},
     [](MoveWorld& world) {
       world.directory.before = test::fail_at("SetInfo", 2, platform::ads_error::kServerDown);
     }},
    {"a group refuses the user",
     kMove,
     kWarned,
     kEmpty,
     kWhole,
     {},
     kNewHome,
     "YELLOW  jo Moved: Not added to the group Staff: ",
     {},
     [](MoveWorld& world) {
       world.session.multi_user.Add_to_Groups.value = 1;
       world.directory.before = test::fail_at("Add", 1, platform::ads_error::kAccessDenied);
     }},
    {"the user cannot be read",
     kMove,
     kNotMoved,
     kWhole,
     kEmpty,
     kOldShares,
     kOldHome,
     "RED  Error Getting ",
     {"Error Getting Users Details, Check PDC/Network Connection\nError Number: "},
     [](MoveWorld& world) {
       world.directory.before = [path = world.path_of("jo")](std::string_view operation,
                                                             std::string_view on) {
         if (operation == "GetObject" && base::equals_fold(on, path))
           base::raise(platform::ads_error::kServerDown, "no");
       };
     }}};

class MoveEnds : public testing::TestWithParam<DomainKind> {};
INSTANTIATE_TEST_SUITE_P(Kinds, MoveEnds, testing::Values(DomainKind::kNative, DomainKind::kNt),
                         test::kind_name);

/// What is found out before the first change: the row of the log tab, and its cause.
struct Refusal {
  const char* row;
  std::function<void(MoveWorld&)> prepare;
};

const Refusal kRefusals[] = {
    {"Template.dat is missing or holds no template \"Staff\"",
     [](MoveWorld& world) { std::filesystem::remove(world.folder.path() / "db/Template.dat"); }},
    {"Site.dat",
     [](MoveWorld& world) {
       std::filesystem::remove(world.folder.path() / "db/Site.dat");
       std::filesystem::create_directory(world.folder.path() / "db/Site.dat");
     }},
    {"\\\\FS2\\D$\\Users cannot be reached: ",
     [](MoveWorld& world) { std::filesystem::remove_all(world.server_folder("FS2/D/Users")); }},
    {"The share jo$ on FS2 is taken: it leads to D:\\Users",
     [](MoveWorld& world) { world.share("FS2", "jo$", "D:\\Users"); }},
    {"FS2 has no share jo$, to which ",
     [](MoveWorld& world) {
       world.staff.HomeShare = "";
       world.write_template();
     }},
    {"\\\\FS2\\D$\\Users\\jo is not one account's own",
     [](MoveWorld& world) {
       world.add_user("ann", "\\\\FS2\\D$\\Users\\jo");
       std::filesystem::create_directories(world.server_folder("FS2/D/Users/jo"));
     }},
    {"\\\\FS2\\D$\\Users\\jo is a link, which is not followed",
     [](MoveWorld& world) {
       std::filesystem::create_directory_symlink("../Profiles", world.server_folder("FS2/D/Users/jo"));
     }},
    {"The new home \\\\FS2\\jo$ is inside the old one, \\\\FS2\\Users",
     [](MoveWorld& world) {
       world.share("FS2", "Users", "D:\\Users");
       world.set_home("jo", "\\\\FS2\\Users");
     }},
    {"The home \\\\FS9\\jo$: There is no file server FS9",
     [](MoveWorld& world) { world.set_home("jo", "\\\\FS9\\jo$"); }},
    {"\"C:\\jo\" is not a path that data can be copied from",
     [](MoveWorld& world) { world.set_home("jo", "C:\\jo"); }},
    {"Error Setting User Details, Can't find Domain PDC..", [](MoveWorld& world) {
       world.directory.before = test::fail_at("SetInfo", 1, platform::ads_error::kAccessDenied);
     }}};

TEST_P(MoveEnds, WhatCanBeFoundOutIsRefusedBeforeTheFirstChange) {
  for (const Refusal& one : kRefusals) {
    SCOPED_TRACE(one.row);
    MoveWorld world(GetParam());
    world.start_at_own_shares(kMove);
    world.terms.even_if_shared = world.terms.new_paths_anyway = session::Consent::kNo;
    one.prepare(world);
    const std::string home = world.property("jo", "HomeDirectory");
    const Names fresh = world.tree("FS2/D");
    EXPECT_TRUE(world.directory.before || world.rehearse().second == kNotMoved);
    EXPECT_EQ(world.move(), kNotMoved);
    EXPECT_EQ(world.tree("FS1/D"), kWhole);
    EXPECT_EQ(world.tree("FS2/D"), fresh);
    EXPECT_EQ(world.shares("FS1"), kOldShares);
    EXPECT_EQ(world.property("jo", "HomeDirectory"), home);
    EXPECT_THAT(world.log_tab(),
                testing::ElementsAre(AllOf(testing::StartsWith("RED "), HasSubstr(one.row))));
  }
}

TEST_P(MoveEnds, AFailureLeavesTheSourceCompleteAndIsReported) {
  for (const Case& one : kCases) {
    SCOPED_TRACE(one.name);
    MoveWorld world(GetParam());
    world.start_at_own_shares(one.data);
    if (one.prepare)
      one.prepare(world);
    if (GetParam() == DomainKind::kNative && world.is_foreseeable()) {
      const Names trees[] = {world.tree("FS1/D"), world.tree("FS2/D")};
      EXPECT_EQ(world.rehearse().second, one.outcome);
      EXPECT_EQ(world.tree("FS1/D"), trees[0]);
      EXPECT_EQ(world.tree("FS2/D"), trees[1]);
      EXPECT_EQ(world.property("jo", "HomeDirectory"), kOldHome);
    }
    EXPECT_EQ(world.move(), one.outcome);
    world.directory.before = {};
    EXPECT_EQ(world.tree("FS1/D"), one.old_tree);
    EXPECT_EQ(world.tree("FS2/D"), one.new_tree);
    EXPECT_EQ(world.shares("FS1"), one.old_shares);
    EXPECT_EQ(world.property("jo", "HomeDirectory"), one.home);
    const std::vector<std::string> rows = world.log_tab();
    EXPECT_EQ(rows.empty(), one.row[0] == '\0');
    EXPECT_THAT(rows.empty() ? std::string() : rows.back(), HasSubstr(one.row));
    for (const char* const text : one.log)
      EXPECT_THAT(world.log(), HasSubstr(text));
  }
}

TEST_P(MoveUser, WithoutDataIsReportedInYellow) {
  MoveWorld world(GetParam());
  world.start_at("", "", kMove);
  EXPECT_EQ(world.move(), kWarned);
  EXPECT_THAT(world.log_tab(),
              testing::ElementsAre(
                  "YELLOW  jo Moved: No data was moved: the account has neither a home nor a profile"));
}

TEST_P(MoveUser, ProfilesThatAreNotTheUsersStayWhereTheyAre) {
  const struct {
    const char* profile;
    const char* log;
  } cases[] = {{"\\\\FS1\\jo.prf$\\nt.man", "Unable to Move Mandatory Profiles.\n"},
               {"\\\\FS1\\jo.prf$\\nt.MAN\\ ", "Unable to Move Mandatory Profiles.\n"},
               {"\\\\FS1\\NetLogon\\jo", "Unable to Move Profile From NETLOGON directory.\n"},
               {"%LOGONSERVER%\\jo", "Unable to Move Profile From %LOGONSERVER%.\n"}};
  for (const auto& one : cases) {
    SCOPED_TRACE(one.profile);
    MoveWorld world(GetParam());
    world.put("FS1/D/Profiles/jo/nt.man/f");
    world.start_at(kOldHome, one.profile, kMove);
    EXPECT_EQ(world.move(), kWarned);
    EXPECT_TRUE(world.there("FS1/D/Profiles/jo/nt.man/f"));
    EXPECT_FALSE(world.there("FS1/D/Users/jo"));
    EXPECT_EQ(world.property("jo", "Profile"), "\\\\FS2\\jo.prf$");
    EXPECT_THAT(world.log(), HasSubstr(one.log));
  }
}

TEST_P(MoveUser, MoveToWhereTheUserIsTouchesNothing) {
  for (const char* const home : {"\\\\FS1\\Users\\jo", "\\\\FS1\\D$\\Users\\jo", "\\\\fs1\\Users2\\jo"}) {
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
    EXPECT_EQ(world.move(), kMoved);
    EXPECT_EQ(world.tree("FS1/D"), kWhole);
    EXPECT_EQ(world.property("jo", "HomeDirectory"), "\\\\FS1\\Users\\jo");
  }
}

/// A different file of the same name in the target.
TEST_P(MoveUser, FilesOfTheTargetAreReplacedWhenThePersonAgrees) {
  for (const bool yes : {true, false}) {
    MoveWorld world(GetParam());
    world.put("FS2/D/Users/jo/a.txt", "older");
    world.start_at_own_shares(kMove);
    world.session.multi_user.No_Prompt.value = 0;
    world.dialogs.expect("Home Dir \\\\FS2\\D$\\Users\\jo Already Exist", platform::Answer::kYes);
    world.dialogs.expect("already contains a file named\r\n\\\\FS2\\jo$\\a.txt",
                         yes ? platform::Answer::kYes : platform::Answer::kNo);
    if (!yes)
      world.dialogs.expect("Give jo the new paths anyway?", platform::Answer::kNo);
    EXPECT_EQ(world.move(), yes ? kMoved : kNotMoved);
    EXPECT_EQ(world.dialogs.last_icon, yes ? platform::Icon::kQuestion : platform::Icon::kExclamation);
    EXPECT_EQ(test::get_file(world.server_folder("FS2/D/Users/jo/a.txt").string()), yes ? "aaaa" : "older");
    EXPECT_EQ(world.there("FS1/D/Users/jo/a.txt"), !yes);
    EXPECT_EQ(world.property("jo", "HomeDirectory"), yes ? kNewHome : kOldHome);
  }
}

/// Two users who are moved to one folder in a run: the first one's files are not replaced.
TEST_P(MoveUser, FilesOfAnotherUserInOneFolderAreNeverReplaced) {
  for (const session::Consent consent : {session::Consent::kNo, session::Consent::kYes}) {
    MoveWorld world(GetParam());
    world.staff.HomeDir = "\\\\%Server%\\Common";
    world.staff.HomeShare = "Common";
    world.staff.HomeDirPath = "D:\\Users\\Common";
    world.staff.ProfileDirPath = world.staff.ProfilePath = world.staff.ProfileShare = "";
    world.put("FS1/D/Users/ann/a.txt", "ann's");
    world.share("FS1", "ann$", "D:\\Users\\ann");
    world.add_user("ann", "\\\\FS1\\ann$");
    world.start_at(kOldHome, "", kMove);
    world.terms.even_if_shared = consent;
    const KnownFolders known(world.session);
    EXPECT_EQ(world.move(), kMoved);
    EXPECT_EQ(
        world.move_of(world.is_nt() ? "ann" : "LDAP://twk.test/CN=ann," + std::string(test::kNewStarters)),
        kNotMoved);
    EXPECT_THAT(world.log_tab().back(),
                HasSubstr(consent == session::Consent::kNo ? "is not one account's own"
                                                           : "a.txt already exists and is a different file"));
    EXPECT_EQ(test::get_file(world.server_folder("FS2/D/Users/Common/a.txt").string()), "aaaa");
    EXPECT_EQ(test::get_file(world.server_folder("FS1/D/Users/ann/a.txt").string()), "ann's");
    EXPECT_EQ(world.shares("FS1"), (Names{"ann$", "jo.prf$"}));
  }
}

TEST(MoveOwners, FilesKeepTheirOwners) {
  MoveWorld world(DomainKind::kNative);
  world.start_at_own_shares(kMove);
  platform::Security& security = world.services.security;
  constexpr std::uint32_t kOwner = platform::security_information::kOwner;
  platform::SecurityDescriptor jo;
  jo.owner = security.LookupAccountName("", "jo").sid;
  const auto token = security.OpenProcessToken();
  const std::uint64_t restore = security.LookupPrivilegeValue(platform::privilege::kRestore);
  token->AdjustTokenPrivileges(restore, true);
  for (const char* const path : {"a.txt", "Mail", "Mail\\b.txt"})
    security.SetFileSecurity("\\\\FS1\\jo$\\" + std::string(path), kOwner, jo);
  token->AdjustTokenPrivileges(restore, false);
  EXPECT_EQ(world.move(), kMoved);
  for (const char* const path : {"a.txt", "Mail", "Mail\\b.txt"})
    EXPECT_EQ(security.GetFileSecurity("\\\\FS2\\jo$\\" + std::string(path), kOwner, 4096).owner, jo.owner)
        << path;
}

/// Each call on a file or an object fails in turn, once and from then on. Nothing may be lost, and the same
/// move, run again, completes the work.
TEST(MoveFaults, NothingIsLostAndASecondTryEndsTheWork) {
  MoveWorld world(DomainKind::kNative);
  world.start_at_own_shares(kMove);
  const auto attempt = [&world](bool lasting, int call) {
    SCOPED_TRACE(call);
    world.put_back();
    int calls = 0;
    const auto step = [&](std::string_view what) {
      if (++calls == call || (lasting && calls > call))
        base::raise(base::error::kDiskFull, "no room for " + std::string(what));
    };
    world.files.before = [&](std::string_view path) {
      if (path.starts_with("\\\\"))
        step(path);
    };
    world.directory.before = [&](std::string_view operation, std::string_view) { step(operation); };
    const Moved outcome = world.move();
    world.files.before = {};
    world.directory.before = {};
    Names kept = world.tree("FS1/D");
    const Names fresh = world.tree("FS2/D");
    EXPECT_EQ(world.property("jo", "HomeDirectory"), outcome == kNotMoved ? kOldHome : kNewHome);
    kept.insert(fresh.begin(), fresh.end());
    EXPECT_THAT(kept, testing::IsSupersetOf(kWhole)) << world.log();
    const bool untouched = world.tree("FS1/D") == kWhole;
    EXPECT_TRUE(!untouched || world.shares("FS1") == kOldShares) << world.log();
    EXPECT_TRUE(outcome == kNotMoved || testing::Value(fresh, testing::IsSupersetOf(kWhole))) << world.log();
    EXPECT_EQ(outcome == kMoved, world.log_tab().back().starts_with("GREEN"));
    world.move();
    EXPECT_EQ(world.property("jo", "HomeDirectory"), kNewHome) << world.log();
    EXPECT_EQ(world.tree("FS2/D"), kWhole) << world.log();
    return calls >= call;
  };
  for (const bool lasting : {false, true}) {
    int call = 1;
    while (attempt(lasting, call))
      ++call;
    EXPECT_GT(call, 40);
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
  test::KeptView view(world.session);
  const session::RunScope scope(world.session, {.silent = true}, view);
  dialogs.on_events = [&] { world.session.run.stopped = view.told.size() >= 2; };
  EXPECT_FALSE(File_Operation(world.session, "\\\\FS1\\D$\\Users\\jo\\*.*", "\\\\FS1\\D$\\Users\\new",
                              FileWork::kMove));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(users / "jo"), {}), 200);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(users / "new"), {}), 64);
  EXPECT_EQ(view.told.back(), "Moving \\\\FS1\\D$\\Users\\jo: 64 of 200 files, 256 bytes of 800 bytes");
}

TEST_P(MoveUser, RehearsalReportsTheStepsInOrderAndChangesNothing) {
  MoveWorld world(GetParam());
  world.put("FS2/D/Users/jo/a.txt", "older");
  world.start_at_own_shares(kMove);
  const auto [steps, outcome] = world.rehearse();
  EXPECT_EQ(outcome, kMoved);
  std::size_t next = 0;
  for (const char* const text :
       {"Make the folder \\\\FS2\\D$\\Profiles\\jo", "Make the share jo.prf$ on FS2",
        "Make the share jo$ on FS2", "Copy what \\\\FS1\\jo.prf$ holds to \\\\FS2\\jo.prf$: 1 file, ",
        "Copy what \\\\FS1\\jo$ holds to \\\\FS2\\jo$: 2 files, 7 bytes, replacing 1",
        "Remove what \\\\FS1\\jo.prf$ holds", "lanmanserver/jo.prf$",
        "Remove the folder \\\\FS1\\D$\\Profiles\\jo", "Remove what \\\\FS1\\jo$ holds", "lanmanserver/jo$",
        "Remove the folder \\\\FS1\\D$\\Users\\jo", "HomeDirectory = \\\\FS2\\jo$"}) {
    while (next < steps.size() && steps[next].find(text) == base::npos)
      ++next;
    EXPECT_LT(next, steps.size()) << text << " in " << testing::PrintToString(steps);
  }
  EXPECT_EQ(world.tree("FS1/D"), kWhole);
  EXPECT_EQ(world.tree("FS2/D"), (Names{"Users/", "Users/jo/", "Users/jo/a.txt", "Profiles/"}));
  EXPECT_EQ(world.shares("FS1"), kOldShares);
  EXPECT_EQ(world.property("jo", "HomeDirectory"), kOldHome);
}

}  // namespace
}  // namespace twk::lifecycle
