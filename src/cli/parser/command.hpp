#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
class Validator;
}  // namespace CLI

/// The parts of a command line. The parser is a header-only library that is compiled in every file that
/// includes it, so only `command.cpp` and `command_line.cpp` do.
namespace twk::cli {

/// What is wrong with a command line, and where to find help for its command.
std::string with_help(const CLI::App& command, const std::string& fault);

/// What the text of an option must be.
class Check {
 public:
  /// `refuse` returns what is wrong with a text; nothing when it is fine.
  explicit Check(std::function<std::string(std::string&)> refuse);

  static Check one_of(std::vector<std::string> words);
  /// Folds case; the option then has the word as spelled here.
  static Check one_of_folding_case(std::vector<std::string> words);
  static Check within(std::int64_t least, std::int64_t most);

 private:
  friend class Option;
  explicit Check(CLI::Validator validator);

  std::shared_ptr<CLI::Validator> validator_;
};

/// An option or a flag, whose names begin with "-", or a positional argument.
class Option {
 public:
  explicit Option(CLI::Option& real) : real_(real) {}

  Option* required();
  /// The value's name in help.
  Option* type_name(const std::string& name);
  Option* check(const Check& check);
  /// The two exclude each other.
  Option* excludes(const Option* other);
  /// Its heading in help.
  Option* heading(const std::string& text);
  Option* values(int least, int most);
  /// For a text, or one of several: otherwise an empty one is refused, because it is the same as none given.
  /// For an optional text an empty one is a normal value.
  Option* may_be_empty();
  /// Help shows its default.
  Option* shows_default();

  [[nodiscard]] bool is_given() const;

 private:
  CLI::Option& real_;
};

/// A command with its options and sub-commands. Values are stored while the line is parsed; the callback runs
/// after that. An option with several values is given once for each; a positional argument takes all
/// remaining words.
class Command {
 public:
  explicit Command(CLI::App& real) : real_(real) {}
  Command(const Command&) = delete;
  Command& operator=(const Command&) = delete;
  ~Command();

  Command* add_subcommand(const std::string& name, const std::string& description);
  Option* add_flag(const std::string& name, bool& value, const std::string& description);
  Option* add_flag(const std::string& name, std::function<void()> given, const std::string& description);
  Option* add_option(const std::string& name, std::string& value, const std::string& description);
  Option* add_option(const std::string& name, std::vector<std::string>& values,
                     const std::string& description);
  Option* add_option(const std::string& name, std::optional<std::string>& value,
                     const std::string& description);
  Option* add_option(const std::string& name, int& value, const std::string& description);
  Option* add_option(const std::string& name, std::optional<int>& value, const std::string& description);
  Option* add_option(const std::string& name, std::size_t& value, const std::string& description);

  /// The words of a command line in the parser's form: an option and its value are two, "--option=" has
  /// an empty value, and a name in brackets is one name. Raises `UsageError` for an option whose value is
  /// missing or looks like an option, and for a value of a flag that is empty.
  [[nodiscard]] std::vector<std::string> words_of(int argc, const char* const* argv) const;

  void require_subcommand();
  /// Text after the options in help.
  void footer(const std::string& text);
  /// The same, made when help is printed.
  void footer(std::function<std::string()> text);
  void callback(std::function<void()> done);

 private:
  template <typename Value>
  Option* add(const std::string& name, Value& value, const std::string& description);

  CLI::App& real_;
  std::vector<std::unique_ptr<Command>> subcommands_;
  std::vector<std::unique_ptr<Option>> options_;
};

}  // namespace twk::cli
