#include "batch/csv_detection.hpp"

#include <array>

#include "base/text.hpp"
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

}  // namespace twk::batch
