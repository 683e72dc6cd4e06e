#include "format/passwords.hpp"

#include "session/form1.hpp"
#include "support/world.hpp"

namespace twk::format {
namespace {

class PasswordTest : public test::TestWorld {
 protected:
  PasswordFields fields() {
    const session::Form1& form = session.form1;
    return {form.defaultpassword.text, form.Formatted_Password.text, form.FmtPass.on()};
  }
  std::string password() {
    return password_of_text(
        session, new_password_text(session, fields(), "jsmith", "John", "Fred", "Smith").text, "jsmith");
  }
};

TEST_F(PasswordTest, DefaultPasswordIsTakenWithItsWords) {
  struct Case {
    std::string_view field;
    std::string_view result;
  };
  const Case cases[] = {{"", ""},
                        {"Secret1", "Secret1"},
                        {"%username%-1", "jsmith-1"},
                        {"%usernameb%", "htimsj"},
                        {" %UserNameB% ", "htimsj"},
                        {" PROMPT ", " PROMPT "},
                        {"%first%", "%first%"}};
  for (const Case& one : cases) {
    session.form1.defaultpassword.text = std::string(one.field);
    EXPECT_EQ(password(), one.result) << one.field;
    EXPECT_EQ(reset_user_password_text(session, "jsmith"), one.result) << one.field;
  }
}

TEST_F(PasswordTest, PromptAsksAndTakesTheAnswerAsItIs) {
  session.form1.defaultpassword.text = "prompt";
  dialogs.expect_input("Enter User Password:", "%usernameb%");
  EXPECT_EQ(password(), "%usernameb%");
  EXPECT_EQ(dialogs.last_title, "Enter Password");
  EXPECT_TRUE(dialogs.last_secret);
  dialogs.expect_input("Enter User Password:", "");
  EXPECT_EQ(password(), "");
}

TEST_F(PasswordTest, FormattedPasswordIsAFormatOfTheNames) {
  session.form1.defaultpassword.text = "default-%UserName%";
  session.form1.Formatted_Password.text = "#U1%first%.%username%";
  EXPECT_EQ(password(), "default-jsmith");
  session.form1.FmtPass.value = 1;
  EXPECT_EQ(password(), "J.jsmith");
  EXPECT_EQ(reset_user_password_text(session, "jo"), "default-jo");
  session.form1.Formatted_Password.text = "  ";
  EXPECT_EQ(password(), "default-jsmith");
}

TEST_F(PasswordTest, ImportFieldsReachThePasswordDuringAnImport) {
  session.import.ImportFieldCount = 5;
  session.import.ImportFields[5] = "Pa#5";
  session.form1.defaultpassword.text = "%IMPORT5%";
  session.form1.Formatted_Password.text = "%IMPORT5%";
  EXPECT_EQ(password(), "%IMPORT5%");
  session.import.Importing = true;
  EXPECT_EQ(password(), "Pa#5");
  session.import.ImportFieldCount = 4;
  EXPECT_EQ(password(), "") << "a field that the line does not have";
  session.form1.FmtPass.value = 1;
  EXPECT_EQ(password(), "Pa#5");
  session.import.Importing = false;
  session.form1.defaultpassword.text = "Welcome";
  EXPECT_EQ(password(), "Welcome") << "nobody else is to get the text of the format";
  session.import.Importing = true;
  session.form1.defaultpassword.text = "%IMPORT5%";
  session.form1.Formatted_Password.text = "";
  EXPECT_EQ(password(), "%IMPORT5%");
}

TEST_F(PasswordTest, ReverseTurnsCharactersRound) {
  EXPECT_EQ(Reverse_Password(""), "");
  EXPECT_EQ(Reverse_Password("aé€"), "€éa");
}

TEST_F(PasswordTest, ChoosingFormattedPasswordsShowsTheFieldAndIsStored) {
  session.form1.FmtPass.value = 1;
  FmtPass_Click(session);
  EXPECT_EQ(session.form1.Frame4.caption.get(), "Default Passwords");
  EXPECT_EQ(session.form1.Frame4.width.get(), 5535);
  EXPECT_TRUE(session.form1.Formatted_Password.visible.get());
  EXPECT_EQ(setting("Preferences", "UseFormattedPassword"), "YES");
  session.form1.FmtPass.value = 0;
  FmtPass_Click(session);
  EXPECT_EQ(session.form1.Frame4.caption.get(), "Default Password");
  EXPECT_FALSE(session.form1.Formatted_Password.visible.get());
  EXPECT_EQ(setting("Preferences", "UseFormattedPassword"), "No");
}

}  // namespace
}  // namespace twk::format
