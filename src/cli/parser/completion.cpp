#include "cli/parser/completion.hpp"

#include <CLI/CLI.hpp>
#include <algorithm>

namespace twk::cli {
namespace {

/// "FILE" of an option's or argument's name in help, without the words that it checks for.
std::string placeholder_of(const CLI::Option& option) {
  const std::string type = option.get_type_name();
  const std::string name = option.get_positional() ? option.get_name(true) : type;
  return name.substr(0, name.find(':'));
}

/// The words of a fixed choice, which the parser shows as "TEXT:{a,b}".
std::vector<std::string> choices_of(const CLI::Option& option) {
  const std::string type = option.get_type_name();
  const std::size_t open = type.find('{');
  const std::size_t close = type.find('}', open == std::string::npos ? 0 : open);
  std::vector<std::string> words;
  if (open == std::string::npos || close == std::string::npos)
    return words;
  std::size_t begin = open + 1;
  while (begin < close) {
    const std::size_t end = std::min(type.find(',', begin), close);
    words.push_back(type.substr(begin, end - begin));
    begin = end + 1;
  }
  return words;
}

class Reader {
 public:
  explicit Reader(const CLI::App& line) : command_(&line) {}

  Completion read(const std::vector<std::string>& words) {
    for (std::size_t i = 0; i + 1 < words.size(); ++i)
      pass(words[i]);
    const std::string last = words.empty() ? std::string() : words.back();
    const std::size_t equals = last.find('=');
    if (waiting_ != nullptr)
      offer_value(*waiting_, last);
    else if (!only_names_ && last.starts_with("--") && equals != std::string::npos)
      offer_value_of(last.substr(0, equals), last.substr(equals + 1));
    else if (!only_names_ && last.starts_with('-'))
      offer_options(last);
    else
      offer_words(last);
    return std::move(result_);
  }

 private:
  void pass(const std::string& word) {
    const CLI::App* const inner = only_names_ ? nullptr : subcommand(word);
    if (waiting_ != nullptr) {
      waiting_ = nullptr;
    } else if (!only_names_ && word == "--") {
      only_names_ = true;
    } else if (!only_names_ && word.size() > 1 && word.front() == '-') {
      const CLI::Option* const option = find(word);
      if (option != nullptr && option->get_items_expected_max() != 0)
        waiting_ = option;
    } else if (inner != nullptr) {
      command_ = inner;
      result_.command += (result_.command.empty() ? "" : " ") + word;
      names_ = 0;
    } else {
      ++names_;
    }
  }

  const CLI::Option* find(const std::string& name) const {
    for (const CLI::App* one = command_; one != nullptr; one = one->get_parent()) {
      if (const CLI::Option* const option = one->get_option_no_throw(name))
        return option;
    }
    return nullptr;
  }

  const CLI::App* subcommand(const std::string& name) const {
    const auto named = command_->get_subcommands([&](const CLI::App* one) { return one->check_name(name); });
    return named.empty() ? nullptr : named.front();
  }

  void offer(const std::string& word, std::string_view prefix, const std::string& help) {
    if (word.starts_with(prefix))
      result_.candidates.push_back({result_.before + word, help.substr(0, help.find('\n'))});
  }

  void offer_value(const CLI::Option& option, const std::string& prefix) {
    result_.prefix = prefix;
    const std::vector<std::string> choices = choices_of(option);
    for (const std::string& word : choices)
      offer(word, prefix, {});
    if (choices.empty())
      result_.placeholder = placeholder_of(option);
  }

  void offer_value_of(const std::string& name, const std::string& prefix) {
    const CLI::Option* const option = find(name);
    if (option == nullptr || option->get_items_expected_max() == 0)
      return;
    result_.before = name + "=";
    offer_value(*option, prefix);
  }

  void offer_options(const std::string& prefix) {
    for (const CLI::App* one = command_; one != nullptr; one = one->get_parent()) {
      for (const CLI::Option* const option : one->get_options()) {
        if (option->get_positional() || option->get_lnames().empty())
          continue;
        offer("--" + option->get_lnames().front(), prefix, option->get_description());
      }
    }
  }

  void offer_words(const std::string& prefix) {
    if (names_ == 0 && !only_names_) {
      for (const CLI::App* const one : command_->get_subcommands([](const CLI::App*) { return true; }))
        offer(one->get_name(), prefix, one->get_description());
    }
    std::size_t at = 0;
    for (const CLI::Option* const option : command_->get_options()) {
      if (!option->get_positional())
        continue;
      if (at++ == names_ || option->get_items_expected_max() > 1)
        return offer_value(*option, prefix);
    }
  }

  const CLI::App* command_;
  const CLI::Option* waiting_ = nullptr;  ///< whose value is the next word
  bool only_names_ = false;               ///< after "--"
  std::size_t names_ = 0;                 ///< positional words of the command so far
  Completion result_;
};

}  // namespace

Completion complete_words(const CLI::App& line, const std::vector<std::string>& words) {
  return Reader(line).read(words);
}

}  // namespace twk::cli
