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

int show_log(Context& context, std::size_t tail) {
  const std::string path = log_path(context);
  if (!context.services().files.exists(path))
    return kExitGreen;
  const std::vector<std::string> lines = text_lines(base::from_ansi(context.services().files.read(path)));
  const std::size_t first = tail < lines.size() ? lines.size() - tail : 0;
  for (std::size_t i = first; i < lines.size(); ++i)
    context.output().result({{"line", i + 1}, {"text", lines[i]}}, lines[i]);
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
