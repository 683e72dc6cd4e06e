#include "lab/store/ldif.hpp"

#include "base/errors.hpp"

namespace twk::lab {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

std::vector<LdifRecord> read(std::string_view text) {
  std::vector<LdifRecord> records;
  read_ldif(text, [&](LdifRecord&& record) { records.push_back(std::move(record)); });
  return records;
}

LdifRecord read_one(std::string_view text) {
  std::vector<LdifRecord> records = read(text);
  EXPECT_THAT(records, SizeIs(1));
  return records.empty() ? LdifRecord{} : std::move(records.front());
}

std::string written(const LdifRecord& record) {
  std::string text;
  append_ldif(text, record);
  return text;
}

TEST(LdifTest, SearchOutputIsReadWithoutItsCommentsAndSummary) {
  const auto records = read(
      "# extended LDIF\n#\n# LDAPv3\n\n# Ann, twk.test\r\ndn: CN=Ann,DC=twk,DC=test\r\nobjectClass: top\r\n"
      "cn: Ann\r\nobjectClass: user\r\ndescription:: Y2Fmw6k=\r\nmail:\r\n\r\n"
      "# refldaps://other\n\n# search reference\nref: ldap://other/DC=x\n\n"
      "# search result\nsearch: 2\nresult: 0 Success\n\n# numEntries: 1\n");
  ASSERT_THAT(records, SizeIs(1));
  EXPECT_EQ(records[0].dn, "CN=Ann,DC=twk,DC=test");
  EXPECT_EQ(records[0].line, 6U);
  EXPECT_THAT(records[0].attributes,
              ElementsAre(LdifAttribute{"objectClass", {"top", "user"}}, LdifAttribute{"cn", {"Ann"}},
                          LdifAttribute{"description", {"caf\xC3\xA9"}}, LdifAttribute{"mail", {""}}));
}

TEST(LdifTest, FoldedLinesAndFoldedCommentsAreJoined) {
  const LdifRecord record =
      read_one("version: 1\ndn: CN=A\n nn\n# a comment\n  that goes on\ncn: A\n n\n n\n");
  EXPECT_EQ(record.dn, "CN=Ann");
  EXPECT_THAT(record.attributes, ElementsAre(LdifAttribute{"cn", {"Ann"}}));
}

TEST(LdifTest, ChangeRecordsAreRead) {
  const auto records = read(
      "dn: CN=a\nchangetype: add\ncn: a\n\n"
      "dn: CN=a\ncontrol: 1.2.3 false\nchangetype: delete\n\n"
      "dn: CN=a\nchangetype: modify\nadd: mail\nmail: x\nmail: y\n-\ndelete: title\n-\nreplace: sn\nsn: Z\n\n"
      "dn: CN=a\nchangetype: moddn\nnewrdn: CN=b\ndeleteoldrdn: 0\nnewsuperior: OU=c\n");
  ASSERT_THAT(records, SizeIs(4));
  EXPECT_EQ(records[0].type, ChangeType::kAdd);
  EXPECT_EQ(records[1].type, ChangeType::kDelete);
  EXPECT_THAT(records[2].modifications, ElementsAre(Modification{ModifyKind::kAdd, "mail", {"x", "y"}},
                                                    Modification{ModifyKind::kDelete, "title", {}},
                                                    Modification{ModifyKind::kReplace, "sn", {"Z"}}));
  EXPECT_EQ(records[3].type, ChangeType::kModRdn);
  EXPECT_EQ(records[3].new_rdn, "CN=b");
  EXPECT_FALSE(records[3].delete_old_rdn);
  EXPECT_EQ(records[3].new_superior, "OU=c");
}

TEST(LdifTest, EndsShowWhereEachRecordStops) {
  const std::string text = "dn: a\ncn: a\n\ndn: b\ncn: b\n\n";
  const auto records = read(text);
  ASSERT_THAT(records, SizeIs(2));
  EXPECT_EQ(text.substr(records[0].end), "dn: b\ncn: b\n\n");
  EXPECT_EQ(records[1].end, text.size());
}

struct LdifFault {
  const char* text;
  const char* message;
};
class LdifFaultTest : public testing::TestWithParam<LdifFault> {};

TEST_P(LdifFaultTest, IsRefusedWithItsLine) {
  base::Trap trap;
  trap([] { read(GetParam().text); });
  EXPECT_EQ(trap.number(), kInvalidLdif);
  EXPECT_THAT(trap.description(), HasSubstr(GetParam().message));
}

INSTANTIATE_TEST_SUITE_P(
    Lines, LdifFaultTest,
    testing::Values(
        LdifFault{"version: 2\n", "Line 1: A version other than 1"},
        LdifFault{"dn: a\njpegPhoto:< file:///etc/passwd\n", "Line 2: Values taken from a URL"},
        LdifFault{"dn: a\ncn:: !!!!\n", "Line 2: Not Base64"},
        LdifFault{"dn: a\ncn:: YWJ\n", "Line 2: Not Base64"},
        LdifFault{"dn: a\nnonsense\n", "Line 2: A line without a colon"},
        LdifFault{"cn: a\n", "Line 1: \"dn:\" is missing"}, LdifFault{" x\n", "Line 1: A continuation"},
        LdifFault{"dn: a\ncn: a\ndn: b\n", "Line 3: An empty line is missing"},
        LdifFault{"dn: a\nchangetype: increment\n", "Line 2: An unknown change type"},
        LdifFault{"dn: a\nchangetype: modify\nadd: cn\nsn: x\n", "Line 4: A value of another attribute"},
        LdifFault{"dn: a\nchangetype: modrdn\nnewrdn: b\ndeleteoldrdn: 2\n", "Line 4"},
        LdifFault{"dn: a\nchangetype: modrdn\nnewrdn: b\n", "\"deleteoldrdn:\" is missing"},
        LdifFault{"dn: a\nchangetype: delete\ncn: a\n", "Line 3: Unexpected text after the record"},
        LdifFault{"dn: a\ncontrol: 1.2.3 true\nchangetype: delete\n", "Line 2: A critical control"}));

TEST(LdifTest, UnsafeValuesAreWrittenAsBase64) {
  const LdifRecord record{.dn = "CN=a",
                          .attributes = {{"x", {" a", "a ", ":", "<", "a\nb", "\xC3\xA9", "a:<b", ""}}}};
  EXPECT_EQ(written(record),
            "dn: CN=a\nx:: IGE=\nx:: YSA=\nx:: Og==\nx:: PA==\nx:: YQpi\nx:: w6k=\nx: a:<b\nx:\n\n");
}

TEST(LdifTest, LongLinesAreFoldedAtSeventySixAndReadBack) {
  const LdifRecord record{.dn = "CN=" + std::string(200, 'x'),
                          .attributes = {{"b", {std::string(500, '\x01')}}}};
  const std::string text = written(record);
  std::size_t longest = 0;
  for (std::size_t from = 0; from < text.size(); from = text.find('\n', from) + 1) {
    longest = std::max(longest, text.find('\n', from) - from);
  }
  EXPECT_EQ(longest, 76U);
  EXPECT_EQ(read_one(text).dn, record.dn);
  EXPECT_EQ(read_one(text).attributes, record.attributes);
}

TEST(LdifTest, EachKindOfChangeIsReadBackAsWritten) {
  const std::vector<LdifRecord> changes = {
      {.type = ChangeType::kAdd, .dn = "CN=a", .attributes = {{"cn", {"a"}}}},
      {.type = ChangeType::kDelete, .dn = "CN=a"},
      {.type = ChangeType::kModify,
       .dn = "CN=a",
       .modifications = {{ModifyKind::kAdd, "a", {"1", "\xFF"}}, {ModifyKind::kDelete, "b", {}}}},
      {.type = ChangeType::kModRdn, .dn = "CN=a", .new_rdn = "CN=b", .new_superior = "OU=\xC3\xA9"}};
  for (const LdifRecord& change : changes) {
    const LdifRecord again = read_one(written(change));
    EXPECT_EQ(again.type, change.type);
    EXPECT_EQ(written(again), written(change));
  }
}

TEST(LdifTest, ManyDifferentAttributesAreMergedByName) {
  std::string text = "dn: a\n";
  for (int round = 0; round < 2; ++round) {
    for (int i = 0; i < 100; ++i)
      text += (round == 0 ? "a" : "A") + std::to_string(i) + ": " + std::to_string(round) + "\n";
  }
  const LdifRecord record = read_one(text);
  ASSERT_THAT(record.attributes, SizeIs(100));
  for (const LdifAttribute& attribute : record.attributes)
    EXPECT_THAT(attribute.values, ElementsAre("0", "1"));
}

}  // namespace
}  // namespace twk::lab
