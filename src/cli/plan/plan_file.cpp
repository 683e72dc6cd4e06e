#include "cli/plan/plan_file.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/input.hpp"
#include "creation/command_text.hpp"

namespace twk::cli {
namespace {

[[noreturn]] void refuse(const std::string& title, int number, const std::string& fault) {
  throw BadInput(title + ", line " + std::to_string(number) + ": " + fault);
}

PlanLine read_line(const std::string& title, int number, const std::string& text) {
  std::string spaced = text;
  std::ranges::replace(spaced, '\t', ' ');
  if (const auto control = base::find_control_character(spaced))
    refuse(title, number, "the control character " + *control + " is not allowed");
  if (std::ranges::count(text, '"') % 2 != 0)
    refuse(title, number, "a double quote is not closed");
  PlanLine line{number, text, creation::split_command(text)};
  if (line.words.front() == "twk")
    line.words.erase(line.words.begin());
  if (line.words.empty())
    refuse(title, number, "there is no command after \"twk\"");
  return line;
}

}  // namespace

std::vector<PlanLine> read_plan(const std::string& title, std::string_view bytes) {
  std::vector<PlanLine> plan;
  int number = 0;
  for (const std::string& line : text_lines(bytes)) {
    ++number;
    const std::string text(base::trim(line));
    if (!text.empty() && text.front() != '#')
      plan.push_back(read_line(title, number, text));
  }
  if (plan.empty())
    throw BadInput(title + " contains no command");
  return plan;
}

}  // namespace twk::cli
