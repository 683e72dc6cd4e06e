#include "windows/editors/edit_properties.hpp"

#include "stores/side_tables.hpp"
#include "support/world.hpp"
#include "windows/state/editor_windows.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/import_windows.hpp"

namespace twk::windows {
namespace {

class EditPropertiesTest : public test::TestWorld {
 protected:
  std::string get(std::string_view file) { return test::get_file(database / file); }
  /// The person at the window, who ends with OK unless told otherwise.
  void person(std::function<void()> fills, bool presses_ok = true) {
    dialogs.on_modal = [this, fills = std::move(fills), presses_ok](std::string_view shown) {
      EXPECT_EQ(shown, "Edit_Properties");
      fills();
      if (presses_ok)
        closed = Edit_Properties_OK(session);
      else
        Edit_Properties_Cancel(session);
    };
  }
  void types(std::string_view first, std::string_view second) {
    window.W2K_Attribute.text = std::string(first);
    window.W2K_Propertry.text = std::string(second);
  }
  static void select(controls::ListView& list, std::size_t place) { list.select(&list.at(place)); }

  windows::Form1& form1 = session.form1;
  windows::Edit_Properties& window = session.edit_properties;
  bool closed = false;
};

TEST_F(EditPropertiesTest, ADirectoryRowIsAddedChangedAndDeletedInTheFile) {
  person([&] {
    EXPECT_EQ(window.title.caption.get(), "Edit W2K Properties");
    EXPECT_EQ(window.Property.caption.get(), "Property");
    EXPECT_TRUE(window.kind.visible.get());
    EXPECT_TRUE(window.W2K_Person.value.get());
    types("title", "Dr, med");
  });
  Listviewmnu_New(session, mode::kW2k);
  EXPECT_EQ(get("W2K.dat"), "p,title,Dr, med\r\n");
  EXPECT_FALSE(window.EditPropertiesIsNew);

  person([&] {
    EXPECT_EQ(window.W2K_Attribute.text.get(), "title");
    EXPECT_EQ(window.W2K_Propertry.text.get(), "Dr, med");
    window.W2K_Person.value = false;
    window.W2K_2000.value = true;
    types("proxy", "x\u2192");
  });
  Listviewmnu_Edit(session, mode::kW2k);
  EXPECT_EQ(get("W2K.dat"), "\xEF\xBB\xBFm,proxy,x\u2192\r\n");
  EXPECT_EQ(form1.ListView7.at(0).icon, "MAIL");
  EXPECT_EQ(form1.ListView7.at(0).sub_items.front(), "x\u2192");

  form1.Confirm_Deletes.value = 1;
  dialogs.expect("Sure to Delete proxy", platform::Answer::kNo);
  Listviewmnu_Delete(session, mode::kW2k);
  EXPECT_EQ(form1.ListView7.size(), 1U);
  form1.Confirm_Deletes.value = 0;
  Listviewmnu_Delete(session, mode::kW2k);
  EXPECT_EQ(get("W2K.dat"), "");
}

TEST_F(EditPropertiesTest, ANewMailRowMayHaveAnEmptyNameAndACommaIsReportedButWritten) {
  person([&] {
    types("a,b", "c");
    W2K_Attribute_Change(session);
    EXPECT_NE(window.hint.caption.get(), "");
  });
  Listviewmnu_New(session, mode::kMail);
  person([&] { types("", "value"); });
  Listviewmnu_New(session, mode::kMail);
  EXPECT_EQ(get("Mail.dat"), "a,b,c\r\n,value\r\n");
  EXPECT_EQ(form1.ListView8.at(1).icon, "MAIL");
}

TEST_F(EditPropertiesTest, ARowBeyondTheMostThatIsReadBackIsRefused) {
  const struct {
    std::int32_t mode;
    controls::ListView& list;
    std::size_t most;
  } tables[] = {{mode::kMail, form1.ListView8, 49}, {mode::kVariables, session.variables.ListView1, 50}};
  for (const auto& table : tables) {
    for (std::size_t i = 1; i < table.most; ++i)
      table.list.add({}, "n", "MAIL", {"v"});
    person([&] { types("last", "w"); });
    Listviewmnu_New(session, table.mode);
    EXPECT_EQ(table.list.size(), table.most);
    dialogs.expect("at most " + std::to_string(table.most) + " rows");
    Listviewmnu_New(session, table.mode);
    EXPECT_EQ(table.list.size(), table.most);
  }
  EXPECT_EQ(window.title.caption.get(), "Edit Template Variables");
  EXPECT_FALSE(window.kind.visible.get());
}

TEST_F(EditPropertiesTest, CancelLeavesListAndFile) {
  form1.ListView8.add({}, "a", "MAIL", {"b"});
  select(form1.ListView8, 0);
  person([&] { types("x", "y"); }, false);
  Listviewmnu_Edit(session, mode::kMail);
  Listviewmnu_New(session, mode::kMail);
  EXPECT_EQ(test::texts(form1.ListView8), std::vector<std::string>{"a"});
  EXPECT_FALSE(files.exists(database / "Mail.dat"));
  EXPECT_FALSE(window.EditPropertiesIsNew);
}

TEST_F(EditPropertiesTest, WithoutASelectedRowNothingOpens) {
  form1.ListView8.add({}, "a", "MAIL", {"b"});
  Listviewmnu_Edit(session, mode::kMail);
  Listviewmnu_Delete(session, mode::kMail);
  EXPECT_EQ(form1.ListView8.size(), 1U);
}

TEST_F(EditPropertiesTest, AFileThatCannotBeWrittenIsReportedAndTheListStays) {
  for (const char* const name : {"a", "b", "c"})
    form1.ListView8.add({}, name, "MAIL", {"v"});
  select(form1.ListView8, 1);
  files.fail_from(1, base::error::kDiskFull);
  const std::vector<std::string> before = test::texts(form1.ListView8);
  closed = true;
  person([&] { types("x", "y"); });
  for (const auto& act : {Listviewmnu_New, Listviewmnu_Edit, Listviewmnu_Delete}) {
    dialogs.expect("Error Opening Mail.dat");
    act(session, mode::kMail);
    EXPECT_EQ(test::texts(form1.ListView8), before);
    ASSERT_NE(form1.ListView8.selected(), nullptr);
    EXPECT_EQ(form1.ListView8.place_of(*form1.ListView8.selected()), 1U);
  }
  EXPECT_FALSE(closed) << "what was typed is to stay in the window";
}

TEST_F(EditPropertiesTest, ControlCharactersAndTextsThatTheFileWouldCutAreRefused) {
  person([&] { types("a\nb", ""); });
  dialogs.expect("Control character U+000A not allowed");
  Listviewmnu_New(session, mode::kMail);
  person([&] { types("1234567890123456", ""); });
  dialogs.expect("Name has at most 15 characters");
  Listviewmnu_New(session, mode::kVariables);
  person([&] { types("\u00E9\u00E93456789012345", std::string(31, 'v')); });
  dialogs.expect("Value has at most 30 characters");
  Listviewmnu_New(session, mode::kVariables);
  EXPECT_FALSE(closed);
  EXPECT_TRUE(form1.ListView8.empty());
  EXPECT_TRUE(session.variables.ListView1.empty());
}

TEST_F(EditPropertiesTest, ARowThatIsLongerThanItsFieldStaysWhole) {
  const std::string value(300, 'v');
  form1.ListView8.add({}, "a", "MAIL", {value});
  select(form1.ListView8, 0);
  person([&] {
    EXPECT_EQ(window.W2K_Propertry_MaxLength, 300);
    window.W2K_Attribute.text = std::string("b");
  });
  Listviewmnu_Edit(session, mode::kMail);
  EXPECT_EQ(get("Mail.dat"), "b," + value + "\r\n");
}

TEST_F(EditPropertiesTest, ACustomRowIsEmptiedInsteadOfDeleted) {
  session.custom.ListView1.add({}, "Room", {}, {"roomNumber"});
  select(session.custom.ListView1, 0);
  Listviewmnu_New(session, mode::kCustom);
  Listviewmnu_Delete(session, mode::kCustom);
  ASSERT_EQ(session.custom.ListView1.size(), 1U);
  EXPECT_EQ(session.custom.ListView1.at(0).text, "");
  EXPECT_EQ(session.custom.ListView1.at(0).sub_items.front(), "");
}

TEST_F(EditPropertiesTest, TheLastLetterOfATerminalServerKeyPicksTheControl) {
  struct Case {
    std::size_t row;
    controls::ComboBox* box;
    std::string value;
  };
  const Case cases[] = {{0, nullptr, "\\\\%server%\\p"},
                        {2, &window.WTS_DRIVE_LETTER, "W:"},
                        {3, &window.WTS_YN, "No"},
                        {10, &window.WTS_TIME, "15 mins"}};
  for (const Case& one : cases) {
    select(form1.ListView9, one.row);
    person([&] {
      EXPECT_TRUE(window.W2K_Attribute.locked.get());
      EXPECT_EQ(window.W2K_Propertry.visible.get(), one.box == nullptr);
      for (controls::ComboBox* const box : {&window.WTS_YN, &window.WTS_DRIVE_LETTER, &window.WTS_TIME})
        EXPECT_EQ(box->visible.get(), box == one.box) << one.row;
      if (one.box == nullptr) {
        window.W2K_Propertry.text = one.value;
        return;
      }
      one.box->text = one.value;
      EXPECT_GE(one.box->list_index(), 0);
    });
    Listviewmnu_Edit(session, mode::kWts);
    EXPECT_EQ(form1.ListView9.at(one.row).sub_items.front(), one.value);
  }
  EXPECT_EQ(form1.ListView9.at(2).text, "Users Home drive letter");
  EXPECT_EQ(get("WTS.dat"), "\\\\%server%\\p\r\n\r\nW:\r\nNo\r\n\r\n\r\n\r\n\r\n\r\n\r\n15 mins\r\n\r\n\r\n");
  Listviewmnu_New(session, mode::kWts);
  Listviewmnu_Delete(session, mode::kWts);
  EXPECT_EQ(form1.ListView9.size(), 13U);
}

}  // namespace
}  // namespace twk::windows
