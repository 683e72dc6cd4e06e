#pragma once

#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "support/run_program.hpp"

namespace twk::test {

using Arguments = std::vector<std::string>;
using Runner = std::function<ProgramResult(const Arguments& words, const std::string& input)>;
/// What a name such as $LAB stands for: a text, also within a word, or several words.
using Meanings = std::map<std::string, Arguments>;

/// The objects of a result in JSON lines.
std::vector<nlohmann::json> json_lines(const std::string& text);

/// Runs commands of the program and compares what they print. A transcript has these lines, continued by
/// lines that begin with a blank:
///
///     $ site show 'Head Office'    a command; quotes of both kinds keep words together
///     $ site show x => 2 no site   its exit code, when that is not 0, and what standard error contains
///     < line                       of its standard input
///     ! text                       what standard error contains
///     | text                       what standard output contains
///     > line                       of all of standard output; nothing for none
///     - text                       what neither contains
///     {"name": "x"}                members of the next object it prints; these are all, and asked for by --json
void play(std::string_view transcript, const Runner& run, const Meanings& meanings = {});

}  // namespace twk::test
