#include "batch/csv_reader.hpp"

#include "base/text.hpp"

namespace twk::batch {
namespace {

struct Place {
  std::int32_t line;
  std::int32_t column;
};

std::string in_words(const Place& place) {
  return "line " + base::to_text(place.line) + ", column " + base::to_text(place.column);
}

/// Where a byte is, in a text whose first line has the number `line`.
Place place_of(std::string_view text, const CsvDialect& dialect, std::int32_t line) {
  const bool wide = dialect.unit() == 2;
  const bool big = dialect.encoding == CsvEncoding::kUtf16Big;
  const bool utf8 = dialect.encoding == CsvEncoding::kUtf8;
  Place place = {line, 1};
  char32_t before = 0;
  for (std::size_t at = 0; at + dialect.unit() <= text.size(); at += dialect.unit()) {
    const char32_t unit = wide ? utf16_unit(text, at, big) : static_cast<unsigned char>(text[at]);
    const bool continues =
        (utf8 && (unit & 0xC0U) == 0x80U) || (wide && is_low_surrogate(unit) && is_high_surrogate(before));
    if (unit == '\r' || (unit == '\n' && before != '\r'))
      place = {place.line + 1, 1};
    else if (unit != '\n' && !continues)
      ++place.column;
    before = unit;
  }
  return place;
}

}  // namespace

CsvError::CsvError(std::int32_t line, std::int32_t column, const std::string& fault)
    : RuntimeError(base::error::kTypeMismatch, in_words({line, column}) + ": " + fault),
      line_(line),
      column_(column) {}

CsvReader::CsvReader(std::string_view bytes, const CsvDialect& dialect, std::int32_t first_line)
    : bytes_(bytes),
      dialect_(dialect),
      unit_(dialect.unit()),
      big_(dialect.encoding == CsvEncoding::kUtf16Big),
      position_(dialect.mark.size()),
      start_(position_),
      line_(first_line) {}

char32_t CsvReader::peek() const {
  return unit_ == 2 ? utf16_unit(bytes_, position_, big_) : static_cast<unsigned char>(bytes_[position_]);
}

bool CsvReader::is_at(char character) const {
  return !is_over() && peek() == static_cast<unsigned char>(character);
}

bool CsvReader::pass(char character) {
  const bool there = is_at(character);
  position_ += there ? unit_ : 0;
  return there;
}

bool CsvReader::pass_line_end() {
  const bool carriage_return = pass('\r');
  const bool line_feed = pass('\n');
  line_ += carriage_return || line_feed ? 1 : 0;
  return carriage_return || line_feed;
}

void CsvReader::pass_character() {
  const char32_t character = peek();
  if (character == 0) {
    fail(position_,
         "a NUL character: this is not text, or it is UTF-16 without a byte-order mark. Save the "
         "sheet as CSV, in UTF-8");
  }
  const std::size_t at = position_;
  position_ += unit_;
  if (unit_ == 1 || (!is_high_surrogate(character) && !is_low_surrogate(character)))
    return;
  if (is_low_surrogate(character) || is_over() || !is_low_surrogate(peek()))
    fail(at, "half of a character of UTF-16, a surrogate without its other half");
  position_ += unit_;
}

bool CsvReader::next() {
  start_ = position_;
  while (pass_line_end())
    start_ = position_;
  if (start_ >= bytes_.size())
    return false;
  record_.line = line_;
  record_.fields.clear();
  do {
    record_.fields.push_back(read_field());
  } while (pass(dialect_.separator));
  if (is_over() && position_ < bytes_.size())
    fail(position_, "the file ends in the middle of a character of UTF-16: it is not complete");
  pass_line_end();
  record_.raw = bytes_.substr(start_, position_ - start_);
  if (dialect_.encoding == CsvEncoding::kUtf8)
    require_utf8();
  return true;
}

void CsvReader::put_back() {
  position_ = start_;
  line_ = record_.line;
}

std::string CsvReader::read_field() {
  return is_at('"') ? read_quoted() : read_plain();
}

std::string CsvReader::read_quoted() {
  const std::size_t opening = position_;
  std::string field;
  do {
    // A quote written twice ends one stretch and begins the next with itself.
    const std::size_t from = position_ + (position_ == opening ? unit_ : 0);
    position_ += unit_;
    while (!is_over() && !is_at('"')) {
      if (!pass_line_end())
        pass_character();
    }
    if (is_over())
      fail(opening, "the quote that begins here is never closed");
    field += text(from, position_);
    position_ += unit_;
  } while (is_at('"'));
  if (!is_over() && !is_at(dialect_.separator) && !is_at_line_end()) {
    fail(position_, "text after the quote that closes the field of " +
                        in_words(place_of(bytes_.substr(start_, opening - start_), dialect_, record_.line)) +
                        ". A quote within a quoted field is written twice");
  }
  return field;
}

std::string CsvReader::read_plain() {
  const std::size_t from = position_;
  bool only_blanks = true;
  while (!is_over() && !is_at(dialect_.separator) && !is_at_line_end()) {
    if (only_blanks && position_ > from && is_at('"'))
      fail(position_, "a quote after a blank: a quoted field begins with its quote");
    only_blanks = only_blanks && is_at(' ');
    pass_character();
  }
  return text(from, position_);
}

std::string CsvReader::text(std::size_t from, std::size_t to) const {
  return csv_text(dialect_.encoding, bytes_.substr(from, to - from));
}

void CsvReader::require_utf8() const {
  if (base::is_valid_utf8(record_.raw))
    return;
  std::string_view rest = record_.raw;
  while (base::is_valid_utf8(base::left(rest, 1)))
    rest.remove_prefix(base::left(rest, 1).size());
  fail(position_ - rest.size(), "the byte 0x" + base::hex_byte(static_cast<unsigned char>(rest.front())) +
                                    " is not UTF-8, as which the file is marked");
}

void CsvReader::fail(std::size_t position, const std::string& fault) const {
  const Place place = place_of(bytes_.substr(start_, position - start_), dialect_, record_.line);
  throw CsvError(place.line, place.column, fault);
}

}  // namespace twk::batch
