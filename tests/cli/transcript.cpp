#include "cli/transcript.hpp"

#include <sstream>

namespace twk::test {

using testing::HasSubstr;
using testing::Not;

std::vector<nlohmann::json> json_lines(const std::string& text) {
  std::vector<nlohmann::json> objects;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);)
    objects.push_back(nlohmann::json::parse(line));
  return objects;
}

namespace {

/// The lines of a transcript, continued ones as one.
std::vector<std::string> lines_of(std::string_view transcript) {
  std::vector<std::string> lines;
  std::istringstream in{std::string(transcript)};
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with(' '))
      lines.back() += line.substr(line.find_first_not_of(' ') - 1);
    else if (!line.empty())
      lines.push_back(line);
  }
  return lines;
}

std::string replaced(std::string text, const Meanings& meanings) {
  for (const auto& [name, words] : meanings) {
    for (std::size_t at = 0; (at = text.find(name, at)) != std::string::npos; at += words.front().size())
      text.replace(at, name.size(), words.front());
  }
  return text;
}

Arguments words_of(const std::string& command, const Meanings& meanings) {
  Arguments words;
  std::string word;
  char quote = 0;
  bool quoted = false;
  for (const char letter : command + " ") {
    if (quote == 0 && (letter == '"' || letter == '\'')) {
      quote = letter;
      quoted = true;
    } else if (letter == quote) {
      quote = 0;
    } else if (letter != ' ' || quote != 0) {
      word += letter;
    } else if (const auto several = meanings.find(word); several != meanings.end()) {
      words.insert(words.end(), several->second.begin(), several->second.end());
      word.clear();
    } else if (!word.empty() || std::exchange(quoted, false)) {
      words.push_back(replaced(std::exchange(word, {}), meanings));
    }
  }
  return words;
}

void expect_objects(const std::vector<nlohmann::json>& expected, const std::string& out) {
  const auto printed = json_lines(out);
  ASSERT_EQ(printed.size(), expected.size()) << out;
  for (std::size_t i = 0; i < printed.size(); ++i) {
    nlohmann::json with = printed[i];
    with.update(expected[i]);
    EXPECT_EQ(printed[i], with);
  }
}

void play_command(const std::string& command, const std::vector<std::string>& lines, const Runner& run,
                  const Meanings& meanings) {
  std::map<char, std::string> whole;  // the input, and all of the output, by their marks
  std::vector<nlohmann::json> objects;
  for (const std::string& line : lines) {
    if (line.front() == '{')
      objects.push_back(nlohmann::json::parse(line));
    else
      whole[line.front()] += line.size() < 2 ? "" : line.substr(2) + "\n";
  }
  const std::size_t arrow = command.find(" => ");
  Arguments words = words_of(command.substr(1, arrow - 1), meanings);
  if (!objects.empty())
    words.insert(words.begin(), "--json");
  const ProgramResult result = run(words, whole['<']);

  std::size_t digits = 0;
  const std::string end = arrow == std::string::npos ? "0" : replaced(command.substr(arrow + 4), meanings);
  EXPECT_EQ(result.exit_code, std::stoi(end, &digits)) << result.out << result.err;
  EXPECT_THAT(result.err, HasSubstr(end.substr(std::min(end.size(), digits + 1))));
  if (!objects.empty())
    expect_objects(objects, result.out);
  if (whole.contains('>')) {
    EXPECT_EQ(result.out, whole['>']);
  }
  for (const std::string& line : lines) {
    const std::string text = line.size() < 2 ? "" : line.substr(2);
    if (line.front() == '!') {
      EXPECT_THAT(result.err, HasSubstr(text));
    } else if (line.front() == '|') {
      EXPECT_THAT(result.out, HasSubstr(text));
    } else if (line.front() == '-') {
      EXPECT_THAT(result.out + result.err, Not(HasSubstr(text)));
    } else {
      EXPECT_NE(std::string("<>{").find(line.front()), std::string::npos)
          << "no line of a transcript: " << line;
    }
  }
}

}  // namespace

void play(std::string_view transcript, const Runner& run, const Meanings& meanings) {
  std::vector<std::string> lines = lines_of(transcript);
  for (auto command = lines.begin(); command != lines.end();) {
    SCOPED_TRACE(*command);
    ASSERT_EQ(command->front(), '$') << "a transcript begins with a command";
    const auto end =
        std::find_if(command + 1, lines.end(), [](const std::string& line) { return line.front() == '$'; });
    std::vector<std::string> below;
    for (auto line = command + 1; line != end; ++line)
      below.push_back(replaced(*line, meanings));
    play_command(*command, below, run, meanings);
    command = end;
  }
}

}  // namespace twk::test
