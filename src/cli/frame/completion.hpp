#pragma once

#include <string>
#include <vector>

#include "cli/parser/completion.hpp"

namespace twk::cli {

class Context;

/// `twk __complete WORDS…`, which the shells call while a person types: what the last word can be, a line
/// each, "word TAB meaning"; names come from the lab or the domain that the words, the environment and the
/// settings name. A last line "FILES" or "FOLDERS" leaves the rest to the shell. Nothing is asked and nothing
/// complains: what cannot be found out is not offered.
int print_completions(Context& context, const CLI::App& line, const std::vector<std::string>& words);

}  // namespace twk::cli
