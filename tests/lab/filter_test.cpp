#include "lab/store/filter.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"

namespace twk::lab {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// Ann, with attribute names in lower case.
const std::multimap<std::string, std::string> kAnn = {
    {"cn", "Ann  (West) Smith*"},
    {"objectclass", "top"},
    {"objectclass", "user"},
    {"objectcategory", "CN=Person,CN=Schema,CN=Configuration,DC=twk,DC=test"},
    {"samaccountname", "ann"},
    {"useraccountcontrol", "514"},
    {"logoncount", "9"},
    {"employeeid", "007"},
    {"sn", "M\xC3\xBCller"},
    {"manager", "CN=Bob\\, Jr,OU=West,DC=twk,DC=test"},
    {"objectsid", std::string("\1\0\5", 3)}};

bool holds(std::string_view filter) {
  return matches(parse_filter(filter), [](std::string_view attribute) {
    std::vector<std::string_view> values;
    const auto [first, last] = kAnn.equal_range(base::lower(attribute));
    for (auto one = first; one != last; ++one)
      values.emplace_back(one->second);
    return values;
  });
}

class FilterHoldsTest : public testing::TestWithParam<const char*> {};
TEST_P(FilterHoldsTest, ForAnn) {
  EXPECT_TRUE(holds(GetParam()));
}
INSTANTIATE_TEST_SUITE_P(
    Filters, FilterHoldsTest,
    testing::Values("(sAMAccountName=ANN)", "(objectClass=user)", "(sn=m\xC3\x9CLLER)",
                    "(cn=ann \\28west\\29 smith\\2a)", "(cn=*)", "(cn=a*)", "(cn=*smith\\2A)",
                    "(cn=A*west*\\2a)", "(cn=*west*smith*)", "(objectSid=\\01\\00\\05)",
                    "(&(objectCategory=person)(objectClass=user))", "(objectCategory=user)",
                    "(objectCategory=CN=Person,CN=Schema, CN=Configuration,DC=twk,DC=test)",
                    "(manager=cn=bob\\5c2C jr, ou=west,dc=twk,dc=test)", "(logonCount>=9)",
                    "(logonCount<=10)", "(logonCount=09)", "(sAMAccountName~=ann)",
                    "(userAccountControl:1.2.840.113556.1.4.803:=2)",
                    "(userAccountControl:1.2.840.113556.1.4.804:=3)", "(sAMAccountName:=ann)", "(!(mail=*))",
                    "(|(mail=x)(cn=*))", "(&)", " ( & ( cn=*) ( !( sn=x) ) ) "));

class FilterFailsTest : public testing::TestWithParam<const char*> {};
TEST_P(FilterFailsTest, ForAnn) {
  EXPECT_FALSE(holds(GetParam()));
}
INSTANTIATE_TEST_SUITE_P(Filters, FilterFailsTest,
                         testing::Values("(sAMAccountName=an)", "(mail=*)", "(mail=x)", "(!(mail=x))",
                                         "(!(!(mail=x)))", "(!(cn=*))", "(&(cn=*)(mail=x))",
                                         "(!(|(mail=x)(sn=y)))", "(|)", "(employeeID=7)", "(logonCount>=10)",
                                         "(userAccountControl:1.2.840.113556.1.4.803:=3)",
                                         "(userAccountControl:1.2.840.113556.1.4.804:=1)",
                                         "(userAccountControl:9.9.9:=2)", "(!(userAccountControl:9.9.9:=2))",
                                         "(cn=smith*)", "(cn=ann*ann*)", "(objectCategory=group)"));

TEST(FilterTest, CategoriesWithHyphensAnswerToTheirClass) {
  const AttributeReader read = [](std::string_view) {
    return std::vector<std::string_view>{"CN=Organizational-Unit,CN=Schema,CN=Configuration,DC=x"};
  };
  EXPECT_TRUE(matches(parse_filter("(objectCategory=organizationalUnit)"), read));
  EXPECT_FALSE(matches(parse_filter("(objectCategory=person)"), read));
}

TEST(FilterTest, SubstringsKeepTheirPieces) {
  EXPECT_THAT(parse_filter("(cn=a*\\2a*b)").pieces, ElementsAre("a", "*", "b"));
  EXPECT_THAT(parse_filter("(cn=*b*)").pieces, ElementsAre("", "b", ""));
}

struct Fault {
  std::string text;
  const char* message;
};
class FilterFaultTest : public testing::TestWithParam<Fault> {};

TEST_P(FilterFaultTest, IsRefusedWithItsPosition) {
  base::Trap trap;
  trap([] { (void)parse_filter(GetParam().text); });
  EXPECT_EQ(trap.number(), kInvalidFilter);
  EXPECT_THAT(trap.description(), HasSubstr(GetParam().message));
}

std::string nested(int depth) {
  std::string text = "(cn=*)";
  for (int i = 0; i < depth; ++i)
    text = "(!" + text + ")";
  return text;
}

INSTANTIATE_TEST_SUITE_P(
    Filters, FilterFaultTest,
    testing::Values(Fault{"", "position 1"}, Fault{"cn=a", "\"(\" expected at position 1"},
                    Fault{"(cn=a", "\")\" expected at position 6"},
                    Fault{"(cn=a))", "Unexpected text after the filter at position 7"},
                    Fault{"(cn)", "\"=\" expected at position 4"},
                    Fault{"(=a)", "name expected at position 2"},
                    Fault{"(cn=\\2)", "hexadecimal digits expected after the backslash at position 5"},
                    Fault{"(cn=(a))", "must be escaped at position 5"}, Fault{"(!)", "position 3"},
                    Fault{"(cn:dn:=a)", "\":dn\" is not supported"}, Fault{"(:=a)", "position 3"},
                    Fault{nested(101), "Nested too deep"}, Fault{std::string(100000, '('), "position 2"}));

TEST(FilterTest, NestingUpToTheLimitIsAccepted) {
  EXPECT_TRUE(holds(nested(100)));
}

}  // namespace
}  // namespace twk::lab
