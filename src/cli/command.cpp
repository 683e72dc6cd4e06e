#include "cli/command.hpp"

#include <CLI/CLI.hpp>

namespace twk::cli {

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

Option* Option::repeated() {
  real_.allow_extra_args(false);
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
  return options_.emplace_back(std::make_unique<Option>(*real_.add_option(name, value, description))).get();
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

void Command::require_subcommand() {
  real_.require_subcommand(1);
}

void Command::footer(const std::string& text) {
  real_.footer(text);
}

void Command::callback(std::function<void()> done) {
  real_.callback(std::move(done));
}

}  // namespace twk::cli
