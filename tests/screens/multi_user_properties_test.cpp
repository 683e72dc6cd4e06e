#include <QCompleter>

#include "screens/multi_user_screen.hpp"
#include "windows/state/multi_user.hpp"

namespace twk::test {
namespace {

class PropertiesTab : public MultiUserWindow {
 protected:
  void with_tab(const std::function<void(QWidget&)>& person) {
    with_window([&](QWidget& shown) {
      show_tab(shown, windows::multi_tab::kProperties);
      person(shown);
    });
  }
};

TEST_F(PropertiesTab, SyntaxAndFrameFollowWhatIsTyped) {
  with_tab([&](QWidget& shown) {
    auto* const frame = find<QGroupBox>("Multi_Value", &shown);
    type("AD_Properties", "othertelephone", &shown);
    EXPECT_EQ(text(shown, "Syntax"), "String:- Multi value");
    EXPECT_TRUE(frame->isEnabled());
    type("AD_Properties", "otherT", &shown);
    EXPECT_EQ(text(shown, "Syntax"), "");
    EXPECT_FALSE(frame->isEnabled());
  });
}

TEST_F(PropertiesTab, NamesAreOfferedByAnyPartOfThem) {
  with_tab([&](QWidget& shown) {
    auto* const box = find<QComboBox>("AD_Properties", &shown);
    type("AD_Properties", "telephone", &shown);
    QStringList offered;
    const QAbstractItemModel& matches = *box->completer()->completionModel();
    for (int row = 0; row < matches.rowCount(); ++row)
      offered << matches.index(row, 0).data().toString();
    EXPECT_TRUE(offered.contains("otherTelephone"));
    EXPECT_TRUE(offered.contains("telephoneNumber"));
    EXPECT_FALSE(offered.contains("title"));
    EXPECT_EQ(box->currentText(), "telephone") << "what is typed stays as it is";
    box->completer()->popup()->hide();
  });
}

TEST_F(PropertiesTab, ReplaceAndAppendAreChosenByTheirButtons) {
  with_tab([&](QWidget& shown) {
    take_all(shown);
    type("AD_Properties", "otherTelephone", &shown);
    for (const char* const number : {"11", "22"}) {
      type("AD_CHANGE", number, &shown);
      click("CHANGE_AD", &shown);
    }
    EXPECT_EQ(lab.account("ann")->Get("otherTelephone").list().size(), 2U);
    click("AD_Replace", &shown);
    type("AD_CHANGE", "33", &shown);
    click("CHANGE_AD", &shown);
    EXPECT_EQ(text(shown, "Label3"), "Properties changed for 3 users.");
    EXPECT_FALSE(find<QWidget>("ChangeProgress", &shown)->isVisible());
  });
  EXPECT_EQ(lab.account("ann")->Get("otherTelephone"), platform::Value("33"));
}

TEST_F(PropertiesTab, ARunIsTakenBackFromItsRowOfTheLogButForWhatChangedSince) {
  with_tab([&](QWidget& shown) {
    test::store(lab.account("ben"), {{"title", "Head"}});
    take_all(shown);
    type("AD_Properties", "title", &shown);
    type("AD_CHANGE", "Clerk", &shown);
    click("CHANGE_AD", &shown);
  });
  test::store(lab.account("cas"), {{"title", "Cook"}});
  window->tabs().setCurrentIndex(windows::tab::kLog);
  click_row("ListView1", " AD Property changed for 3 users.");
  expect_box("Take back 3 changes of this run?", QMessageBox::Yes);
  click("Undo_Run");
  EXPECT_EQ(status(), "2 changes of 3 taken back. The log has the reasons.");
  EXPECT_EQ(lab.property("ann", "title"), "");
  EXPECT_EQ(lab.property("ben", "title"), "Head");
  EXPECT_EQ(lab.property("cas", "title"), "Cook");
}

TEST_F(PropertiesTab, ChangeTurnsIntoCancelAndAPressOfItStops) {
  with_tab([&](QWidget& shown) {
    take_all(shown);
    type("AD_Properties", "title", &shown);
    type("AD_CHANGE", "Clerk", &shown);
    cancel_a_run(shown, "CHANGE_AD");
    EXPECT_EQ(text(shown, "Label3"), "Change Canceled. Properties changed for 1 users.");
    EXPECT_TRUE(find<QWidget>("AD_CHANGE", &shown)->isEnabled());
  });
}

TEST_F(PropertiesTab, ImportTakesTheFileThatIsChosen) {
  const std::string file = lab.folder / "titles.csv";
  put_file(file, "ben,Head, of Sales\n");
  with_tab([&](QWidget& shown) {
    type("AD_Properties", "title", &shown);
    expect_box("Format must be Username,ADValue");
    expect_file(file);
    click("DELIMPORT", &shown);
    EXPECT_EQ(text(shown, "Label3"), "Import of AD Properties has completed, check log for errors");
  });
  EXPECT_EQ(lab.property("ben", "title"), "Head, of Sales");
}

/// In a WinNT domain users have no such properties.
class NtPropertiesTab : public ScreenTest {
 protected:
  NtPropertiesTab() : ScreenTest(lab::DomainKind::kNt) {}
};

TEST_F(NtPropertiesTab, DoesNotExistAndTheListOfUsersHasTheStateOfEach) {
  const platform::ObjectPtr guest = lab.services.directory.GetObject("WinNT://TWK/Guest");
  store(guest, {{"FullName", "A Guest"}, {"UserFlags", 0x202}});
  open();
  expect_window([&](QWidget& shown) {
    EXPECT_FALSE(find<QTabWidget>("SSTab1", &shown)->isTabVisible(windows::multi_tab::kProperties));
    QStringList cells;
    const QAbstractItemModel& users = *pane("ListView2", &shown).model();
    for (int column = 0; column < users.columnCount(); ++column) {
      cells.append(users.headerData(column, Qt::Horizontal).toString() + "=" +
                   users.match(users.index(0, 0), Qt::DisplayRole, "Guest")
                       .value(0)
                       .siblingAtColumn(column)
                       .data()
                       .toString());
    }
    EXPECT_EQ(cells.join(", ").toStdString(),
              "Name=Guest, Full name=A Guest, Description=Built-in account for guest access, State=disabled");
    click("Command7", &shown);
  });
  find<QAction>("mnuOption1")->trigger();
}

}  // namespace
}  // namespace twk::test
