#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;

/// The sample lab, whose site "Head Office" has the Exchange 5.5 server EX55.
class Mailboxes : public TwkLab {
 protected:
  [[nodiscard]] Arguments mailbox(const std::string& command, const std::string& name,
                                  Arguments further = {}) const {
    Arguments arguments = {"mailbox", command, "--site", "head office", name};
    arguments.insert(arguments.end(), further.begin(), further.end());
    return arguments;
  }
  void use_store() const {
    ASSERT_EQ(run({"site", "edit", "Head Office", "--exchange2000", "--exchange-server", "EX2K",
                   "--exchange-site", "First Storage Group", "--mail-store", "Mailbox Store"})
                  .exit_code,
              0);
  }
};

const std::string kPath = "LDAP://EX55/CN=John.Smith,CN=Recipients,OU=Head Office,O=Tarnwick";

TEST_F(Mailboxes, ComeWithNewUsersAndAreShown) {
  ASSERT_EQ(create({"--ou", kNewStarters, "John", "Smith"}).exit_code, 0);
  const nlohmann::json expected = {{"mailbox", "John.Smith"},
                                   {"place", "Recipients"},
                                   {"path", kPath},
                                   {"kind", "OrganizationalPerson"},
                                   {"name", "John Smith"},
                                   {"address", "John.Smith@mail.example"},
                                   {"otherAddresses", nlohmann::json::array()},
                                   {"account", "TWK\\John.Smith"}};
  EXPECT_EQ(result_of(mailbox("show", "john.smith")), expected);
  EXPECT_EQ(result_of(mailbox("find", "john.smith"))["path"], kPath);
  const ProgramResult none = run(mailbox("find", "nobody"));
  EXPECT_EQ(none.exit_code, 0);
  EXPECT_THAT(none.err, HasSubstr("No mailbox found"));
  EXPECT_EQ(run(mailbox("show", "nobody")).exit_code, 2);
}

TEST_F(Mailboxes, AreDeletedAfterAQuestionAndMadeForAnAccountThatIsThere) {
  ASSERT_EQ(create({"--ou", kNewStarters, "John", "Smith"}).exit_code, 0);
  const ProgramResult again = run(mailbox("create", "John.Smith"));
  EXPECT_EQ(again.exit_code, 2);
  EXPECT_THAT(again.out,
              testing::MatchesRegex("RED  Failed to create Mail Account for John.Smith: Failed to set "
                                    "Target-Mail Address; The name is in use: .*\n"));
  const ProgramResult asked = run(mailbox("delete", "John.Smith"));
  EXPECT_EQ(asked.exit_code, 2);
  EXPECT_THAT(asked.err, HasSubstr("Sure to Delete Mailbox"));
  EXPECT_EQ(run(mailbox("delete", "John.Smith", {"--yes"})).out,
            "GREEN  Deleted mail account for John.Smith\n");
  EXPECT_EQ(run(mailbox("show", "John.Smith")).exit_code, 2);
  EXPECT_EQ(run(mailbox("create", "John.Smith")).out, "GREEN  Created Mail Account for John.Smith\n");
  EXPECT_EQ(result_of(mailbox("show", "John.Smith"))["account"], "TWK\\John.Smith");
}

/// Two mailboxes called John.Smith, and a variable in the container of the mail table.
class SeveralMailboxes : public Mailboxes {
 protected:
  SeveralMailboxes() {
    EXPECT_EQ(create({"--ou", kNewStarters, "John", "Smith"}).exit_code, 0);
    std::string ldif = get_file(lab() + "/exchange/EX55.ldif");
    ldif += "dn: " + kOther + "\nobjectClass: top\nobjectClass: Container\n\ndn: CN=John.Smith," + kOther +
            "\nobjectClass: top\nobjectClass: person\nobjectClass: OrganizationalPerson\n\n";
    std::filesystem::remove(lab() + "/exchange/EX55.ldif");
    put_file(lab() + "/exchange/EX55.ldif", ldif);
    EXPECT_EQ(run({"table", "set", "mail", "-"}, "Container,%Where%\nTarget-Address,a@b\n").exit_code, 0);
  }
  [[nodiscard]] ProgramResult delete_user(Arguments further) const {
    further.insert(further.begin(),
                   {"user", "delete", "John.Smith", "--account", "--mail", "--exchange-server", "ex55"});
    return run(further);
  }
  static inline const std::string kOther = "CN=Other,OU=Head Office,O=Tarnwick";
  static inline const std::string kOtherPath = "LDAP://EX55/CN=John.Smith," + kOther;
};

