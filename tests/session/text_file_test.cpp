#include "session/text_file.hpp"

#include "session/log_tab.hpp"
#include "support/world.hpp"
#include "windows/state/form1.hpp"

namespace twk::session {
namespace {

const std::string kMark = "\xEF\xBB\xBF";

TEST(TextFile, ATableIsUtf8FromTheFirstCharacterThatHasNoPlace) {
  const struct {
    std::vector<std::string> lines;
    std::string bytes;
  } cases[] = {{{}, ""},
               {{"a,Müller", "", "b,€"}, "a,M\xFCller\r\n\r\nb,\x80\r\n"},
               {{"p,department,Dział Płac", "p,title,ü"}, kMark + "p,department,Dział Płac\r\np,title,ü\r\n"},
               // These three characters would be taken for the mark.
               {{"ï»¿a"}, kMark + "ï»¿a\r\n"}};
  for (const auto& one : cases) {
    EXPECT_EQ(table_bytes(one.lines), one.bytes);
    EXPECT_EQ(table_lines(one.bytes), one.lines);
  }
  EXPECT_EQ(table_bytes({"a\tb"}), "a<U+0009>b\r\n");
  EXPECT_EQ(log_line("Łódź\n\u202Eü"),
            "<U+0141>\xF3"
            "d<U+017A><U+000A><U+202E>\xFC\r\n");
}

class RunFileTest : public test::TestWorld {};

TEST_F(RunFileTest, TheWholeFileTurnsIntoUtf8WithTheFirstLineThatNeedsIt) {
  const std::string path = database / "Import.err";
  const struct {
    std::vector<std::string> lines;
    std::string bytes;
  } cases[] = {{{"Jörg,x", "Zoë,y"}, "J\xF6rg,x\r\nZo\xEB,y\r\n"},
               {{"Jörg,x", "Łucja,y", "Zoë,z"}, kMark + "Jörg,x\r\nŁucja,y\r\nZoë,z\r\n"},
               // In the code page these two bytes would be read as the UTF-8 of "é".
               {{"Ã©,x"}, kMark + "Ã©,x\r\n"}};
  for (const auto& one : cases) {
    RunFile file;
    file.open(files, path, true);
    for (const std::string& line : one.lines)
      file.line(line);
    EXPECT_EQ(test::get_file(path), one.bytes);
  }
  RunFile later;
  later.open(files, path, false);
  later.line("Zoë");
  EXPECT_EQ(test::get_file(path), kMark + "Ã©,x\r\nZoë\r\n");
}

TEST_F(RunFileTest, AFailureWhileItTurnsIsReportedOnceAndLeavesTheLinesBefore) {
  const std::string path = database / "Import.err";
  RunFile file;
  file.open(files, path, true);
  write_run_file(session, file, "Jörg,x");
  files.fail_from(1, base::error::kDiskFull);
  write_run_file(session, file, "Łucja,y");
  write_run_file(session, file, "Zoë,z");
  EXPECT_EQ(test::get_file(path), "J\xF6rg,x\r\n");
  EXPECT_EQ(session.form1.ListView1.size(), 1U);
}

}  // namespace
}  // namespace twk::session
