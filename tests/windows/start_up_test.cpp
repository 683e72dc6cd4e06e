#include "windows/start_up.hpp"

#include "session/settings.hpp"
#include "support/lab_session.hpp"
#include "support/world.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/import_windows.hpp"

namespace twk::windows {
namespace {

class StartUpWithoutADomain : public test::TestWorld {
 protected:
  StartUpWithoutADomain() { session.program_directory = database.path().string(); }
};

TEST_F(StartUpWithoutADomain, TheFirstRunSaysWhatToDo) {
  EXPECT_EQ(start_session(session), StartUp::kReady);
  EXPECT_EQ(status(), "Must Enter Setup Details...");
  EXPECT_EQ(session.form1.TreeView1.first()->text, "%Domain%");
  EXPECT_EQ(session.form1.SSTab1, windows::tab::kSetup);
  EXPECT_EQ(setting("Version", "DBVersion"), "2.4");
  EXPECT_TRUE(posix_files.exists(session.dbpath + "Mail.dat"));
  EXPECT_EQ(session.form1.ListView9.size(), 13U);
  EXPECT_FALSE(session.splash.visible);
}

TEST_F(StartUpWithoutADomain, ADomainThatDoesNotAnswerLeavesTheRestUsable) {
  set("Setup", "Domain", "twk.test");
  EXPECT_EQ(start_session(session), StartUp::kReady);
  EXPECT_EQ(status(), "Can't Find Domain Controller.");
  EXPECT_EQ(session.form1.TreeView1.size(), 0U);
}

TEST_F(StartUpWithoutADomain, FilesOfAnOlderGenerationAreConvertedBeforeTheyAreRead) {
  const test::WorkingDirectory working(database.path());
  set("Version", "DBVersion", "2.3");
  test::put_file(database / "Permissions.dat", std::string(64, ' '));
  dialogs.expect("older versions of Permissions.dat & SharePerm.dat");
  dialogs.expect("Conversion Complete");
  EXPECT_EQ(start_session(session), StartUp::kReady);
  EXPECT_EQ(setting("Version", "DBVersion"), "2.4");
  EXPECT_EQ(test::get_file(database / "Permissions.dat").size(), 114U);
}

TEST_F(StartUpWithoutADomain, FilesThatCannotBeConvertedAreNotRead) {
  const test::WorkingDirectory working(database.path());
  set("Version", "DBVersion", "2.3");
  test::put_file(database / "Permissions.dat", std::string(64, ' '));
  test::put_file(database / "Permissions.v24", "kept");
  dialogs.expect("older versions of Permissions.dat & SharePerm.dat");
  dialogs.expect("Error converting Permissions.dat");
  EXPECT_THROW(start_session(session), base::RuntimeError);
  EXPECT_FALSE(posix_files.exists(session.dbpath + "Mail.dat"));
  EXPECT_EQ(setting("Version", "DBVersion"), "2.3");
}

TEST(StartUp, CaptionsAndFieldsAreThoseOfTheKindOfDomain) {
  for (const lab::DomainKind kind : {lab::DomainKind::kNative, lab::DomainKind::kNt}) {
    test::StartedLab world(kind);
    const Form1& form = world.session.form1;
    const bool nt = world.is_nt();
    EXPECT_EQ(form.Frame3.caption.get(), nt ? "User ID" : "CN and SamAccountName");
    EXPECT_EQ(form.mnuOption[4].visible.get(), !nt);
    EXPECT_EQ(form.UM_Logon_Name.visible.get(), !nt);
    EXPECT_THAT(form.DomName.items(), testing::Contains(world.session.DomainName));
  }
}

TEST(StartUp, LoadsTheDomainAndTheFirstSite) {
  test::StartedLab world;
  EXPECT_EQ(world.session.form1.NTSERVER.text.get(), "FS1");
  EXPECT_THAT(world.session.form1.nutemplate.items(),
              testing::ElementsAre(records::padded_template_name("Staff")));
}

TEST(StartUp, TheDebugSwitchIsTheWholeCommandLineInAnyCase) {
  for (const std::string_view command_line : {"", "/debug", "/DEBUG", "/DEBUG now", "/DEBUG1"}) {
    test::LabSession world(lab::DomainKind::kNative, command_line);
    start_session(world.session);
    EXPECT_EQ(world.session.form1.StatusBar1.panel1.get() == "Debug Mode.",
              base::equals_fold(command_line, "/DEBUG"));
    EXPECT_EQ(world.log().find("Domain Data Loaded") != base::npos,
              !command_line.empty() && command_line != "/DEBUG now");
  }
}

TEST(StartUp, TheRightsPreferenceCostsNoDirectoryCall) {
  test::LabSession world;
  world.set("Preferences", "CheckAdminRights", "Yes");
  world.directory.before = [](std::string_view operation, std::string_view path) {
    EXPECT_FALSE(operation == "IsMember" || path.ends_with("Domain Admins")) << path;
  };
  world.start();
  EXPECT_TRUE(world.session.form1.Domain_Admin.on());
}

}  // namespace
}  // namespace twk::windows
