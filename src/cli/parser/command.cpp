#include "cli/parser/command.hpp"

#include <CLI/CLI.hpp>
#include <charconv>
#include <string_view>
#include <system_error>
#include <type_traits>

#include "cli/terminal/failures.hpp"

namespace twk::cli {
namespace {

using Words = std::vector<std::string>;

/// The parser splits a word "[a,b]" where several are allowed. With this prefix, which no argument may
/// contain, it leaves the word whole.
constexpr char kWhole = '\x01';

std::string without_mark(const std::string& word) {
  return word.starts_with(kWhole) ? word.substr(1) : word;
}

bool is_option(const std::string& name) {
  return name.starts_with('-');
}

void take(const std::string& /*name*/, const Words& words, std::string& value) {
  value = words.front();
}

void take(const std::string& /*name*/, const Words& words, std::optional<std::string>& value) {
  value = words.front();
}

void take(const std::string& /*name*/, const Words& words, Words& values) {
  values = words;
}

template <typename Number>
std::enable_if_t<std::is_integral_v<Number>> take(const std::string& name, const Words& words,
                                                  Number& value) {
  const std::string& text = words.front();
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || error != std::errc() || end != text.data() + text.size())
    throw UsageError(name + " takes a whole number, not \"" + text + "\"");
}

void take(const std::string& name, const Words& words, std::optional<int>& value) {
  take(name, words, value.emplace());
}

/// The check of values for which empty means not given.
const std::string kFilled = "filled";

std::string refuse_empty(const std::string& value) {
  return value.empty() ? "an empty value is not allowed here" : "";
}

/// The name in help for a value of the kind.
template <typename Value>
std::string kind_of_value() {
  const bool number = std::is_integral_v<Value> || std::is_same_v<Value, std::optional<int>>;
  return number ? "NUMBER" : "TEXT";
}

/// An option of the command, or of its parents.
const CLI::Option* find_option(const CLI::App* command, const std::string& name) {
  for (; command != nullptr; command = command->get_parent()) {
    if (const CLI::Option* option = command->get_option_no_throw(name))
      return option;
  }
  return nullptr;
}

const CLI::App* find_command(const CLI::App& command, const std::string& name) {
  const auto named = command.get_subcommands([&](const CLI::App* inner) { return inner->check_name(name); });
  return named.empty() ? nullptr : named.front();
}

bool looks_like_an_option(std::string_view word) {
  return word.size() > 1 && word.front() == '-';
}

/// Reads the words of a command line before the parser, which would use any next word as a missing
/// value.
class WordReader {
 public:
  WordReader(const CLI::App& line, int argc, const char* const* argv)
      : command_(&line), given_(argv + 1, argv + argc) {}

  Words read() {
    while (next_ < given_.size()) {
      std::string word = given_[next_++];
      if (word == "--") {
        take_rest();
      } else if (looks_like_an_option(word)) {
        take_option(word);
      } else {
        take_word(std::move(word));
      }
    }
    return std::move(words_);
  }

 private:
  void take_rest() {
    words_.emplace_back("--");
    while (next_ < given_.size())
      take_name(given_[next_++]);
  }

  void take_word(std::string word) {
    if (const CLI::App* const inner = find_command(*command_, word)) {
      command_ = inner;
      words_.push_back(std::move(word));
    } else {
      take_name(std::move(word));
    }
  }

  void take_name(std::string word) {
    const std::vector<const CLI::Option*> options = command_->get_options();
    const bool several = std::any_of(options.begin(), options.end(), [](const CLI::Option* option) {
      return option->get_positional() && option->get_allow_extra_args();
    });
    words_.push_back(several && word.starts_with('[') ? kWhole + word : std::move(word));
  }

  void take_option(const std::string& word) {
    const std::size_t equals = word.find('=');
    const std::string name = word.substr(0, equals);
    const CLI::Option* const option = find_option(command_, name);
    if (option == nullptr || option->get_items_expected_max() == 0) {
      if (option != nullptr && equals + 1 == word.size())
        refuse(name + " takes no value");
      words_.push_back(word);
      return;
    }
    words_.push_back(name);
    words_.push_back(equals == std::string::npos ? next_word_for(name) : word.substr(equals + 1));
  }

  std::string next_word_for(const std::string& name) {
    if (next_ == given_.size())
      refuse(name + " needs a value");
    if (looks_like_an_option(given_[next_]))
      refuse(name + " needs a value, and " + given_[next_] +
             " looks like an option; a value like that is given as " + name + "=" + given_[next_]);
    return given_[next_++];
  }

  [[noreturn]] void refuse(const std::string& fault) const { throw UsageError(with_help(*command_, fault)); }

