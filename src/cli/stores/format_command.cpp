#include "base/text.hpp"
#include "cli/frame/commands.hpp"
#include "cli/frame/context.hpp"
#include "cli/terminal/display.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "format/reference.hpp"
#include "format/user_name.hpp"

namespace twk::cli {
namespace {

struct FormatArguments {
  std::string format;
  std::string first;
  std::string middle;
  std::string last;
  std::optional<int> serial;
  std::optional<std::string> import_line;
};

void set_import_fields(session::ImportState& state, const std::string& line) {
  const std::vector<std::string> fields = base::split(line, ',');
  if (fields.size() > session::kMostImportFields)
    throw UsageError("--import takes at most 100 fields");
  state.Importing = true;
  state.ImportFieldCount = static_cast<std::int16_t>(fields.size());
  std::copy(fields.begin(), fields.end(), state.ImportFields.begin() + 1);
}

int print_name(Context& context, const FormatArguments& arguments) {
  session::Session& session = context.session(Depth::kSettings);
  if (arguments.serial) {
    session.SerialCounter = static_cast<std::int16_t>(*arguments.serial);
    session.SerialTokenUsed = true;
  }
  if (arguments.import_line)
    set_import_fields(session.import, *arguments.import_line);
  const std::string name =
      format::UserName(session, arguments.format, arguments.first, arguments.middle, arguments.last);
  context.output().result({{"format", arguments.format}, {"name", name}}, name);
  return kExitGreen;
}

/// The language of formats, below the options.
std::string language_text() {
  constexpr std::size_t kWrittenWidth = 26;
  std::string text = "Formats, and what the example gives for John Fred Smith:\n";
  const auto add = [&](std::string_view written, const std::string& meaning) {
    text += fill("  " + pad(written, kWrittenWidth) + meaning, kWrittenWidth + 2) + "\n";
  };
  for (const format::FormatPart& part : format::all_format_parts()) {
    add(part.written,
        std::string(part.meaning) + ": " + std::string(part.example) + " gives " + std::string(part.result));
  }
  text += "\nVariables of other texts:\n";
  for (const format::KnownVariable& variable : format::all_known_variables())
    add(variable.written, std::string(variable.meaning) + "; in " + std::string(variable.where));
  return text;
}

}  // namespace

void add_format_command(Command& app, Context& context) {
  auto arguments = std::make_shared<FormatArguments>();
  auto* format = app.add_subcommand("format", "Print what a name format makes of a person's names");
  format->add_option("--serial", arguments->serial, "Value of the serial tags")
      ->type_name("N")
      ->check(Check::within(0, 32767));
  format->add_option("--import", arguments->import_line, "Fields of an import line")->type_name("F1,F2,...");
  format->add_option("FORMAT", arguments->format, "The format, such as %first%.%last%")
      ->required()
      ->may_be_empty();
  format->add_option("FIRST", arguments->first, "First name")->required()->may_be_empty();
  format->add_option("MIDDLE", arguments->middle, "Middle name; may be empty")->required()->may_be_empty();
  format->add_option("LAST", arguments->last, "Last name")->required()->may_be_empty();
  format->footer(language_text);
  format->callback(
      [=, &context] { context.set_action([=, &context] { return print_name(context, *arguments); }); });
}

}  // namespace twk::cli
