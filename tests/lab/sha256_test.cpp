#include "lab/store/sha256.hpp"

#include <gtest/gtest.h>

#include <string>

#include "platform/value.hpp"

namespace twk::lab {
namespace {

std::string digest_text(std::string_view bytes) {
  const auto digest = sha256(bytes);
  return platform::Value(base::Bytes(digest.begin(), digest.end())).text();
}

// The test vectors of RFC 6234, 8.5.
TEST(Sha256, DigestsAreThoseOfThePublishedVectors) {
  EXPECT_EQ(digest_text("abc"), "BA7816BF8F01CFEA414140DE5DAE2223B00361A396177A9CB410FF61F20015AD");
  EXPECT_EQ(digest_text("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
            "248D6A61D20638B8E5C026930C3E6039A33CE45964FF2167F6ECEDD419DB06C1");
  EXPECT_EQ(digest_text(std::string(1000000, 'a')),
            "CDC76E5C9914FB9281A1C7E284D73E67F1809A48A497200E046D39CCC7112CD0");
  std::string eighty;
  for (int i = 0; i < 80; ++i)
    eighty += "01234567";
  EXPECT_EQ(digest_text(eighty), "594847328451BDFA85056225462CC1D867D877FB388DF0CE35F25AB5562BFBB5");
  EXPECT_EQ(digest_text("\x19"), "68AA2E2EE5DFF96E3355E6C7EE373E3D6A4E17F75F9518D843709C0C9BC3E3D4");
}

}  // namespace
}  // namespace twk::lab
