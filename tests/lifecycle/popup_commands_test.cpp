#include "windows/account/popup_commands.hpp"

#include "lifecycle/deletion/delete_profile.hpp"
#include "lifecycle/lifecycle_world.hpp"
#include "support/details_world.hpp"
#include "windows/state/account_windows.hpp"
#include "windows/state/form1.hpp"

namespace twk::windows {
namespace {

using lab::DomainKind;
using test::LifecycleWorld;
using testing::HasSubstr;
using testing::Not;

class PopupCommands : public testing::TestWithParam<DomainKind>, public LifecycleWorld {
 protected:
  PopupCommands() : LifecycleWorld(GetParam()) {}
};
INSTANTIATE_TEST_SUITE_P(Kinds, PopupCommands,
                         testing::Values(DomainKind::kNative, DomainKind::kMixed, DomainKind::kNt),
                         test::kind_name);

std::string panel(LifecycleWorld& world) {
  return world.session.form1.StatusBar1.panel1;
}

TEST_P(PopupCommands, PasswordIsResetAndTheAccountUnlocked) {
  set("Setup", "Password", "Start-%username%-26");
  start_with("", "");
  test::lock_jo(*this);
  const std::string name = node().text;
  EXPECT_TRUE(Reset_Password(session, node()));
  EXPECT_EQ(panel(*this), "Password for " + name + " has Been Reset.");
  EXPECT_THAT(log_tab(), testing::ElementsAre("GREEN  Password Reset For " + name));
  EXPECT_THAT(log(), HasSubstr("User:admin\nPassword Reset for: " + name + "\n"));
  EXPECT_THAT(log(), Not(HasSubstr("Start-")));
  EXPECT_FALSE(platform::User(account("jo")).IsAccountLocked());
}

TEST_P(PopupCommands, DebuggedSessionLogsThePassword) {
  LifecycleWorld world(GetParam(), "/DEBUG");
  world.start_with("", "");
  EXPECT_TRUE(Reset_Password(world.session, world.node()));
  EXPECT_THAT(world.log(), HasSubstr(" - Welcome-2026\n"));
}

TEST_P(PopupCommands, ResetAsksFirstAndAsksForThePassword) {
  set("Setup", "Password", "PROMPT");
  start_with("", "");
  session.form1.Confirm_Resets.value = 1;
  dialogs.expect("Reset Password for ", platform::Answer::kNo);
  EXPECT_FALSE(Reset_Password(session, node()));
  EXPECT_EQ(log(), "");
  dialogs.expect("Reset Password for ", platform::Answer::kYes);
  dialogs.expect_input("Enter User Password:", "Another-2026");
  EXPECT_TRUE(Reset_Password(session, node()));
  EXPECT_TRUE(dialogs.last_secret);
}

TEST_P(PopupCommands, PasswordThatTheDomainRefusesIsReported) {
  set("Setup", "Password", "x");
  start_with("", "");
  dialogs.beeps = 0;
  EXPECT_FALSE(Reset_Password(session, node()));
  EXPECT_THAT(panel(*this), testing::StartsWith("Error ReSetting Password... The password"));
  EXPECT_THAT(log(), HasSubstr("Error ReSetting Password for: "));
  EXPECT_EQ(dialogs.beeps, 1);
  EXPECT_TRUE(log_tab().empty());
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
  const std::string profile = is_nt() ? "jo" : "Jo Smith";
  put("PC7/C/Documents and Settings/" + profile + "/f");
  start_with("", "");
  dialogs.on_modal = [&](std::string_view window) {
    EXPECT_EQ(window, "WKS_PROFILE");
    session.wks_profile.WKS_NAME1.text = std::string("PC7");
    WKS_PROFILE_OKButton_Click(session);
  };
  dialogs.expect("remove the folder '" + profile + "'", platform::Answer::kYes);
  EXPECT_TRUE(Delete_WKS_Profile(session, node()));
  EXPECT_EQ(panel(*this), "Ready.");
  EXPECT_FALSE(there("PC7/C/Documents and Settings/" + profile));
  EXPECT_FALSE(Delete_WKS_Profile(session, node()));
  EXPECT_EQ(panel(*this), "Unable to find \\\\PC7\\c$\\Documents and Settings\\" + profile + " ...");
}

TEST_P(PopupCommands, WorkstationThatIsCancelledOrNoNameDoesNothing) {
  start_with("", "");
  dialogs.on_modal = [&](std::string_view) { WKS_PROFILE_CancelButton_Click(session); };
  EXPECT_FALSE(Delete_WKS_Profile(session, node()));
  const lifecycle::ProfileOrder order{node().text, node().key, {}};
  for (const char* const name : {"..", "PC7\\c$", "a b*"}) {
    EXPECT_FALSE(lifecycle::delete_workstation_profile(session, order, {name}, view));
    EXPECT_THAT(panel(*this), HasSubstr("do not make the path of a profile")) << name;
  }
  EXPECT_FALSE(lifecycle::delete_workstation_profile(session, order, {"\\\\PC7", true}, view));
  EXPECT_EQ(panel(*this), "Unable to find \\\\PC7\\admin$\\profiles\\" + node().text + " ...");
}

}  // namespace
}  // namespace twk::windows
