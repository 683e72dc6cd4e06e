#include "windows/account/popup_commands.hpp"

#include "lifecycle/deletion/delete_profile.hpp"
#include "lifecycle/lifecycle_world.hpp"
#include "session/account_windows.hpp"
#include "session/form1.hpp"
#include "support/details_world.hpp"

namespace twk::windows {
namespace {

using lab::DomainKind;
using test::LifecycleWorld;
using testing::HasSubstr;
using testing::Not;

class PopupCommands : public testing::TestWithParam<DomainKind> {};
INSTANTIATE_TEST_SUITE_P(Kinds, PopupCommands,
                         testing::Values(DomainKind::kNative, DomainKind::kMixed, DomainKind::kNt),
                         test::kind_name);

std::string panel(LifecycleWorld& world) {
  return world.session.form1.StatusBar1.panel1;
}

TEST_P(PopupCommands, PasswordIsResetAndTheAccountUnlocked) {
  LifecycleWorld world(GetParam());
  world.set("Setup", "Password", "Start-%username%-26");
  world.start_with("", "");
  test::lock_jo(world);
  const std::string name = world.node().text;
  EXPECT_TRUE(Reset_Password(world.session, world.node()));
  EXPECT_EQ(panel(world), "Password for " + name + " has Been Reset.");
  EXPECT_THAT(world.log_tab(), testing::ElementsAre("GREEN  Password Reset For " + name));
  EXPECT_THAT(world.log(), HasSubstr("User:admin\nPassword Reset for: " + name + "\n"));
  EXPECT_THAT(world.log(), Not(HasSubstr("Start-")));
  EXPECT_FALSE(platform::User(world.account("jo")).IsAccountLocked());
}

TEST_P(PopupCommands, DebuggedSessionLogsThePassword) {
  LifecycleWorld world(GetParam(), "/DEBUG");
  world.start_with("", "");
  EXPECT_TRUE(Reset_Password(world.session, world.node()));
  EXPECT_THAT(world.log(), HasSubstr(" - Welcome-2026\n"));
}

TEST_P(PopupCommands, ResetAsksFirstAndAsksForThePassword) {
  LifecycleWorld world(GetParam());
  world.set("Setup", "Password", "PROMPT");
  world.start_with("", "");
  world.session.form1.Confirm_Resets.value = 1;
  world.dialogs.expect("Reset Password for ", platform::Answer::kNo);
  EXPECT_FALSE(Reset_Password(world.session, world.node()));
  EXPECT_EQ(world.log(), "");
  world.dialogs.expect("Reset Password for ", platform::Answer::kYes);
  world.dialogs.expect_input("Enter User Password:", "Another-2026");
  EXPECT_TRUE(Reset_Password(world.session, world.node()));
  EXPECT_TRUE(world.dialogs.last_secret);
}

TEST_P(PopupCommands, PasswordThatTheDomainRefusesIsReported) {
  LifecycleWorld world(GetParam());
  world.set("Setup", "Password", "x");
  world.start_with("", "");
  world.dialogs.beeps = 0;
  EXPECT_FALSE(Reset_Password(world.session, world.node()));
  EXPECT_THAT(panel(world), testing::StartsWith("Error ReSetting Password... The password"));
  EXPECT_THAT(world.log(), HasSubstr("Error ReSetting Password for: "));
  EXPECT_EQ(world.dialogs.beeps, 1);
  EXPECT_TRUE(world.log_tab().empty());
}

TEST_P(PopupCommands, ProfileOnTheServerIsDeletedOrTheReasonShown) {
  const struct {
    const char* profile;
    const char* panel;
    bool asks;
    bool gone;
  } cases[] = {{"\\\\FS1\\Profiles\\jo", "Profile Deleted.", true, true},
               {"\\\\FS1\\Profiles\\jo", "Ready.", true, false},
               {"\\\\FS1\\jo.prf$", "Profile Deleted.", true, true},
               {"\\\\FS1\\Profiles\\jo.Man", "Unable to Delete Mandatory Profiles", false, false},
               {"\\\\FS1\\NetLogon\\jo", "Unable to Delete Profile from Netlogon Directory...", false, false},
               {"%logonserver%\\jo", "Unable to Delete Profile from %LOGONSERVER% ...", false, false},
               {"", "User Does not have a profile Path Set...", false, false},
               {"\\\\FS1\\Profiles\\none", "Profile Not found \\\\FS1\\Profiles\\none", false, false},
               {"\\\\FS1\\Profiles\\jo.MAN \\", "Unable to Delete Mandatory Profiles", false, false},
               {"\\\\FS1\\D$", "\\\\FS1\\D$ is an administrative share", false, false},
               {"\\\\FS1\\Profiles", "\\\\FS1\\Profiles is not one account's own", false, false}};
  for (const auto& one : cases) {
    SCOPED_TRACE(one.profile);
    LifecycleWorld world(GetParam());
    world.put("FS1/D/Profiles/jo/f");
    world.put("FS1/D/Profiles/ann/f");
    world.share("FS1", "Profiles", "D:\\Profiles");
    if (std::string_view(one.profile).find("jo.prf$") != base::npos ||
        std::string_view(one.profile).ends_with("Profiles"))
      world.share("FS1", "jo.prf$", "D:\\Profiles\\jo");
    world.start_with("", one.profile);
    if (one.asks) {
      world.dialogs.expect("and all its contents?",
                           one.gone ? platform::Answer::kYes : platform::Answer::kNo);
    }
    if (std::string_view(one.profile).ends_with("Profiles"))
      world.dialogs.expect("the share jo.prf$ (D:\\Profiles\\jo).\r\n\r\nContinue anyway?",
                           platform::Answer::kNo);
    EXPECT_EQ(Delete_Server_Profile(world.session, world.node()), one.gone);
    EXPECT_THAT(panel(world), testing::StartsWith(one.panel));
    EXPECT_EQ(world.there("FS1/D/Profiles/jo/f"), !one.gone);
    EXPECT_TRUE(world.there("FS1/D/Profiles/ann/f"));
  }
}

TEST_P(PopupCommands, ProfileOnAWorkstationIsFoundByItsKind) {
  LifecycleWorld world(GetParam());
  const std::string folder = world.is_nt() ? "jo" : "Jo Smith";
  world.put("PC7/C/Documents and Settings/" + folder + "/f");
  world.start_with("", "");
  world.dialogs.on_modal = [&](std::string_view window) {
    EXPECT_EQ(window, "WKS_PROFILE");
    world.session.wks_profile.WKS_NAME1.text = std::string("PC7");
    WKS_PROFILE_OKButton_Click(world.session);
  };
  world.dialogs.expect("remove the folder '" + folder + "'", platform::Answer::kYes);
  EXPECT_TRUE(Delete_WKS_Profile(world.session, world.node()));
  EXPECT_EQ(panel(world), "Ready.");
  EXPECT_FALSE(world.there("PC7/C/Documents and Settings/" + folder));
  EXPECT_FALSE(Delete_WKS_Profile(world.session, world.node()));
  EXPECT_EQ(panel(world), "Unable to find \\\\PC7\\c$\\Documents and Settings\\" + folder + " ...");
}

TEST_P(PopupCommands, WorkstationThatIsCancelledOrNoNameDoesNothing) {
  LifecycleWorld world(GetParam());
  world.start_with("", "");
  world.dialogs.on_modal = [&](std::string_view) { WKS_PROFILE_CancelButton_Click(world.session); };
  EXPECT_FALSE(Delete_WKS_Profile(world.session, world.node()));
  const lifecycle::ProfileOrder order{world.node().text, world.node().key, {}};
  for (const char* const name : {"..", "PC7\\c$", "a b*"}) {
    EXPECT_FALSE(lifecycle::delete_workstation_profile(world.session, order, {name}, world.view));
    EXPECT_THAT(panel(world), HasSubstr("do not make the path of a profile")) << name;
  }
  EXPECT_FALSE(lifecycle::delete_workstation_profile(world.session, order, {"\\\\PC7", true}, world.view));
  EXPECT_EQ(panel(world), "Unable to find \\\\PC7\\admin$\\profiles\\" + world.node().text + " ...");
}

}  // namespace
}  // namespace twk::windows
