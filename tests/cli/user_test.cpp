#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

using Users = TwkLab;

TEST_F(Users, AreCreatedAsTheTemplateSays) {
  const ProgramResult created =
      create({"--ou", kNewStarters, "--description", "New", "John", "Fred", "Smith"});
  EXPECT_EQ(created.exit_code, 0) << created.err;
  EXPECT_EQ(created.out, "GREEN  John.Smith Created User\n");
  const nlohmann::json expected = {{"name", "John.Smith"},
                                   {"dn", "CN=John.Smith," + kNewStarters},
                                   {"samAccountName", "John.Smith"},
                                   {"userPrincipalName", "John.Smith@twk.test"},
                                   {"fullName", "John Smith"},
                                   {"description", "New"},
                                   {"homeDirectory", "\\\\FS1\\Users\\John.Smith"},
                                   {"homeDrive", "H:"},
                                   {"profilePath", "\\\\FS1\\Profiles\\John.Smith"},
                                   {"loginScript", "logon.cmd"},
                                   {"disabled", false},
                                   {"locked", false},
                                   {"passwordNeverExpires", false},
                                   {"cannotChangePassword", false},
                                   {"mustChangePassword", true},
                                   {"expires", nullptr},
                                   {"primaryGroup", "Domain Users"},
                                   {"groups", {"Domain Users", "Staff"}},
                                   {"logonHours", std::string(42, 'F')}};
  EXPECT_EQ(result_of({"user", "show", "john.smith"}), expected);
  EXPECT_TRUE(std::filesystem::is_directory(lab() + "/servers/FS1/D/Users/John.Smith"));
}

TEST_F(Users, OfATakenNameGetTheAlternativeOne) {
  EXPECT_EQ(create({"--ou", kNewStarters, "John", "Smith"}).exit_code, 0);
  const ProgramResult second = create({"--ou", kNewStarters, "John", "Smith"});
  EXPECT_THAT(second.out, HasSubstr("John.Smith1 Created User"));
  EXPECT_EQ(second.exit_code, 1) << "the principal name is taken, which is a warning";
  EXPECT_EQ(result_of({"user", "show", "John.Smith1"})["userPrincipalName"], "");
}

TEST_F(Users, AreCreatedNextToTheOneTheyAreLike) {
  ASSERT_EQ(run({"template", "add", "Bare"}).exit_code, 0);
  ASSERT_EQ(create({"--ou", kNewStarters, "John", "Smith"}).exit_code, 0);
  const ProgramResult created = run({"user", "create", "--template", "Bare", "--site", "Head Office",
                                     "--like", "john.smith", "--", "-Ann", "O-Lee"});
  EXPECT_EQ(created.exit_code, 0) << created.err;
  const nlohmann::json user = result_of({"user", "show", "--", "-Ann.O-Lee"});
  EXPECT_EQ(user["dn"], "CN=-Ann.O-Lee," + kNewStarters);
  EXPECT_EQ(user["groups"], (nlohmann::json{"Domain Users", "Staff"}));
}

struct RefusedUser {
  const char* what;
  Arguments arguments;
  int exit_code;
  const char* message;
};

class RefusedUsers : public TwkLab, public testing::WithParamInterface<RefusedUser> {};

TEST_P(RefusedUsers, SayWhyAndMakeNobody) {
  const std::string before =
      get_file(lab() + "/domain.ldif") + (std::filesystem::exists(lab() + "/domain.journal.ldif")
                                              ? get_file(lab() + "/domain.journal.ldif")
                                              : std::string());
  const ProgramResult result = create(GetParam().arguments);
  EXPECT_EQ(result.exit_code, GetParam().exit_code);
  EXPECT_THAT(result.out + result.err, HasSubstr(GetParam().message));
  EXPECT_EQ(get_file(lab() + "/domain.ldif") + get_file(lab() + "/domain.journal.ldif"), before);
}

INSTANTIATE_TEST_SUITE_P(
    Users, RefusedUsers,
    testing::Values(RefusedUser{"WithoutAPlace", {"Al", "Bo"}, 64, "--ou DN or --like USER"},
                    RefusedUser{"InAnOuThatIsNot",
                                {"--ou", "OU=New Starter,DC=twk,DC=test", "Al", "Bo"},
                                2,
                                "Near: \"OU=New"},
                    RefusedUser{"LikeNobody", {"--like", "nobody", "Al", "Bo"}, 2, "no user \"nobody\""},
                    RefusedUser{"WithAForbiddenCharacter",
                                {"--ou", kNewStarters, "--id", "a*b", "Al", "Bo"},
                                2,
                                "Invalid Character in User Name: *"},
                    RefusedUser{"WithALongName",
                                {"--ou", kNewStarters, "--id", "123456789012345678901", "Al", "Bo"},
                                2,
                                "1-20 chrs"}),
    [](const auto& named) { return named.param.what; });

TEST_F(Users, OfOneOuAreListed) {
  ASSERT_EQ(create({"--ou", kNewStarters, "John", "Smith"}).exit_code, 0);
  const nlohmann::json user = result_of({"user", "list", "--ou", "ou=new starters,dc=TWK,dc=test"});
  EXPECT_EQ(user["name"], "John.Smith");
  EXPECT_EQ(result_of({"group", "show", "staff"})["members"], nlohmann::json{"John.Smith"});
}

class NtUsers : public TwkLab {
 protected:
  static void SetUpTestSuite() { make("nt"); }
};

TEST_F(NtUsers, AreCreatedShownAndListed) {
  EXPECT_EQ(create({"John", "Smith"}).exit_code, 0);
  const nlohmann::json user = result_of({"user", "show", "john.smith"});
  EXPECT_EQ(user["homeDrive"], "H:");
  EXPECT_EQ(user["mustChangePassword"], true);
  EXPECT_EQ(user["primaryGroup"], "Domain Users");
  EXPECT_EQ(user["expires"], nullptr);
  EXPECT_EQ(result_of({"group", "show", "STAFF"})["members"], nlohmann::json{"John.Smith"});
  EXPECT_THAT(run({"user", "list"}).out, AllOf(HasSubstr("Administrator"), HasSubstr("John.Smith")));
}

}  // namespace
}  // namespace twk::test
