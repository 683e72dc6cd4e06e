#include "local/letters/plain_letters.hpp"

#include <unicode/translit.h>
#include <unicode/unistr.h>

#include <memory>

namespace {

/// Other scripts into Latin letters, without the marks for their soft and hard signs, and without
/// apostrophes, which no account name may have; then "ü" as "ue", and whatever is left as it is written
/// without accents. The names are those of Unicode's CLDR, UTS #35 part 2.
constexpr const char* kSteps =
    "NFC; Any-Latin; [\\u0027\\u0060\\u00B4\\u02B9-\\u02BC\\u2018\\u2019] Remove; de-ASCII; Latin-ASCII";

}  // namespace

bool twk_plain_letters(const std::string& text, std::string& plain) {
  UErrorCode status = U_ZERO_ERROR;
  static const std::unique_ptr<icu::Transliterator> letters(
      icu::Transliterator::createInstance(icu::UnicodeString::fromUTF8(kSteps), UTRANS_FORWARD, status));
  if (!letters)
    return false;
  icu::UnicodeString written = icu::UnicodeString::fromUTF8(text);
  letters->transliterate(written);
  plain.clear();
  written.toUTF8String(plain);
  return true;
}
