#include "windows/state/account_windows.hpp"
#include "controls/tree_view.hpp"
#include "directory/tree/tree.hpp"
#include "screens/screen_test.hpp"
#include "support/details_world.hpp"
#include "windows/state/form1.hpp"
#include "windows/tree/find_user.hpp"

namespace twk::test {
namespace {

class AccountWindows : public ScreenTest {
 protected:
  explicit AccountWindows(lab::DomainKind kind = lab::DomainKind::kNative) : ScreenTest(kind) {}
  void open_with_jo() {
    add_jo(lab);
    open();
    lab.session.form1.TreeView1.select(&node_of_jo(lab));
  }
};

class NtAccountWindows : public AccountWindows {
 protected:
  NtAccountWindows() : AccountWindows(lab::DomainKind::kNt) {}
};

TEST_F(AccountWindows, RenameStaysOpenWhileANameIsRefusedAndOkSetsTheNewOnes) {
  open_with_jo();
  expect_window([&](QWidget& shown) {
    EXPECT_EQ(shown.objectName(), "RenameUser");
    EXPECT_EQ(find<QComboBox>("AD_Domain", &shown)->currentText(), "@twk.test");
    EXPECT_EQ(find<QLabel>("WINNT_Domain", &shown)->text(), "TWK\\");
    const std::pair<const char*, const char*> fields[] = {
        {"Full_Name", "Marsh, Ann"},      {"First_Name", "Ann"},
        {"Last_Name", "Marsh"},           {"Display_Name", "Ann M"},
        {"User_logon_name", "ann.marsh"}, {"Logon_Name_pre2000", "admin"}};
    for (const auto& [field, text] : fields)
      type(field, text, &shown);
    expect_box("Check user logon name");
    click("Command2", &shown);
    EXPECT_TRUE(shown.isVisible());
    type("Logon_Name_pre2000", "amarsh", &shown);
    click("Command2", &shown);
  });
  find<QAction>("mnupopup6")->trigger();
  EXPECT_EQ(lab.session.form1.TreeView1.selected()->text, "Marsh, Ann");
  for (const auto& [name, value] : {std::pair("cn", "Marsh, Ann"),
                                    {"givenName", "Ann"},
                                    {"sn", "Marsh"},
                                    {"displayName", "Ann M"},
                                    {"userPrincipalName", "ann.marsh@twk.test"}})
    EXPECT_EQ(lab.property("amarsh", name), value);
}

TEST_F(AccountWindows, TheSearchShowsTheStateOfWhomItFoundAndCopiesThemAsCsv) {
  open_with_jo();
  platform::User account(lab.account("jo"));
  account.put_AccountDisabled(true);
  account.SetInfo();
  expect_window([&](QWidget& shown) {
    type("txtFind", "Jo", &shown);
    click("btnGo", &shown);
    screens::ListPane& list = pane("ListView1", &shown);
    EXPECT_TRUE(list.model()->index(0, 0).data(Qt::FontRole).value<QFont>().strikeOut());
    QTest::keySequence(&list, QKeySequence::Copy);
    const QString copied = QGuiApplication::clipboard()->text();
    EXPECT_TRUE(copied.startsWith("Name,Location,Logon name,State")) << copied.toStdString();
    EXPECT_TRUE(copied.contains(",jo,disabled")) << copied.toStdString();
    shown.close();
  });
  windows::Find_User(lab.session);
}

TEST_F(NtAccountWindows, RenameOfAFlatDomainTakesNameAndFullName) {
  open_with_jo();
  expect_window([&](QWidget& shown) {
    EXPECT_EQ(shown.objectName(), "Rename_NT");
    type("User_Logon", "ann", &shown);
    type("Full_Name", "Ann Marsh", &shown);
    click("OKButton", &shown);
  });
  find<QAction>("mnupopup6")->trigger();
  EXPECT_EQ(lab.property("ann", "FullName"), "Ann Marsh");
}

TEST_F(AccountWindows, WorkstationIsAskedForAndCancelForgetsIt) {
  open_with_jo();
  for (const char* const button : {"OKButton", "CancelButton"}) {
    expect_window([&](QWidget& shown) {
      EXPECT_EQ(shown.windowTitle(), "Delete WKS Profile");
      type("WKS_NAME1", "PC7", &shown);
      click("NT40", &shown);
      click(button, &shown);
    });
    find<QAction>("mnupopup9")->trigger();
    EXPECT_EQ(status(), "Unable to find \\\\PC7\\admin$\\profiles\\Jo Smith ...");
  }
  EXPECT_EQ(lab.session.wks_profile.WKS_Name, "");
}

TEST_F(AccountWindows, DeletionOfAProfileShowsItsProgressAndStopsAtCancel) {
  constexpr int kFiles = 500;
  open_with_jo();
  const std::filesystem::path folder = lab.folder.path() / "servers/PC7/C/Documents and Settings/Jo Smith";
  std::filesystem::create_directories(folder);
  for (int i = 0; i < kFiles; ++i)
    std::ofstream(folder / std::to_string(i)) << "x";
  const auto left = [&] {
    return std::distance(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator());
  };
  auto* const progress = find<QDialog>("FileProgress");
  QString told;
  QTimer person;
  QObject::connect(&person, &QTimer::timeout, [&] {
    if (!progress->isVisible() || find<QProgressBar>("done", progress)->value() == 0)
      return;
    told = find<QLabel>("text", progress)->text();
    EXPECT_FALSE(window->centralWidget()->isEnabled());
    person.stop();
    QTest::keyClick(progress, Qt::Key_Escape);
  });
  person.start(0);
  expect_window([&](QWidget& shown) {
    type("WKS_NAME1", "PC7", &shown);
    click("OKButton", &shown);
  });
  expect_box("500 files", QMessageBox::Yes);
  find<QAction>("mnupopup9")->trigger();
  EXPECT_TRUE(told.contains("of 500 files")) << told.toStdString();
  EXPECT_GT(left(), 0);
  EXPECT_LT(left(), kFiles);
  EXPECT_FALSE(progress->isVisible());
  EXPECT_TRUE(window->centralWidget()->isEnabled());
  EXPECT_EQ(status(), "Ready.");
}

TEST_F(AccountWindows, ResetOfThePasswordAsksFirst) {
  open_with_jo();
  expect_box("Reset Password for Jo Smith", QMessageBox::Yes);
  find<QAction>("mnupopup2")->trigger();
  EXPECT_EQ(status(), "Password for Jo Smith has Been Reset.");
}

}  // namespace
}  // namespace twk::test