  const CLI::App* command_;  ///< whose options the words are
  Words given_;
  std::size_t next_ = 0;
  Words words_;
};

}  // namespace

std::string with_help(const CLI::App& command, const std::string& fault) {
  std::string words = command.get_name();
  for (const CLI::App* outer = command.get_parent(); outer != nullptr; outer = outer->get_parent())
    words.insert(0, outer->get_name() + " ");
  return fault + ". Try `" + words + " --help`.";
}

Check::Check(std::function<std::string(std::string&)> refuse)
    : Check(CLI::Validator(std::move(refuse), std::string())) {}

Check::Check(CLI::Validator validator) : validator_(std::make_shared<CLI::Validator>(std::move(validator))) {}

Check Check::one_of(std::vector<std::string> words) {
  return Check(CLI::IsMember(std::move(words)));
}

Check Check::one_of_folding_case(std::vector<std::string> words) {
  return Check(CLI::IsMember(std::move(words), CLI::ignore_case));
}

Check Check::within(std::int64_t least, std::int64_t most) {
  return Check(CLI::Range(least, most));
}

Option* Option::required() {
  real_.required();
  return this;
}

Option* Option::type_name(const std::string& name) {
  real_.type_name(name);
  return this;
}

Option* Option::check(const Check& check) {
  real_.check(*check.validator_);
  return this;
}

Option* Option::excludes(const Option* other) {
  real_.excludes(&other->real_);
  return this;
}

Option* Option::heading(const std::string& text) {
  real_.group(text);
  return this;
}

Option* Option::values(int least, int most) {
  real_.expected(least, most);
  return this;
}

Option* Option::may_be_empty() {
  real_.get_validator(kFilled)->active(false);
  return this;
}

Option* Option::shows_default() {
  real_.capture_default_str();
  return this;
}

bool Option::is_given() const {
  return real_.count() > 0;
}

Command::~Command() = default;

template <typename Value>
Option* Command::add(const std::string& name, Value& value, const std::string& description) {
  const auto read = [name = name, &value](const Words& words) {
    take(name, words, value);
    return true;
  };
  CLI::Option& real = *real_.add_option(name, CLI::callback_t(read), description);
  real.type_name(kind_of_value<Value>());
  real.transform(without_mark);
  const bool is_text = std::is_same_v<Value, std::string>;
  if (is_text || (std::is_same_v<Value, Words> && is_option(name)))
    real.check(refuse_empty, {}, kFilled);
  if constexpr (std::is_same_v<Value, std::string>)
    real.default_function([&value] { return value; });
  if constexpr (std::is_same_v<Value, Words>) {
    real.expected(CLI::detail::expected_max_vector_size);
    real.allow_extra_args(!is_option(name));
  }
  return options_.emplace_back(std::make_unique<Option>(real)).get();
}

Command* Command::add_subcommand(const std::string& name, const std::string& description) {
  return subcommands_.emplace_back(std::make_unique<Command>(*real_.add_subcommand(name, description))).get();
}

Option* Command::add_flag(const std::string& name, bool& value, const std::string& description) {
  return options_.emplace_back(std::make_unique<Option>(*real_.add_flag(name, value, description))).get();
}

Option* Command::add_flag(const std::string& name, std::function<void()> given,
                          const std::string& description) {
  CLI::Option* const flag = real_.add_flag_callback(name, std::move(given), description);
  return options_.emplace_back(std::make_unique<Option>(*flag)).get();
}

Option* Command::add_option(const std::string& name, std::string& value, const std::string& description) {
  return add(name, value, description);
}

Option* Command::add_option(const std::string& name, std::vector<std::string>& values,
                            const std::string& description) {
  return add(name, values, description);
}

Option* Command::add_option(const std::string& name, std::optional<std::string>& value,
                            const std::string& description) {
  return add(name, value, description);
}

Option* Command::add_option(const std::string& name, int& value, const std::string& description) {
  return add(name, value, description);
}

Option* Command::add_option(const std::string& name, std::optional<int>& value,
                            const std::string& description) {
  return add(name, value, description);
}

Option* Command::add_option(const std::string& name, std::size_t& value, const std::string& description) {
  return add(name, value, description);
}

std::vector<std::string> Command::words_of(int argc, const char* const* argv) const {
  return WordReader(real_, argc, argv).read();
}

void Command::require_subcommand() {
  real_.require_subcommand(1);
}

void Command::footer(const std::string& text) {
  real_.footer(text);
}

void Command::footer(std::function<std::string()> text) {
  real_.footer(std::move(text));
}

void Command::callback(std::function<void()> done) {
  real_.callback(std::move(done));
}

}  // namespace twk::cli
