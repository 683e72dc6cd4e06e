#include <cstdint>
#include <cstdlib>

#include "base/text.hpp"
#include "batch/csv_detection.hpp"
#include "batch/csv_reader.hpp"

namespace {

using namespace twk::batch;

void require(bool holds) {
  if (!holds)
    std::abort();
}

std::int32_t line_ends(std::string_view text) {
  std::int32_t ends = 0;
  char before = 0;
  for (const char c : text) {
    ends += c == '\r' || (c == '\n' && before != '\r') ? 1 : 0;
    before = c;
  }
  return ends;
}

/// Any bytes: records follow each other with nothing but empty lines between them, each has the number of its
/// line, and a fault is within the file.
void read_file(std::string_view bytes) {
  const CsvDialect dialect = find_dialect(bytes);
  CsvReader reader(bytes, dialect);
  std::size_t end = dialect.mark.size();
  std::int32_t line = 1;
  const auto pass_gap = [&](std::size_t to) {
    const std::string gap = csv_text(dialect.encoding, bytes.substr(end, to - end));
    require(gap.find_first_not_of("\r\n") == std::string::npos);
    line += line_ends(gap);
  };
  try {
    while (reader.next()) {
      const CsvRecord record = reader.record();
      const auto begin = static_cast<std::size_t>(record.raw.data() - bytes.data());
      require(begin >= end && !record.fields.empty() && !record.raw.empty());
      pass_gap(begin);
      require(record.line == line);
      reader.put_back();
      require(reader.next() && reader.record().fields == record.fields && reader.record().line == line);
      require(reader.record().raw.data() == record.raw.data());
      end = begin + record.raw.size();
      line += line_ends(csv_text(dialect.encoding, record.raw));
    }
    pass_gap(bytes.size());
  } catch (const CsvError& fault) {
    require(fault.line() >= line && fault.column() > 0 &&
            fault.column() <= static_cast<int>(bytes.size()) + 1);
  }
}

std::string in_units(const std::string& text, const CsvDialect& dialect) {
  if (dialect.unit() == 1)
    return dialect.encoding == CsvEncoding::kAnsi ? twk::base::to_ansi(text).value() : text;
  std::string bytes;
  const auto put = [&](char32_t unit) {
    const char high = static_cast<char>(unit >> 8U);
    const char low = static_cast<char>(unit & 0xFFU);
    const bool big = dialect.encoding == CsvEncoding::kUtf16Big;
    bytes.push_back(big ? high : low);
    bytes.push_back(big ? low : high);
  };
  for (const char32_t code : twk::base::to_utf32(text)) {
    if (code >= 0x10000)
      put(0xD800 + ((code - 0x10000) >> 10U));
    put(code >= 0x10000 ? 0xDC00 + (code & 0x3FFU) : code);
  }
  return bytes;
}

std::string quoted(std::string_view field) {
  std::string text = "\"";
  for (const char c : field)
    text.append(c == '"' ? "\"" : "").push_back(c);
  return text + '"';
}

/// Fields written with quotes are read as they were.
void write_and_read(std::string_view input, CsvDialect dialect) {
  std::string text = twk::base::to_valid_utf8(input);
  std::erase(text, '\0');
  if (dialect.encoding == CsvEncoding::kAnsi && !twk::base::to_ansi(text))
    dialect.encoding = CsvEncoding::kUtf8;
  std::vector<std::vector<std::string>> records;
  std::string file;
  for (const std::string& line : twk::base::split(text, '\x1E')) {
    records.push_back(twk::base::split(line, '\x1F'));
    if (records.back().empty())
      records.back().emplace_back();
    for (const std::string& field : records.back())
      file += (&field == records.back().data() ? "" : std::string(1, dialect.separator)) + quoted(field);
    file += "\r\n";
  }
  file = std::string(dialect.mark) + in_units(file, dialect);
  if (!dialect.mark.empty())
    require(find_dialect(file).encoding == dialect.encoding);
  CsvReader reader(file, dialect);
  for (const auto& record : records)
    require(reader.next() && reader.record().fields == record);
  require(!reader.next());
}

}  // namespace

/// The first byte says how the rest is written as fields; the whole is a file, too.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  read_file(bytes);
  if (bytes.empty())
    return 0;
  constexpr CsvDialect kDialects[] = {{CsvEncoding::kUtf8, {}, ','},
                                      {CsvEncoding::kUtf8, "\xEF\xBB\xBF", ';'},
                                      {CsvEncoding::kAnsi, {}, ';'},
                                      {CsvEncoding::kUtf16Little, "\xFF\xFE", '\t'},
                                      {CsvEncoding::kUtf16Big, "\xFE\xFF", ','}};
  write_and_read(bytes.substr(1), kDialects[data[0] % 5]);
  return 0;
}
