#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

using testing::HasSubstr;

const std::string kSample = TWK_SOURCE_DIR "/samples/new-starters.csv";

Arguments import_of_sample(const std::string& lab, bool in_unit) {
  Arguments arguments = {"--lab",      lab,     "--json", "user",        "import",        kSample,
                         "--template", "Staff", "--site", "Head Office", "--skip-prompts"};
  if (in_unit)
    arguments.insert(arguments.end(), {"--ou", kNewStarters});
  return arguments;
}

TEST(SampleImport, ComesToTheSameInEveryKindOfDomain) {
  struct Case {
    std::string kind;
    int warned;  ///< whose principal name is in use; a WinNT domain has none
  };
  for (const Case& one : {Case{"native", 3}, Case{"mixed", 3}, Case{"nt", 0}}) {
    const TemporaryDirectory folder;
    const std::string lab = folder / "lab";
    ASSERT_EQ(twk({"lab", "init", lab, "--sample", "--kind", one.kind}).exit_code, 0);
    const ProgramResult result = twk(import_of_sample(lab, one.kind != "nt"));
    const auto lines = json_lines(result.out);
    ASSERT_EQ(lines.size(), 201U) << result.err;
    EXPECT_EQ(lines.back()["created"], 194) << one.kind;
    EXPECT_EQ(lines.back()["warned"], one.warned) << one.kind;
    EXPECT_EQ(lines.back()["refused"], 6) << one.kind;
    EXPECT_THAT(
        get_file(lines.back()["importErr"]),
        HasSubstr("The following users were not created.\r\n*****************************************\r\n"
                  "\r\nWulandari\r\n"));
    const auto users = json_lines(twk({"--lab", lab, "--json", "user", "list"}).out);
    EXPECT_GE(users.size(), 194U + 25U) << one.kind;
  }
}

class KilledPrograms : public TwkLab {};

TEST_F(KilledPrograms, LoseNoUserThatTheyReported) {
  std::size_t reported = 0;
  // Longer and longer, until some users were reported: the speed of the machine does not matter.
  int milliseconds = 30;
  for (int round = 0; round < 10 && (round < 4 || reported == 0); ++round, milliseconds *= 2) {
    const std::string seconds = std::to_string(milliseconds / 1000.0);
    const std::string copy = lab() + "-" + seconds;
    std::filesystem::copy(lab(), copy, std::filesystem::copy_options::recursive);
    ProgramRun how;
    how.arguments = {"/usr/bin/timeout", "--signal=KILL", seconds, TWK_BIN_DIR "/twk"};
    const Arguments import = import_of_sample(copy, true);
    how.arguments.insert(how.arguments.end(), import.begin(), import.end());
    const ProgramResult killed = run_program(how);
    const ProgramResult list = twk({"--lab", copy, "--json", "user", "list"});
    ASSERT_EQ(list.exit_code, 0) << list.err;
    for (const nlohmann::json& row : json_lines(killed.out)) {
      if (!row.contains("line") || row["light"] == "RED")
        continue;
      ++reported;
      EXPECT_THAT(list.out, HasSubstr("\"name\":" + row["user"].dump() + ",")) << "killed after " << seconds;
    }
  }
  EXPECT_GT(reported, 0U);
}

class FullDisks : public TwkLab {};

TEST_F(FullDisks, AreReportedAndLoseNothingThatWasSaved) {
  ProgramRun how;
  how.arguments = {"/bin/sh", "-c", "ulimit -f 0; exec \"$@\"", "sh", TWK_BIN_DIR "/twk"};
  for (const char* argument : {"--lab", "LAB", "site", "add", "Branch", "--nt-server", "FS1"})
    how.arguments.emplace_back(argument == std::string("LAB") ? lab() : argument);
  const std::string before = get_file(database_file("Site.dat"));
  const ProgramResult result = run_program(how);
  EXPECT_EQ(result.exit_code, 2) << result.out;
  EXPECT_THAT(result.err, HasSubstr("Error Opening Site.dat"));
  EXPECT_EQ(get_file(database_file("Site.dat")), before);
}

class ProgramsAtOnce : public TwkLab {};

TEST_F(ProgramsAtOnce, EachKeepWhatTheOtherSaves) {
  constexpr int kSites = 20;
  const std::string save = "for i in $(seq " + std::to_string(kSites) +
                           "); do \"$0\" --lab \"$1\" site add \"$2$i\" --nt-server FS1 || exit 1; done";
  const std::string both = "(" + save + ") & first=$!; (set -- \"$1\" \"$3\"; " + save + ") && wait $first";
  ProgramRun how;
  how.arguments = {"/bin/sh", "-c", both, TWK_BIN_DIR "/twk", lab(), "North ", "South "};
  const ProgramResult saved = run_program(how);
  EXPECT_EQ(saved.exit_code, 0) << saved.err;
  EXPECT_EQ(json_lines(run({"--json", "site", "list"}).out).size(), 2U * kSites + 1U);
  EXPECT_EQ(std::filesystem::file_size(database_file("Site.dat")), (2U * kSites + 1U) * 154U);
}

}  // namespace
}  // namespace twk::test
