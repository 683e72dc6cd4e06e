#include "windows/main_window.hpp"

#include "directory/tree/tree.hpp"
#include "session/settings.hpp"
#include "support/lab_session.hpp"
#include "windows/refresh.hpp"
#include "windows/start_up.hpp"
#include "windows/state/directory_windows.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/group_windows.hpp"
#include "windows/state/multi_user.hpp"
#include "windows/tree/tree_popup.hpp"

namespace twk::windows {
namespace {

using test::kNewStarters;
using test::LabSession;

/// The main window of a session that has started.
class MainWindow : public testing::Test {
 protected:
  [[nodiscard]] std::string status() const { return form.StatusBar1.panel1; }
  test::StartedLab lab;
  windows::Form1& form = lab.session.form1;
};

std::vector<int> enabled_entries(const windows::Form1& form) {
  std::vector<int> entries;
  for (std::size_t i = 0; i < form.mnupopup.size(); ++i) {
    if (form.mnupopup.at(i).visible && form.mnupopup.at(i).enabled && i != 1 && i != 3 && i != 7 && i != 11 &&
        i != 12) {
      entries.push_back(static_cast<int>(i));
    }
  }
  return entries;
}

controls::TreeNode& first_user(LabSession& lab) {
  lab.select("CN=Users,DC=twk,DC=test");
  for (controls::TreeNode* const node : lab.session.form1.TreeView1.selected()->children) {
    if (node->image == "USER")
      return *node;
  }
  throw std::logic_error("no user");
}

TEST_F(MainWindow, NewUserEmptiesItsTabAndPutsTheFocusIntoIt) {
  lab.type_names("John", "Fred", "Smith");
  form.run.caption = "Completed";
  form.Createdirs.colour = controls::kRed;
  form.ProgressBar1.value = 70;
  form.progress.caption = "Done";
  form.SSTab1 = windows::tab::kSite;
  std::string focus;
  const auto watch = form.SetFocus.watch([&](std::string_view name) { focus = name; });
  Toolbar1_ButtonClick(lab.session, "NewUser");
  EXPECT_EQ(form.strFirst.text.get() + form.StrMiddle.text.get() + form.strLast.text.get(), "");
  EXPECT_EQ(form.run.caption.get() + form.progress.caption.get(), "");
  EXPECT_EQ(form.Createdirs.colour, 0);
  EXPECT_EQ(form.ProgressBar1.value, 0);
  EXPECT_EQ(status(), "Ready.");
  EXPECT_EQ(form.SSTab1, windows::tab::kNewUser);
  EXPECT_EQ(focus, "strFirst");
}

TEST_F(MainWindow, AShownTabSaysWhatToDo) {
  for (const auto& [tab, text] :
       {std::pair(windows::tab::kSite, "Click on a site to edit"), {windows::tab::kLog, "Ready."}}) {
    form.SSTab1 = tab;
    SSTab1_Click(lab.session);
    EXPECT_EQ(status(), text);
  }
}

TEST_F(MainWindow, EachWayOutEndsAtOnce) {
  const std::vector<std::function<void(windows::Desktop&)>> ways = {
      [](windows::Desktop& session) { Toolbar1_ButtonClick(session, "Exit1"); },
      [](windows::Desktop& session) { mnuFile_Click(session, 5); },
      [](windows::Desktop& session) { Form_Unload(session); }};
  for (const auto& way : ways) {
    form.ended = false;
    way(lab.session);
    EXPECT_TRUE(form.ended);
  }
}

TEST_F(MainWindow, AnUnknownKeyOrIndexDoesNothing) {
  const std::string before = status();
  Toolbar1_ButtonClick(lab.session, "newuser");
  mnuFile_Click(lab.session, 4);
  mnuOption_Click(lab.session, 3);
  mnupopup_Click(lab.session, 12);
  EXPECT_EQ(status(), before);
  EXPECT_FALSE(form.ended);
}

TEST_F(MainWindow, WindowsAreFilledBeforeTheyAreShown) {
  std::vector<std::string> shown;
  lab.dialogs.on_modal = [&](std::string_view name) {
    shown.emplace_back(name);
    EXPECT_EQ(lab.session.ad_options.PageSize.text.get(), "1000");
  };
  lab.session.find_user.btnSelectuser.enabled = true;
  mnuOption_Click(lab.session, 2);
  Toolbar1_ButtonClick(lab.session, "FIND");
  EXPECT_THAT(shown, testing::ElementsAre("frmADOptions", "frmFindW2KUser"));
  EXPECT_FALSE(lab.session.find_user.btnSelectuser.enabled);
}

TEST_F(MainWindow, TheToolbarOpensTheWindowsOfManyUsersAndOfGroups) {
  std::vector<std::string> shown;
  lab.dialogs.on_modal = [&](std::string_view name) { shown.emplace_back(name); };
  Toolbar1_ButtonClick(lab.session, "MultiUser");
  EXPECT_THAT(shown, testing::ElementsAre("MultiUser"));
  Toolbar1_ButtonClick(lab.session, "Groups");
  EXPECT_TRUE(lab.session.groups.visible.get());
}

TEST(Popup, OffersWhatFitsTheNode) {
  LabSession lab;
  lab.set("Custom", "Menu", "Say hello");
  lab.set("Custom", "Script", "hello %UserName%");
  lab.set("Custom", "RUNHIDDEN", "No");
  lab.start();
  windows::Form1& form = lab.session.form1;
  const auto entries = [&](controls::TreeNode& node) {
    windows::POPUP(lab.session, node);
    EXPECT_EQ(form.TreeView1.selected(), &node);
    return enabled_entries(form);
  };
  EXPECT_THAT(entries(first_user(lab)), testing::Contains(13));
  EXPECT_THAT(entries(first_user(lab)), testing::Not(testing::Contains(10)));
  EXPECT_THAT(entries(first_user(lab)), testing::IsSupersetOf({4, 5}));
  EXPECT_THAT(entries(*form.TreeView1.find(kNewStarters)), testing::ElementsAre(10));
  EXPECT_THAT(entries(*form.TreeView1.first()), testing::ElementsAre(10));
  lab.session.ManageSubOUs = false;
  EXPECT_THAT(entries(*form.TreeView1.find(kNewStarters)), testing::IsEmpty());
}

TEST(Popup, CreatesNoOuInAWinNtDomain) {
  test::StartedLab lab(lab::DomainKind::kNt);
  windows::POPUP(lab.session, *lab.session.form1.TreeView1.first());
  EXPECT_FALSE(lab.session.form1.mnupopup[10].enabled);
}

TEST_F(MainWindow, RefreshReadsTheDomainAndTheDatabasesAgain) {
  lab.services.directory.GetObject("LDAP://twk.test")->Create("organizationalUnit", "OU=Late")->SetInfo();
  lab.type_names("John", "", "Smith");
  Toolbar1_ButtonClick(lab.session, "Refresh");
  EXPECT_NE(form.TreeView1.find("OU=Late,DC=twk,DC=test"), nullptr);
  EXPECT_EQ(form.TreeView1.selected(), form.TreeView1.first());
  EXPECT_EQ(form.NUsitename.items().size(), 1U);
  EXPECT_EQ(form.nutemplate.items().size(), 1U);
  EXPECT_EQ(form.ListView2.size(), 1U);
  EXPECT_EQ(lab.session.multi_user.Multi_Site.items().size(), 1U);
  EXPECT_EQ(form.strLast.text.get(), "Smith") << "what was typed is nobody's to clear";
}

TEST_F(MainWindow, RefreshWithoutAControllerLeavesTheTreeEmptyAndReadsTheSites) {
  lab.directory.before = [](std::string_view, std::string_view) {
    throw base::RuntimeError(platform::ads_error::kServerDown, "The server is not operational.");
  };
  Refresh(lab.session);
  EXPECT_EQ(form.TreeView1.size(), 0U);
  EXPECT_TRUE(form.ListView5.empty());
  EXPECT_EQ(form.ListView2.size(), 1U);
  EXPECT_EQ(form.nutemplate.items().size(), 1U);
  EXPECT_EQ(status(), "Can't Find Domain Controller.");
  lab.directory.before = {};
  Refresh(lab.session);
  EXPECT_GT(form.TreeView1.size(), 1U);
}

class CustomCommands : public testing::TestWithParam<lab::DomainKind> {};
INSTANTIATE_TEST_SUITE_P(Kinds, CustomCommands,
                         testing::Values(lab::DomainKind::kNative, lab::DomainKind::kNt), test::kind_name);

TEST_P(CustomCommands, RunForTheSelectedUser) {
  LabSession lab(GetParam());
  lab.set("Custom", "Menu1", "Greet");
  lab.set("Custom", "Script1", "greet %Domain% %username% %last%");
  lab.set("Custom", "RUNHIDDEN1", "yes");
  const platform::ObjectPtr jo = lab.is_nt()
                                     ? lab.services.directory.GetObject("WinNT://TWK")->Create("user", "jo")
                                     : lab.services.directory.GetObject("LDAP://CN=Users,DC=twk,DC=test")
                                           ->Create("user", "CN=Jo Anne Lee");
  jo->Put("FullName", "Jo Anne Lee");
  if (!lab.is_nt()) {
    jo->Put("samAccountName", "jo");
    jo->Put("LastName", "Lee");
  }
  jo->SetInfo();
  lab.start();
  if (!lab.is_nt())
    lab.select("CN=Users,DC=twk,DC=test");
  lab.select(lab.is_nt() ? "jo" : lab.path_of("jo"));
  mnupopup_Click(lab.session, 14);
  const std::string command = "greet " + lab.session.DomainName + " jo Lee";
  EXPECT_THAT(lab.process.commands,
              testing::ElementsAre(std::vector<std::string>{"greet", lab.session.DomainName, "jo", "Lee"}));
  EXPECT_THAT(lab.process.window_styles, testing::ElementsAre(0));
  EXPECT_THAT(lab.log_tab(), testing::ElementsAre("GREEN jo Command started: " + command));
  EXPECT_THAT(lab.log(), testing::HasSubstr("Running Script: " + command));

  lab.process.result = {0, "nothing there"};
  mnupopup_Click(lab.session, 14);
  EXPECT_EQ(lab.log_tab().back(), "YELLOW jo Error Running Command: " + command + ": nothing there");
}

TEST_F(MainWindow, CustomCommandsOfNobodyStartNothing) {
  mnupopup_Click(lab.session, 13);
  EXPECT_EQ(status(), "Select a user first.");
  controls::TreeNode& user = first_user(lab);
  lab.session.form1.TreeView1.select(&user);
  lab.directory.before = test::fail_at("GetObject", 1, platform::ads_error::kNoSuchObject);
  mnupopup_Click(lab.session, 13);
  EXPECT_TRUE(lab.process.commands.empty());
  EXPECT_THAT(lab.log_tab(), testing::ElementsAre(testing::StartsWith("RED Error reading user")));
}

TEST_F(MainWindow, ADoubleClickOpensAndClosesAnOu) {
  controls::TreeNode* const users = lab.session.form1.TreeView1.find("CN=Users,DC=twk,DC=test");
  TreeView1_DblClick(lab.session, *users);
  EXPECT_TRUE(users->expanded);
  EXPECT_TRUE(directory::is_read(lab.session.form1.TreeView1, *users));
  TreeView1_DblClick(lab.session, *users);
  EXPECT_FALSE(users->expanded);
}

}  // namespace
}  // namespace twk::windows
