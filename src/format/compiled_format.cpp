#include "format/compiled_format.hpp"

#include <algorithm>
#include <utility>

#include "base/text.hpp"
#include "format/tags.hpp"

namespace twk::format {
namespace {

/// While a format is taken apart, a byte below the blank stands for the part of a name that goes there, so
/// that each modifier is found as it would be beside the name itself.
constexpr std::size_t kMostNames = 31;

/// How far before a tag its case is looked for.
constexpr std::size_t kReachOfCase = 3;

bool is_name_mark(char c) {
  return c >= '\0' && c < ' ';
}

bool is_modifier(char c) {
  return c >= '1' && c <= '9';
}

bool is_plain_text(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return c >= ' ' && c <= '~'; });
}

bool is_plain_name(std::string_view name) {
  return std::ranges::all_of(name, [](char c) { return c >= ' ' && c <= '~' && c != '#' && c != '%'; });
}

/// The number of the field, and the size of its tag, where the text begins with one.
std::pair<std::size_t, std::size_t> field_tag(std::string_view text) {
  constexpr std::string_view kBegin = "%IMPORT";
  const std::size_t end = text.find('%', 1);
  if (find_tag(text, kBegin) != 0 || end == base::npos)
    return {};
  const std::string_view number = text.substr(kBegin.size(), end - kBegin.size());
  const bool is_number = (number.size() == 1 || number.size() == 2) && number.front() != '0' &&
                         std::ranges::all_of(number, [](char c) { return c >= '0' && c <= '9'; });
  return is_number ? std::pair{static_cast<std::size_t>(base::val(number)), end + 1} : std::pair{0UL, 0UL};
}

std::size_t digits_of_serial_tag(std::string_view text) {
  std::size_t digits = 0;
  for (const std::string_view tag : {"%N%", "%NN%", "%NNN%"}) {
    ++digits;
    if (find_tag(text.substr(0, tag.size()), tag) == 0)
      return digits;
  }
  return 0;
}

/// `NamePart::letters_of` for a name of bytes that are letters.
std::string_view plain_letters(const NamePart& part, std::string_view name) {
  if (part.first != 0)
    return name.substr(0, part.first);
  return part.last == 0 ? name : name.substr(name.size() - std::min(name.size(), part.last));
}

void append_in_case(std::string_view letters, Case wanted, std::string& out) {
  const std::size_t begin = out.size();
  out += letters;
  for (std::size_t i = begin; i < out.size() && wanted != Case::kAsIs; ++i) {
    const char c = out[i];
    if (wanted == Case::kUpper && c >= 'a' && c <= 'z')
      out[i] = static_cast<char>(c - 'a' + 'A');
    else if (wanted == Case::kLower && c >= 'A' && c <= 'Z')
      out[i] = static_cast<char>(c - 'A' + 'a');
  }
}

void trim_in_place(std::string& text) {
  const std::size_t end = text.find_last_not_of(' ');
  text.erase(end == base::npos ? 0 : end + 1);
  text.erase(0, std::min(text.find_first_not_of(' '), text.size()));
}

}  // namespace

std::optional<CompiledFormat> CompiledFormat::of(std::string_view format, std::string_view tag) {
  if (!is_plain_text(format))
    return std::nullopt;
  CompiledFormat compiled;
  std::vector<Piece> names;
  std::string text = " " + std::string(format) + " ";
  if (!compiled.take_names(text, names))
    return std::nullopt;
  std::erase(text, '#');
  if (!compiled.take_apart(text, names, tag))
    return std::nullopt;
  return compiled;
}

