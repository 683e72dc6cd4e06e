#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace twk::cli {

/// A command of a plan.
struct PlanLine {
  int number = 0;  ///< in the file, from 1
  std::string text;
  std::vector<std::string> words;
};

/// The commands of a file: one on each line, its words separated by blanks, double quotes hold a word
/// together. Blank lines and those that begin with "#" are skipped; a leading "twk" is not part of the
/// command. Raises `BadInput` for a control character, a quote that is not closed, and a file without
/// commands; `title` is the file's name in messages.
std::vector<PlanLine> read_plan(const std::string& title, std::string_view bytes);

}  // namespace twk::cli
