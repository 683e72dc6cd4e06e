#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Text in memory is UTF-8. A byte that is not part of well-formed UTF-8 counts as one character and passes
/// through every function here unchanged, unless a function says otherwise.
namespace twk::base {

inline constexpr std::size_t npos = std::string_view::npos;

/// Without the blanks (0x20, nothing else) at both ends.
std::string_view trim(std::string_view text);
/// Without the blanks at the end.
std::string_view trim_right(std::string_view text);

/// True when every byte is below 0x80.
bool is_ascii(std::string_view text);

/// Simple case mapping of the Latin (also accented), Greek and Cyrillic letters. A letter and its other case
/// have the same number of bytes, so byte positions stay; letters for which this is not true are left
/// alone.
std::string upper(std::string_view text);
std::string lower(std::string_view text);

/// Equal without regard to case.
bool equals_fold(std::string_view a, std::string_view b);
/// The order of the upper-case texts, byte by byte: negative, 0 or positive.
int compare_fold(std::string_view a, std::string_view b);
/// Equal for texts that are equal without regard to case.
std::size_t hash_fold(std::string_view text);
bool starts_with_fold(std::string_view text, std::string_view prefix);
/// Byte position of `needle` at or after `from`, without regard to case; `npos` when it is not found.
/// An empty needle is found at `from`.
std::size_t find_fold(std::string_view text, std::string_view needle, std::size_t from = 0);

/// Number of characters.
std::size_t length(std::string_view text);
/// The first, the last `count` characters; the whole text when it has fewer.
std::string_view left(std::string_view text, std::size_t count);
std::string_view right(std::string_view text, std::size_t count);
/// `count` characters from the 1-based character position `start`; empty when the text ends before it.
std::string_view mid(std::string_view text, std::size_t start, std::size_t count = npos);
/// Characters in reverse order.
std::string reverse(std::string_view text);

/// Code points; a byte that is not well-formed UTF-8 becomes U+FFFD.
std::u32string to_utf32(std::string_view text);
std::string to_utf8(std::u32string_view text);
bool is_valid_utf8(std::string_view text);
/// The text with every byte that is not well-formed UTF-8 replaced by U+FFFD.
std::string to_valid_utf8(std::string_view text);

/// Code page 1252; the five bytes that the code page leaves undefined mean the control characters of the
/// same number. Nothing when a character has no place in the code page.
std::optional<std::string> to_ansi(std::string_view text);
/// The same with `substitute` for what has no place; only for bytes that accompany the whole text.
std::string to_ansi(std::string_view text, char substitute);
std::string from_ansi(std::string_view bytes);
/// The first character with no place in code page 1252, as "Ł (U+0141)"; empty when all have one.
std::optional<std::string> find_outside_ansi(std::string_view text);

/// Marks a file as UTF-8 when it comes first.
inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// Pieces between separators; an empty text has no pieces, a text with n separators has n + 1.
std::vector<std::string> split(std::string_view text, char separator);

/// The number that a text starts with, blanks before it ignored; 0 when there is none. Values outside 32 bits
/// stop at the limits.
std::int32_t val(std::string_view text);
/// The whole text, trimmed, as a decimal number; empty when it is anything else.
std::optional<std::int32_t> to_number(std::string_view text);
/// Decimal text with at least `digits` digits.
std::string to_text(std::int64_t number, int digits = 1);
/// The two hexadecimal digits of a byte, in capitals.
std::string hex_byte(unsigned char byte);
/// The value of a hexadecimal digit in either case; empty for any other character.
std::optional<unsigned> hex_digit(char digit);
/// `number` as "0x" and eight hexadecimal digits.
std::string to_hex(std::uint32_t number);

/// A character by its number: "U+0009".
std::string code_point_name(char32_t code);
/// The first control character (below 0x20, 0x7F, or U+0080 to U+009F), as "U+0009"; empty when there is
/// none.
std::optional<std::string> find_control_character(std::string_view text);
/// The same for control characters and for invisible characters that control how others are shown:
/// format characters (U+00AD, U+200B, U+202E …), line and paragraph separators. A name that people retype
/// from its appearance must not contain any.
std::optional<std::string> find_invisible_character(std::string_view text);

}  // namespace twk::base
