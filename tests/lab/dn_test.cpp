#include "ads/dn.hpp"

#include "lab/store/dn_hash.hpp"
#include "platform/directory.hpp"
#include "support/number_of.hpp"

namespace twk::lab {
namespace {

using testing::ElementsAre;

TEST(DnTest, PartsAreSplitAtCommasThatAreNotEscaped) {
  EXPECT_THAT(ads::split_dn("CN=Smith\\, Jo , OU=\"a,b\",DC=x"),
              ElementsAre("CN=Smith\\, Jo", "OU=\"a,b\"", "DC=x"));
  EXPECT_EQ(ads::parent_dn("CN=Smith\\, Jo, DC=x"), "DC=x");
  EXPECT_EQ(ads::parent_dn("DC=x"), "");
}

TEST(DnTest, AnEscapedBlankAtTheEndBelongsToTheValue) {
  EXPECT_THAT(ads::split_dn("CN=a\\  ,DC=x"), ElementsAre("CN=a\\ ", "DC=x"));
  EXPECT_THAT(ads::split_dn("CN=a\\\\  ,DC=x"), ElementsAre("CN=a\\\\", "DC=x"));
  EXPECT_EQ(ads::parse_rdn("CN=a\\\\ ").value, "a\\");
}

TEST(DnTest, SpellingsOfOneNameAreTheSame) {
  const std::string_view name = "CN=Smith\\, J\xC3\xB6,DC=x";
  for (const std::string_view other :
       {"cn=smith\\2C J\xC3\x96 , dc=X", "CN = \"Smith, j\xC3\xB6\",DC=x", "cn=Smith\\, J\\C3\\B6,dc=x"}) {
    EXPECT_EQ(ads::normalize_dn(other), ads::normalize_dn(name)) << other;
    EXPECT_EQ(hash_dn(other), hash_dn(name)) << other;
    EXPECT_TRUE(same_dn(other, name)) << other;
  }
  EXPECT_FALSE(same_dn("CN=Smith,CN=J,DC=x", "CN=Smith\\,CN\\=J,DC=x"));
}

TEST(DnTest, TextThatIsNotANameIsRefused) {
  for (const std::string_view text : {"x", "=x", "CN=a,", "CN=a,,DC=x", ",CN=a"})
    EXPECT_EQ(test::number_of([&] { (void)ads::split_dn(text); }), platform::ads_error::kInvalidDn) << text;
}

}  // namespace
}  // namespace twk::lab
