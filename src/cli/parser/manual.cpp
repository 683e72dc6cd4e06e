#include "cli/parser/manual.hpp"

#include <CLI/CLI.hpp>
#include <string>

#include "cli/parser/examples.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/output.hpp"
#include "format/reference.hpp"

namespace twk::cli {
namespace {

/// "--yes", "FILE": the name that a person reads.
std::string shown_name(const CLI::Option& option) {
  if (option.get_positional())
    return option.get_name(true);
  return option.get_lnames().empty() ? "-" + option.get_snames().front() : "--" + option.get_lnames().front();
}

void print_command(Output& output, const CLI::App& command, const std::string& words) {
  std::string inner;
  const auto subcommands = command.get_subcommands([](const CLI::App*) { return true; });
  for (const CLI::App* const one : subcommands)
    inner += (inner.empty() ? "" : " ") + one->get_name();
  output.result({{"command", words}, {"help", command.get_description()}, {"commands", inner}}, {});
  for (const CLI::Option* const option : command.get_options()) {
    const bool takes_value = option->get_items_expected_max() != 0;
    output.result({{"command", words},
                   {"option", shown_name(*option)},
                   {"value", takes_value ? option->get_type_name() : std::string()},
                   {"required", option->get_required()},
                   {"help", option->get_description()},
                   {"heading", option->get_positional() ? std::string("Arguments") : option->get_group()}},
                  {});
  }
  for (const CLI::App* const one : subcommands)
    print_command(output, *one, words + (words.empty() ? "" : " ") + one->get_name());
}

}  // namespace

int print_manual(Output& output, const CLI::App& line) {
  output.set_json(true);
  print_command(output, line, {});
  for (const format::FormatPart& part : format::all_format_parts()) {
    output.result({{"format", part.written},
                   {"meaning", part.meaning},
                   {"example", part.example},
                   {"result", part.result}},
                  {});
  }
  for (const format::KnownVariable& one : format::all_known_variables())
    output.result({{"variable", one.written}, {"meaning", one.meaning}, {"where", one.where}}, {});
  for (const Example& one : all_examples())
    output.result({{"words", one.words}, {"example", one.lines}}, {});
  output.finish();
  return kExitGreen;
}

}  // namespace twk::cli
