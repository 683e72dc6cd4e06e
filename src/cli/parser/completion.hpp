#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
}

namespace twk::cli {

/// A word that a shell may offer, and what it means.
struct Candidate {
  std::string word;
  std::string help;
};

/// What the last of the words of an unfinished command line can be.
struct Completion {
  std::vector<Candidate> candidates;  ///< commands, options and words of a fixed choice that begin with it
  std::string command;                ///< "user import"; empty for the program itself
  std::string placeholder;  ///< "FILE": a value is wanted that only the lab, the domain or the shell knows
  std::string prefix;       ///< what is typed of that value
  std::string before;       ///< what stands before the value in the last word: "--template="
};

/// Of the program `line`; the last word may be empty.
Completion complete_words(const CLI::App& line, const std::vector<std::string>& words);

}  // namespace twk::cli
