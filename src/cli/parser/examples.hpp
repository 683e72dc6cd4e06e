#pragma once

#include <span>
#include <string_view>

namespace CLI {
class App;
}

namespace twk::cli {

struct Example {
  std::string_view words;  ///< of the command: "user create"
  std::string_view lines;  ///< for a shell, one or more
};

/// One of each command. In this order they run one after the other, each with exit code 0, in a sample lab
/// that is "~/lab" and TWK_LAB.
std::span<const Example> all_examples();

/// Puts them into the help of the commands, between a command's own text and the one that all have.
void show_examples(CLI::App& line);

}  // namespace twk::cli
