#include "format/passwords.hpp"

#include "support/world.hpp"

namespace twk::format {
namespace {

class PasswordTest : public test::TestWorld {
 protected:
  std::string password() {
    return password_of_text(
        session, new_password_text(session, fields, "jsmith", "John", "Fred", "Smith").text, "jsmith");
  }

  PasswordFields fields;
};

TEST_F(PasswordTest, DefaultPasswordIsTakenWithItsWords) {
  const std::pair<std::string, std::string> cases[] = {{"", ""},
                                                       {"Secret1", "Secret1"},
                                                       {"%username%-1", "jsmith-1"},
                                                       {"%usernameb%", "htimsj"},
                                                       {" %UserNameB% ", "htimsj"},
                                                       {" PROMPT ", " PROMPT "},
                                                       {"%first%", "%first%"}};
  for (const auto& [field, result] : cases) {
    fields.text = field;
    EXPECT_EQ(password(), result) << field;
    EXPECT_EQ(reset_user_password_text(session, fields.text, "jsmith"), result) << field;
  }
}

TEST_F(PasswordTest, PromptAsksAndTakesTheAnswerAsItIs) {
  fields.text = "prompt";
  dialogs.expect_input("Enter User Password:", "%usernameb%");
  EXPECT_EQ(password(), "%usernameb%");
  EXPECT_EQ(dialogs.last_title, "Enter Password");
  EXPECT_TRUE(dialogs.last_secret);
  dialogs.expect_input("Enter User Password:", "");
  EXPECT_EQ(password(), "");
}

TEST_F(PasswordTest, FormattedPasswordIsAFormatOfTheNames) {
  fields.text = "default-%UserName%";
  fields.format = "#U1%first%.%username%";
  EXPECT_EQ(password(), "default-jsmith");
  fields.formatted = true;
  EXPECT_EQ(password(), "J.jsmith");
  EXPECT_EQ(reset_user_password_text(session, fields.text, "jo"), "default-jo");
  fields.format = "  ";
  EXPECT_EQ(password(), "default-jsmith");
}

TEST_F(PasswordTest, ImportFieldsReachThePasswordDuringAnImport) {
  session.import.ImportFieldCount = 5;
  session.import.ImportFields[5] = "Pa#5";
  fields.text = "%IMPORT5%";
  fields.format = "%IMPORT5%";
  EXPECT_EQ(password(), "%IMPORT5%");
  session.import.Importing = true;
  EXPECT_EQ(password(), "Pa#5");
  session.import.ImportFieldCount = 4;
  EXPECT_EQ(password(), "") << "a field that the line does not have";
  fields.formatted = true;
  EXPECT_EQ(password(), "Pa#5");
  session.import.Importing = false;
  fields.text = "Welcome";
  EXPECT_EQ(password(), "Welcome") << "nobody else is to get the text of the format";
  session.import.Importing = true;
  fields.text = "%IMPORT5%";
  fields.format = "";
  EXPECT_EQ(password(), "%IMPORT5%");
}

TEST_F(PasswordTest, ReverseTurnsCharactersRound) {
  EXPECT_EQ(Reverse_Password(""), "");
  EXPECT_EQ(Reverse_Password("aé€"), "€éa");
}

}  // namespace
}  // namespace twk::format
