#pragma once

#include <cstdlib>

#include "cli/transcript.hpp"
#include "support/temporary_directory.hpp"

namespace twk::test {

inline const std::string kNewStarters = "OU=New Starters,DC=twk,DC=test";

/// Where the program's own settings and databases are, so that those of the person running the tests are
/// not touched.
inline const std::string& home() {
  static const TemporaryDirectory folder;
  static const std::string path = folder.path().string();
  return path;
}

/// The built program. Without `lab` it has none, and knows no domain.
inline ProgramResult twk(const Arguments& arguments, const std::string& input = {}, ProgramRun run = {}) {
  run.arguments = {TWK_BIN_DIR "/twk"};
  run.arguments.insert(run.arguments.end(), arguments.begin(), arguments.end());
  run.input = input;
  for (const auto& [name, value] :
       std::vector<std::pair<std::string, std::string>>{{"TWK_LAB", ""},
                                                        {"XDG_CONFIG_HOME", home() + "/config"},
                                                        {"XDG_DATA_HOME", home() + "/data"},
                                                        {"KRB5CCNAME", "FILE:/nonexistent/ticket"},
                                                        {"KRB5_CONFIG", "/dev/null"}})
    run.environment.insert(run.environment.begin(), {name, value});
  return run_program(run);
}

/// A person at a terminal without colours.
inline ProgramRun at_terminal() {
  ProgramRun how;
  how.terminal = true;
  how.environment = {{"TERM", "dumb"}};
  return how;
}

/// So many lines of a file to import.
inline std::string new_people(int count) {
  std::string csv;
  for (int i = 0; i < count; ++i)
    csv += "First,,Last" + std::to_string(i) + "\n";
  return csv;
}

/// Plays a transcript without a lab.
inline void play_without_lab(std::string_view transcript, const Meanings& meanings = {}) {
  play(
      transcript, [](const Arguments& words, const std::string& input) { return twk(words, input); },
      meanings);
}

/// A sample lab, made once for the suite and copied for each test.
class TwkLab : public testing::Test {
 protected:
  static void SetUpTestSuite() { make("native"); }
  static void TearDownTestSuite() { delete std::exchange(master_, nullptr); }

  static void make(const std::string& kind) {
    delete std::exchange(master_, new TemporaryDirectory);
    place_ = {"--template", "Staff", "--site", "Head Office"};
    if (kind != "nt")
      place_.insert(place_.end(), {"--ou", kNewStarters});
    const ProgramResult made =
        twk({"lab", "init", *master_ / "lab", "--sample", "--kind", kind, "--users", "5"});
    ASSERT_EQ(made.exit_code, 0) << made.err;
  }

  TwkLab() { std::filesystem::copy(*master_ / "lab", lab(), std::filesystem::copy_options::recursive); }

  [[nodiscard]] std::string lab() const { return folder_ / "lab"; }
  [[nodiscard]] std::string database_file(const std::string& name) const { return lab() + "/db/" + name; }
  [[nodiscard]] std::string file(const std::string& name, std::string_view bytes) const {
    put_file(folder_ / name, bytes);
    return folder_ / name;
  }

  /// Runs the program on the lab; options of the program itself may precede the command.
  [[nodiscard]] ProgramResult run(Arguments arguments, const std::string& input = {},
                                  ProgramRun how = {}) const {
    arguments.insert(arguments.begin(), {"--lab", lab()});
    return twk(arguments, input, std::move(how));
  }
  /// The one object that the command prints with --json.
  [[nodiscard]] nlohmann::json result_of(Arguments arguments) const {
    arguments.insert(arguments.begin(), "--json");
    const ProgramResult result = run(arguments);
    EXPECT_EQ(result.exit_code, 0) << result.err;
    const auto lines = json_lines(result.out);
    EXPECT_EQ(lines.size(), 1U) << result.out;
    return lines.empty() ? nlohmann::json() : lines.front();
  }
  /// Plays a transcript on the lab: $LAB is its folder, $NEW the OU of new starters, $STAFF the template,
  /// the site and the OU that a new user needs.
  void play(std::string_view transcript, Meanings further = {}) const {
    further.merge(Meanings{{"$LAB", {lab()}}, {"$NEW", {kNewStarters}}, {"$STAFF", place_}});
    test::play(
        transcript, [this](const Arguments& words, const std::string& input) { return run(words, input); },
        further);
  }

 private:
  static inline Arguments place_;
  static inline TemporaryDirectory* master_ = nullptr;
  TemporaryDirectory folder_;
};

}  // namespace twk::test
