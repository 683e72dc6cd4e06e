#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Text for a terminal.
namespace twk::cli {

/// The width of the text on a terminal, in columns: two for an East Asian wide character or a pictograph,
/// none for a combining mark, one for any other.
std::size_t display_width(std::string_view text);
/// The longest beginning of the text that takes at most `width` columns.
std::string_view clip(std::string_view text, std::size_t width);
/// The text followed by blanks up to `width` columns.
std::string pad(std::string_view text, std::size_t width);

/// The text broken between words after at most 79 columns, lines after the first indented by `indent` blanks.
std::string fill(std::string_view text, std::size_t indent);

/// Safe to write to a terminal: each control character as "<U+001B>", each byte that is not UTF-8 as U+FFFD.
/// `keep_lines` lets line ends pass, as "\n".
std::string printable(std::string_view text, bool keep_lines = false);

/// A runtime number in decimal, an HRESULT as "0x80070005".
std::string error_number_text(std::uint32_t number);

/// True when the stream is a terminal.
bool is_terminal(int descriptor);
/// True for a terminal that understands escape sequences, which "dumb" ones do not.
bool can_move_cursor(int descriptor);
/// True for such a terminal when there is no NO_COLOR in the environment.
bool may_colour(int descriptor);

}  // namespace twk::cli
