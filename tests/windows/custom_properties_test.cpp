#include "windows/editors/custom_properties.hpp"

#include "support/world.hpp"
#include "windows/state/editor_windows.hpp"
#include "windows/state/form1.hpp"

namespace twk::windows {
namespace {

class CustomPropertiesTest : public test::TestWorld {
 protected:
  void put_row(std::size_t place, std::string_view name, std::string_view attribute) {
    controls::ListView& rows = session.custom.ListView1;
    rows.set_text(rows.at(place), std::string(name));
    rows.set_sub_item(rows.at(place), 1, std::string(attribute));
  }
  windows::Form1& form1 = session.form1;
};

TEST_F(CustomPropertiesTest, FourRowsComeFromTheSettingsAndGoBack) {
  set("Custom", "Custom2", "Room");
  set("Custom", "Property2", "roomNumber");
  dialogs.on_modal = [this](std::string_view shown) {
    EXPECT_EQ(shown, "Custom");
    EXPECT_EQ(test::texts(session.custom.ListView1), (std::vector<std::string>{"", "Room", "", ""}));
    EXPECT_EQ(session.custom.ListView1.at(1).sub_items.front(), "roomNumber");
    put_row(3, "Badge", "employeeID");
    EXPECT_TRUE(Custom_OK(session));
  };
  show_custom(session);
  EXPECT_EQ(setting("Custom", "Custom4"), "Badge");
  EXPECT_EQ(setting("Custom", "Property4"), "employeeID");
  EXPECT_EQ(form1.Custom_Label[3].caption.get(), "Badge");
  EXPECT_TRUE(form1.Custom_Value[1].visible.get());
  EXPECT_FALSE(form1.Custom_Value[0].visible.get()) << "an absent pair stays hidden";
}

TEST_F(CustomPropertiesTest, ANameWithoutAnAttributeIsRefusedAndNothingIsWritten) {
  Custom_Load(session);
  put_row(1, "Room", "");
  dialogs.expect("\"Room\" has no attribute.");
  EXPECT_FALSE(Custom_OK(session));
  EXPECT_TRUE(registry.written.empty());
}

TEST_F(CustomPropertiesTest, SettingsThatCannotBeWrittenAreReported) {
  Custom_Load(session);
  put_row(0, "Room", "roomNumber");
  registry.read_only = true;
  dialogs.expect("Cannot write the setting Custom1.");
  EXPECT_FALSE(Custom_OK(session));
  EXPECT_FALSE(form1.Custom_Value[0].visible.get());
}

}  // namespace
}  // namespace twk::windows