/// Replaces the tags of names by marks. False where a modifier would depend on a name.
bool CompiledFormat::take_names(std::string& text, std::vector<Piece>& names) {
  constexpr std::array<std::string_view, 3> kTags = {"%FIRST%", "%MIDDLE%", "%LAST%"};
  for (std::size_t which = 0; which < kTags.size(); ++which) {
    const std::string_view tag = kTags.at(which);
    for (std::size_t at = find_tag(text, tag); at != base::npos; at = find_tag(text, tag, at)) {
      if (names.size() == kMostNames)
        return false;
      std::size_t left = at;
      for (; left > 0 && is_name_mark(text[left - 1]); --left)
        names.at(static_cast<std::size_t>(text[left - 1])).no_digits = true;
      std::size_t right = at + tag.size();
      for (; right < text.size() && is_name_mark(text[right]); ++right)
        names.at(static_cast<std::size_t>(text[right])).no_digits = true;
      const bool digit_before = left < at && left > 0 && is_modifier(text[left - 1]);
      const bool digit_behind = right > at + tag.size() && right < text.size() && is_modifier(text[right]);
      if (digit_before || digit_behind)
        return false;
      const std::string_view reach =
          std::string_view(text).substr(at - std::min(at, kReachOfCase), std::min(at, kReachOfCase));
      const auto mark = std::find_if(reach.rbegin(), reach.rend(), is_name_mark);
      if (mark != reach.rend()) {
        const auto behind = static_cast<std::size_t>(mark - reach.rbegin());
        if (reach.substr(0, reach.size() - behind).find('#') != base::npos)
          return false;
        Piece& name = names.at(static_cast<std::size_t>(*mark));
        if (text.find('#') < at - behind - 1)
          name.shortest = std::max(name.shortest, kReachOfCase - behind);
      }
      Piece piece{.kind = Kind::kName, .number = which};
      piece.part = take_tag(text, at, tag.size());
      text.insert(at++, 1, static_cast<char>(names.size()));
      names.push_back(std::move(piece));
    }
  }
  return true;
}

/// False where a percent sign belongs to no tag, or to two.
bool CompiledFormat::take_apart(std::string_view text, const std::vector<Piece>& names,
                                std::string_view tag) {
  std::size_t at = 0;
  while (at < text.size()) {
    const char c = text[at];
    const std::string_view rest = text.substr(at);
    std::size_t size = 1;
    if (is_name_mark(c)) {
      pieces_.push_back(names.at(static_cast<std::size_t>(c)));
    } else if (c != '%') {
      add_literal(c);
    } else {
      if (const auto [field, of_field] = field_tag(rest); field != 0) {
        pieces_.push_back({.kind = Kind::kField, .number = field});
        size = of_field;
      } else if (const std::size_t digits = digits_of_serial_tag(rest); digits != 0) {
        pieces_.push_back({.kind = Kind::kSerial, .number = digits});
        has_serial_ = true;
        size = digits + 2;
      } else if (!tag.empty() && find_tag(rest.substr(0, tag.size()), tag) == 0) {
        pieces_.push_back({.kind = Kind::kTag});
        size = tag.size();
      } else {
        return false;
      }
      const std::string_view shared = text.substr(at + size - 1);
      const bool is_of_two = field_tag(shared).first != 0 || digits_of_serial_tag(shared) != 0 ||
                             (!tag.empty() && find_tag(shared.substr(0, tag.size()), tag) == 0);
      if (is_of_two)
        return false;
    }
    at += size;
  }
  return true;
}

void CompiledFormat::add_literal(char c) {
  if (pieces_.empty() || pieces_.back().kind != Kind::kLiteral)
    pieces_.emplace_back();
  pieces_.back().literal += c;
}

bool CompiledFormat::takes(const Values& values) const {
  return std::ranges::all_of(pieces_, [&](const Piece& piece) {
    if (piece.kind == Kind::kField)
      return is_plain_text(values.fields[piece.number]);
    if (piece.kind != Kind::kName)
      return true;
    const std::string_view name = values.names[piece.number];
    const std::string_view letters = plain_letters(piece.part, name);
    return is_plain_name(name) && letters.size() >= piece.shortest &&
           !(piece.no_digits && std::ranges::any_of(letters, is_modifier));
  });
}

void CompiledFormat::fill(const Values& values, std::string& out) const {
  out.clear();
  for (const Piece& piece : pieces_) {
    switch (piece.kind) {
      case Kind::kLiteral:
        out += piece.literal;
        break;
      case Kind::kName:
        append_in_case(plain_letters(piece.part, values.names[piece.number]), piece.part.wanted, out);
        break;
      case Kind::kField:
        out += values.fields[piece.number];
        break;
      case Kind::kSerial:
        out += values.serial ? serial_text(*values.serial, static_cast<int>(piece.number)) : "\x1F";
        break;
      case Kind::kTag:
        out += values.tag;
        break;
    }
  }
  trim_in_place(out);
}

}  // namespace twk::format
