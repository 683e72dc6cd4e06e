#include <algorithm>

#include "base/text.hpp"
#include "cli/frame/commands.hpp"
#include "cli/frame/context.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/input.hpp"
#include "session/log_tab.hpp"

namespace twk::cli {
namespace {

std::string log_path(Context& context) {
  return context.session(Depth::kSettings).dbpath + "Log.txt";
}

/// Where the last lines of a text begin: that many, or all there are.
std::size_t start_of_tail(std::string_view text, std::size_t lines) {
  // The end of the last line begins no further one.
  std::size_t before = text.ends_with('\n') ? text.size() - 1 : text.size();
  for (; lines > 0; --lines) {
    const std::size_t line_end = before == 0 ? base::npos : text.rfind('\n', before - 1);
    if (line_end == base::npos)
      return 0;
    before = line_end;
  }
  return std::min(before + 1, text.size());
}

int show_log(Context& context, std::size_t tail) {
  const std::string path = log_path(context);
  if (!context.services().files.exists(path))
    return kExitGreen;
  const std::string bytes = context.services().files.read(path);
  const std::size_t start = start_of_tail(bytes, tail);
  auto number = 1 + std::count(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(start), '\n');
  for (const std::string& line : text_lines(base::from_ansi(std::string_view(bytes).substr(start)))) {
    context.output().result({{"line", number}, {"text", line}}, line);
    ++number;
  }
  return kExitGreen;
}

int clear_log(Context& context) {
  const std::string path = log_path(context);
  session::Delete_Log_File(context.session(Depth::kSettings));
  if (context.services().files.exists(path))
    throw Refused("The log file stays.");
  return kExitGreen;
}

}  // namespace

void add_log_commands(Command& app, Context& context) {
  auto* log = app.add_subcommand("log", "Show or delete Log.txt");
  log->require_subcommand();

  auto tail = std::make_shared<std::size_t>(base::npos);
  auto* show = log->add_subcommand("show", "Print the log file");
  show->add_option("--tail", *tail, "Only the last lines")->type_name("N");
  show->callback([=, &context] { context.set_action([=, &context] { return show_log(context, *tail); }); });

  auto* clear = log->add_subcommand("clear", "Delete the log file; asks first");
  clear->callback([&context] { context.set_action([&context] { return clear_log(context); }); });
}

}  // namespace twk::cli
