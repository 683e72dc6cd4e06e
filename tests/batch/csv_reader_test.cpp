#include "batch/csv_reader.hpp"

#include <gmock/gmock.h>

#include "base/text.hpp"
#include "batch/csv_detection.hpp"

namespace twk::batch {
namespace {

using testing::ElementsAre;

/// A text of ASCII in UTF-16.
std::string wide(std::string_view text) {
  std::string bytes;
  for (const char c : text)
    bytes += {c, '\0'};
  return bytes;
}

/// The records as "line:field|field", and the fault that ended them.
std::vector<std::string> records_of(std::string_view bytes) {
  std::vector<std::string> records;
  CsvReader reader(bytes, find_dialect(bytes));
  try {
    while (reader.next()) {
      std::string text = base::to_text(reader.record().line) + ":";
      for (const std::string& field : reader.record().fields)
        text += field + "|";
      records.push_back(text);
    }
  } catch (const CsvError& fault) {
    records.push_back(fault.description());
  }
  return records;
}

TEST(CsvReader, ReadsWhatSpreadsheetProgramsSave) {
  const std::string euro = "name;price\r\n\"R\xC3\xA9\";5 \xE2\x82\xAC\r\n";
  const std::pair<std::string, std::vector<std::string>> cases[] = {
      {"a,b\r\n\"1,5\",\"say \"\"hi\"\"\"\r\n", {"1:a|b|", "2:1,5|say \"hi\"|"}},
      {"a,b\n\n\r\n1,\"x\r\ny\"\n2,\r3,4", {"1:a|b|", "4:1|x\r\ny|", "6:2||", "7:3|4|"}},
      {"a,b\n5\" pipe,\"\"\n", {"1:a|b|", "2:5\" pipe||"}},
      {euro, {"1:name|price|", "2:R\xC3\xA9|5 \xE2\x82\xAC|"}},
      {"\xEF\xBB\xBF" + euro, {"1:name|price|", "2:R\xC3\xA9|5 \xE2\x82\xAC|"}},
      {*base::to_ansi(euro), {"1:name|price|", "2:R\xC3\xA9|5 \xE2\x82\xAC|"}},
      {"\xFF\xFE" + wide("a\tb\n\"x\n,\"\t") + "\x3D\xD8\x4B\xDC", {"1:a|b|", "2:x\n,|\xF0\x9F\x91\x8B|"}},
      {"", {}},
      {"\r\n\n", {}},
  };
  for (const auto& [bytes, records] : cases)
    EXPECT_EQ(records_of(bytes), records) << bytes;
}

TEST(CsvReader, FindsTheSeparatorThatMostRecordsAgreeOn) {
  const std::pair<const char*, char> cases[] = {
      {"first,last\nJo,Smith; Jr\n", ','},
      {"first;last\nJo,A;Smith, Jr\n", ';'},
      {"name, first;office\nSmith, Jo;North\n", ';'},
      {"name; first\toffice, floor\nSmith; Jo\tNorth, 2\n", '\t'},
      {"\"a;b;c\",d\n\"1;2;3\",4\n", ','},
      {"a;b,c\n1,2\n3,4\n", ','},
      {"a;b\n1;\"never closed\n", ';'},
      {"alone\nalone, too\n", ','},
  };
  for (const auto& [bytes, separator] : cases)
    EXPECT_EQ(find_dialect(bytes).separator, separator) << bytes;
}

TEST(CsvReader, SaysWhereAFileCannotBeRead) {
  const std::pair<std::string, const char*> cases[] = {
      {"a,b\n1,2\n3,\"x\n5,6\n", "line 3, column 3: the quote that begins here is never closed"},
      {"a,b\n\"\xC3\xA9\n1\"2,3\n",
       "line 3, column 3: text after the quote that closes the field of line 2, column 1"},
      {"a,b\n1, \"2\"\n", "line 2, column 4: a quote after a blank"},
      {std::string("a,b\n1,\0", 7), "line 2, column 3: a NUL character"},
      {wide("a,b\n"), "line 1, column 2: a NUL character"},
      {"\xFF\xFE" + wide("a,b\n1,") + "2", "line 2, column 3: the file ends in the middle of a character"},
      {"\xFF\xFE" + wide("a,b\n1,") + "\x3D\xD8" + wide("2"), "line 2, column 3: half of a character"},
      {"\xFF\xFE" + wide("a,b\n") + "\x4B\xDC", "line 2, column 1: half of a character"},
      {"\xEF\xBB\xBF"
       "a,b\n\xC3\xA9,\xE9\n",
       "line 2, column 3: the byte 0xE9 is not UTF-8"},
  };
  for (const auto& [bytes, fault] : cases) {
    const std::vector<std::string> records = records_of(bytes);
    EXPECT_THAT(records.empty() ? "" : records.back(), testing::StartsWith(fault)) << bytes;
  }
}

TEST(CsvReader, KeepsTheBytesOfARecord) {
  const std::string bytes = "\xFF\xFE" + wide("a;b\r\n\r\n\"x\n\";1\r\n2;3");
  CsvReader reader(bytes, find_dialect(bytes));
  std::vector<std::string> raw;
  while (reader.next()) {
    reader.put_back();
    EXPECT_TRUE(reader.next());
    raw.push_back(base::to_text(reader.record().line) + std::string(reader.record().raw));
  }
  EXPECT_THAT(raw, ElementsAre("1" + wide("a;b\r\n"), "3" + wide("\"x\n\";1\r\n"), "5" + wide("2;3")));
}

}  // namespace
}  // namespace twk::batch
