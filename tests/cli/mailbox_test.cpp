#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

/// John Smith in the sample lab, whose site "Head Office" has the Exchange 5.5 server EX55.
class Mailboxes : public TwkLab {
 protected:
  void play_there(std::string_view transcript) const {
    play(transcript, {{"$MAILBOX", {"LDAP://EX55/CN=John.Smith,CN=Recipients,OU=Head Office,O=Tarnwick"}},
                      {"$OTHER_MAILBOX", {"LDAP://EX55/CN=John.Smith," + kOther}},
                      {"$SITE", {"--site", "head office"}}});
  }
  static inline const std::string kOther = "CN=Other,OU=Head Office,O=Tarnwick";
};

TEST_F(Mailboxes, ComeWithNewUsersAndAreShown) {
  play_there(R"(
$ user create $STAFF John Smith
$ mailbox show $SITE john.smith
{"mailbox": "John.Smith", "place": "Recipients", "path": "$MAILBOX", "kind": "OrganizationalPerson",
 "name": "John Smith", "address": "John.Smith@mail.example", "otherAddresses": [],
 "account": "TWK\\John.Smith"}
$ mailbox find $SITE john.smith
{"path": "$MAILBOX"}
$ mailbox find $SITE nobody
! No mailbox found
$ mailbox show $SITE nobody => 2
)");
}

TEST_F(Mailboxes, AreDeletedAfterAQuestionAndMadeForAnAccountThatIsThere) {
  play_there(R"(
$ user create $STAFF John Smith
$ mailbox create $SITE John.Smith => 2
| RED  Failed to create Mail Account for John.Smith: Failed to set Target-Mail Address; The name is in use:
$ mailbox create $SITE John.Smith --dry-run => 2
| RED  Failed to create Mail Account for John.Smith: Failed to set Target-Mail Address; The name is in use:
$ mailbox delete $SITE John.Smith --dry-run
> Delete the mailbox $MAILBOX
$ mailbox delete $SITE John.Smith => 2 Sure to Delete Mailbox
$ mailbox delete $SITE John.Smith --yes
> GREEN  Deleted mail account for John.Smith
$ mailbox show $SITE John.Smith => 2
$ mailbox create $SITE John.Smith --dry-run
| Make the mailbox CN=John.Smith in LDAP://EX55/
| Set on $MAILBOX: Mail = John.Smith@mail.example
- Created Mail Account
$ mailbox show $SITE John.Smith => 2
$ mailbox create $SITE John.Smith
> GREEN  Created Mail Account for John.Smith
$ mailbox show $SITE John.Smith
{"account": "TWK\\John.Smith"}
)");
}

/// Two mailboxes called John.Smith, and a variable in the container of the mail table.
class SeveralMailboxes : public Mailboxes {
 protected:
  SeveralMailboxes() {
    play("$ user create $STAFF John Smith");
    std::string ldif = get_file(lab() + "/exchange/EX55.ldif");
    ldif += "dn: " + kOther + "\nobjectClass: top\nobjectClass: Container\n\ndn: CN=John.Smith," + kOther +
            "\nobjectClass: top\nobjectClass: person\nobjectClass: OrganizationalPerson\n\n";
    std::filesystem::remove(lab() + "/exchange/EX55.ldif");
    put_file(lab() + "/exchange/EX55.ldif", ldif);
    play("$ table set mail\n< Container,%Where%\n< Target-Address,a@b");
  }
};

TEST_F(SeveralMailboxes, ThePathSaysWhichOneIsDeleted) {
  play_there(R"(
$ mailbox delete $SITE john.smith --yes => 2
| $OTHER_MAILBOX. Choose one by its path (--path).
$ mailbox delete $SITE john.smith --yes --path LDAP://EX55/CN=x => 2
$ mailbox delete $SITE john.smith --yes --path $OTHER_MAILBOX
$ mailbox find $SITE john.smith
{"path": "$MAILBOX"}
$ mailbox delete $SITE john.smith --yes
)");
}

TEST_F(SeveralMailboxes, AnAccountIsKeptUntilItsMailboxIsDecidedAndTheDryRunSaysSo) {
  for (const std::string asked : {"--no-prompting", "--yes", "--dry-run"}) {
    play_there("$ user delete John.Smith --account --mail --exchange-server ex55 " + asked + R"( => 2
| RED  Nothing Deleted of
| $MAILBOX
| $OTHER_MAILBOX
)");
  }
  play_there(R"(
$ user show John.Smith
$ user delete John.Smith --account --mail --exchange-server ex55 --dry-run --path $OTHER_MAILBOX
| Delete the mailbox of John.Smith on EX55: $OTHER_MAILBOX
$ user delete John.Smith --account --mail --exchange-server ex55 --no-prompting --path $OTHER_MAILBOX
$ mailbox find $SITE john.smith
{"path": "$MAILBOX"}
)");
}

TEST_F(SeveralMailboxes, ATemplateSaysTheContainer) {
  play_there(R"(
$ template edit Staff --variable Where=Other
$ user delete John.Smith --account --mail --exchange-server ex55 --no-prompting --template staff
$ mailbox find $SITE john.smith
{"path": "$MAILBOX"}
)");
}

TEST_F(Mailboxes, OfAnExchange2000SiteHangOnTheirUsers) {
  play_there(R"(
$ site edit "Head Office" --exchange2000 --exchange-server EX2K --exchange-site "First Storage Group"
  --mail-store "Mailbox Store"
$ user create $STAFF John Smith
> GREEN  John.Smith Created User
$ mailbox show $SITE john.smith
{"address": "John.Smith@twk.test"}
$ mailbox delete $SITE John.Smith --yes
$ mailbox delete $SITE John.Smith --yes => 2
$ mailbox create $SITE John.Smith
)");
}

TEST_F(Mailboxes, OfASiteWithoutAServerOrOneThatIsDownAreRefused) {
  play_there(R"(
$ site edit "Head Office" --exchange-server EX99
$ mailbox find $SITE jo => 2 Unable to connect to Exchange Server
$ site edit "Head Office" --exchange-server "" --exchange-org "" --exchange-site ""
$ mailbox show $SITE jo => 2 has no mail server
$ mailbox find --site Nowhere jo => 2
)");
}

}  // namespace
}  // namespace twk::test
