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

/// What a command line may hold. The parser is a library of headers that every file which sees it compiles
/// anew, so it is known to `command.cpp` and `command_line.cpp` alone.
namespace twk::cli {

/// What is wrong with a command line, and where help for its command is.
std::string with_help(const CLI::App& command, const std::string& fault);

/// What the text of an option has to be.
class Check {
 public:
  /// `refuse` gives what is wrong with a text; nothing when it will do.
  explicit Check(std::function<std::string(std::string&)> refuse);

  static Check one_of(std::vector<std::string> words);
  /// Folds case; the option then holds the word as it stands here.
  static Check one_of_folding_case(std::vector<std::string> words);
  static Check within(std::int64_t least, std::int64_t most);

 private:
  friend class Option;
  explicit Check(CLI::Validator validator);

  std::shared_ptr<CLI::Validator> validator_;
};

/// An option or a flag, whose names begin with "-", or an argument by its place.
class Option {
 public:
  explicit Option(CLI::Option& real) : real_(real) {}

  Option* required();
  /// What help calls the value.
  Option* type_name(const std::string& name);
  Option* check(const Check& check);
  /// The two may not be given together.
  Option* excludes(const Option* other);
  /// The heading in help that it stands under.
  Option* heading(const std::string& text);
  Option* values(int least, int most);
  /// For a text, or one of several: an empty one is refused else, because it is what is there when none is
  /// given. Of an optional text an empty one is a value like any.
  Option* may_be_empty();
  /// Help tells what it is when it is not given.
  Option* shows_default();

  [[nodiscard]] bool is_given() const;

 private:
  CLI::Option& real_;
};

/// A command with its options and sub-commands. Values are put in place while the line is parsed; the
/// callback runs when it is parsed as a whole. An option with several values is given once for each; an
/// argument by its place takes all words that are left.
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

  /// The words of a command line as the parser takes them: an option and its value are two, "--option=" has
  /// an empty value, and a name in brackets is one name. Raises `UsageError` for an option whose value is
  /// missing or looks like an option, and for a value of a flag that is empty.
  [[nodiscard]] std::vector<std::string> words_of(int argc, char** argv) const;

  void require_subcommand();
  /// Text behind the options in help.
  void footer(const std::string& text);
  void callback(std::function<void()> done);

 private:
  template <typename Value>
  Option* add(const std::string& name, Value& value, const std::string& description);

  CLI::App& real_;
  std::vector<std::unique_ptr<Command>> subcommands_;
  std::vector<std::unique_ptr<Option>> options_;
};

}  // namespace twk::cli
