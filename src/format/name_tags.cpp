#include "format/name_tags.hpp"

#include <algorithm>
#include <limits>

#include "base/text.hpp"
#include "format/replace.hpp"
#include "format/tags.hpp"
#include "session/session.hpp"
#include "session/settings.hpp"

namespace twk::format {
namespace {

std::string in_case(std::string_view text, Case wanted) {
  switch (wanted) {
    case Case::kUpper:
      return base::upper(text);
    case Case::kLower:
      return base::lower(text);
    case Case::kAsIs:
      break;
  }
  return std::string(text);
}

/// 1 to 9 for those digits, 0 for anything else.
std::size_t digit(char c) {
  return c >= '1' && c <= '9' ? static_cast<std::size_t>(c - '0') : 0;
}

/// Byte position of the character before the one at `at`; `npos` at the start of the text.
std::size_t before(std::string_view text, std::size_t at) {
  if (at == 0 || at == base::npos)
    return base::npos;
  if (static_cast<unsigned char>(text[at - 1]) < 0x80)
    return at - 1;
  for (std::size_t size = std::min<std::size_t>(4, at); size > 1; --size) {
    if (base::length(text.substr(at - size, size)) == 1)
      return at - size;
  }
  return at - 1;
}

/// The case that a modifier within the three characters before a tag requests.
Case case_of(std::string_view text, std::size_t tag_at) {
  const std::size_t from = before(text, before(text, before(text, tag_at)));
  if (from == base::npos)
    return Case::kAsIs;
  const std::string_view window = text.substr(from, tag_at - from);
  for (std::size_t mark = window.find('#'); mark != base::npos; mark = window.find('#', mark + 1)) {
    const std::string_view letter = window.substr(mark + 1, 1);
    if (letter == "U" || letter == "u")
      return Case::kUpper;
    if (letter == "L" || letter == "l")
      return Case::kLower;
  }
  return Case::kAsIs;
}

std::int16_t stored_serial(session::Session& session) {
  using Limits = std::numeric_limits<std::int16_t>;
  const std::int32_t number = base::val(session::read_setting(session, session::kSetup, "IncNumber"));
  return static_cast<std::int16_t>(std::clamp<std::int32_t>(number, Limits::min(), Limits::max()));
}

void expand_serial(session::Session& session, std::string& text, std::string_view tag, int digits) {
  if (find_tag(text, tag) == base::npos)
    return;
  text = FRString(text, tag, serial_text(session.SerialCounter, digits));
  session.SerialTokenUsed = true;
}

}  // namespace

std::string_view NamePart::letters_of(std::string_view name) const {
  if (first != 0)
    return base::left(name, first);
  return last != 0 ? base::right(name, last) : name;
}

std::string NamePart::of(std::string_view name) const {
  return in_case(letters_of(name), wanted);
}

NamePart take_tag(std::string& text, std::size_t& at, std::size_t tag_size) {
  NamePart part{case_of(text, at), at == 0 ? 0 : digit(text[at - 1]), 0};
  if (part.wanted != Case::kAsIs) {
    // The letter of "#U" is removed; "#" and a digit stay for now.
    const std::size_t end = part.first != 0 ? at - 1 : at;
    const std::size_t start = before(text, end);
    text.erase(start, end - start);
    at -= end - start;
  }
  std::size_t begin = at;
  std::size_t end = at + tag_size;
  if (part.first != 0) {
    begin -= part.wanted == Case::kAsIs ? 1 : 2;
  } else if (part.last = end < text.size() ? digit(text[end]) : 0; part.last != 0) {
    begin = part.wanted == Case::kAsIs ? at : before(text, at);
    ++end;
  }
  text.erase(begin, end - begin);
  at = begin;
  return part;
}

void expand_name(std::string& text, std::string_view tag, std::string_view name) {
  std::size_t from = 0;
  for (int i = 0; i < kMostExpansions && text.size() <= kMostText; ++i) {
    std::size_t at = find_tag(text, tag, from);
    if (at == base::npos)
      return;
    const NamePart part = take_tag(text, at, tag.size());
    text.insert(at, part.of(name));
    // The tag cannot be before this, except one that begins there and ends in the name.
    from = at - std::min(at, tag.size() - 1);
  }
}

void begin_serials(session::Session& session) {
  if (!session.SerialTokenUsed)
    session.SerialCounter = stored_serial(session);
}

std::string serial_text(std::int16_t number, int digits) {
  return (number < 0 ? "-" : "") + base::to_text(std::abs(int{number}), digits);
}

void expand_serials(session::Session& session, std::string& text) {
  begin_serials(session);
  expand_serial(session, text, "%N%", 1);
  expand_serial(session, text, "%NN%", 2);
  expand_serial(session, text, "%NNN%", 3);
}

}  // namespace twk::format