TEST_F(SeveralMailboxes, ThePathSaysWhichOneIsDeleted) {
  const ProgramResult unclear = run(mailbox("delete", "john.smith", {"--yes"}));
  EXPECT_EQ(unclear.exit_code, 2);
  EXPECT_THAT(unclear.out, HasSubstr(kOtherPath + ". Choose one by its path (--path)."));
  EXPECT_EQ(run(mailbox("delete", "john.smith", {"--yes", "--path", "LDAP://EX55/CN=x"})).exit_code, 2);
  EXPECT_EQ(run(mailbox("delete", "john.smith", {"--yes", "--path", kOtherPath})).exit_code, 0);
  EXPECT_EQ(result_of(mailbox("find", "john.smith"))["path"], kPath);
  EXPECT_EQ(run(mailbox("delete", "john.smith", {"--yes"})).exit_code, 0);
}

TEST_F(SeveralMailboxes, AnAccountIsKeptUntilItsMailboxIsDecidedAndTheDryRunSaysSo) {
  for (const Arguments& further : {Arguments{"--no-prompting"}, {"--yes"}, {"--dry-run"}}) {
    const ProgramResult kept = delete_user(further);
    EXPECT_EQ(kept.exit_code, 2) << further.back();
    EXPECT_THAT(kept.out,
                AllOf(HasSubstr("RED  Nothing Deleted of"), HasSubstr(kPath), HasSubstr(kOtherPath)));
    EXPECT_EQ(kept.err.empty(), further.front() != "--yes") << "nothing is asked";
  }
  EXPECT_EQ(run({"user", "show", "John.Smith"}).exit_code, 0);
  EXPECT_THAT(delete_user({"--dry-run", "--path", kOtherPath}).out,
              HasSubstr("Delete the mailbox of John.Smith on EX55: " + kOtherPath));
  const ProgramResult gone = delete_user({"--no-prompting", "--path", kOtherPath});
  EXPECT_EQ(gone.exit_code, 0) << gone.out;
  EXPECT_EQ(gone.err, "");
  EXPECT_EQ(result_of(mailbox("find", "john.smith"))["path"], kPath);
}

TEST_F(SeveralMailboxes, ATemplateSaysTheContainer) {
  ASSERT_EQ(run({"template", "edit", "Staff", "--variable", "Where=Other"}).exit_code, 0);
  const ProgramResult gone = delete_user({"--no-prompting", "--template", "staff"});
  EXPECT_EQ(gone.exit_code, 0) << gone.out;
  EXPECT_EQ(result_of(mailbox("find", "john.smith"))["path"], kPath);
}

TEST_F(Mailboxes, OfAnExchange2000SiteHangOnTheirUsers) {
  use_store();
  ASSERT_EQ(create({"--ou", kNewStarters, "John", "Smith"}).out, "GREEN  John.Smith Created User\n");
  EXPECT_EQ(result_of(mailbox("show", "john.smith"))["address"], "John.Smith@twk.test");
  EXPECT_EQ(run(mailbox("delete", "John.Smith", {"--yes"})).exit_code, 0);
  EXPECT_EQ(run(mailbox("delete", "John.Smith", {"--yes"})).exit_code, 2);
  EXPECT_EQ(run(mailbox("create", "John.Smith")).exit_code, 0);
}

TEST_F(Mailboxes, OfASiteWithoutAServerOrOneThatIsDownAreRefused) {
  ASSERT_EQ(run({"site", "edit", "Head Office", "--exchange-server", "EX99"}).exit_code, 0);
  const ProgramResult down = run(mailbox("find", "jo"));
  EXPECT_EQ(down.exit_code, 2);
  EXPECT_THAT(down.err, HasSubstr("Unable to connect to Exchange Server"));
  ASSERT_EQ(run({"site", "edit", "Head Office", "--exchange-server", "", "--exchange-org", "",
                 "--exchange-site", ""})
                .exit_code,
            0);
  EXPECT_THAT(run(mailbox("show", "jo")).err, HasSubstr("has no mail server"));
  EXPECT_EQ(run({"mailbox", "find", "--site", "Nowhere", "jo"}).exit_code, 2);
}

}  // namespace
}  // namespace twk::test
