#include "batch/csv_detection.hpp"

#include <algorithm>
#include <array>

#include "base/text.hpp"
#include "base/text_file.hpp"
#include "batch/csv_reader.hpp"

namespace twk::batch {
namespace {

/// Records that are looked at for the separator.
constexpr int kSample = 100;

/// The rarest in texts first.
constexpr std::array<char, 3> kSeparators = {'\t', ';', ','};

struct Mark {
  std::string_view bytes;
  CsvEncoding encoding;
};
constexpr std::array<Mark, 3> kMarks = {{{base::kByteOrderMark, CsvEncoding::kUtf8},
                                         {"\xFF\xFE", CsvEncoding::kUtf16Little},
                                         {"\xFE\xFF", CsvEncoding::kUtf16Big}}};

CsvDialect encoding_of(std::string_view bytes) {
  for (const Mark& mark : kMarks) {
    if (bytes.starts_with(mark.bytes))
      return {mark.encoding, mark.bytes};
  }
  return {base::is_valid_utf8(bytes) ? CsvEncoding::kUtf8 : CsvEncoding::kAnsi, {}};
}

/// How many of the first records have as many fields as the first line; 0 when it is not separated. What
/// cannot be read ends the sample.
int agreeing_records(std::string_view bytes, const CsvDialect& dialect) {
  CsvReader reader(bytes, dialect);
  std::size_t fields = 0;
  int agreeing = 0;
  try {
    for (int i = 0; i < kSample && reader.next(); ++i) {
      const std::size_t found = reader.record().fields.size();
      if (i == 0)
        fields = found;
      if (fields < 2)
        return 0;
      agreeing += found == fields ? 1 : 0;
    }
  } catch (const CsvError&) {
    return agreeing;
  }
  return agreeing;
}

bool has_quoted_field(std::string_view text) {
  for (std::size_t at = text.find('"'); at != base::npos; at = text.find('"', at + 1)) {
    if (at == 0 || std::string_view(",;\t\r\n").find(text[at - 1]) != base::npos)
      return true;
  }
  return false;
}

}  // namespace

CsvDialect find_dialect(std::string_view bytes) {
  CsvDialect dialect = encoding_of(bytes);
  int most = 0;
  char best = ',';
  for (const char separator : kSeparators) {
    dialect.separator = separator;
    const int agreeing = agreeing_records(bytes, dialect);
    if (agreeing > most) {
      most = agreeing;
      best = separator;
    }
  }
  dialect.separator = best;
  return dialect;
}

std::string_view sign_of_spreadsheet(std::string_view bytes) {
  if (encoding_of(bytes).mark.size() == 2)
    return "UTF-16";
  const std::string_view text = base::without_mark(bytes);
  const std::string_view first = text.substr(0, text.find_first_of("\r\n"));
  const auto commas = std::ranges::count(first, ',');
  if (std::ranges::count(first, ';') > commas)
    return "semicolons between the fields";
  if (std::ranges::count(first, '\t') > commas)
    return "tabs between the fields";
  return has_quoted_field(text) ? "quoted fields" : "";
}

}  // namespace twk::batch
