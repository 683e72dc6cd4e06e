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

/// Where the last lines of a file begin: that many, or all there are. Reads from the end.
std::uint64_t start_of_tail(platform::RandomFile& file, std::size_t lines) {
  constexpr std::uint64_t kPiece = 64U << 10U;
  const std::uint64_t size = file.size();
  // The end of the last line begins no further one.
  std::uint64_t end = size == 0 || file.read(size - 1, 1) != "\n" ? size : size - 1;
  while (lines > 0 && end > 0) {
    const std::uint64_t from = end - std::min(end, kPiece);
    const std::string piece = file.read(from, end - from);
    std::size_t before = piece.size();
    for (; lines > 0; --lines) {
      const std::size_t line_end = before == 0 ? base::npos : piece.rfind('\n', before - 1);
      if (line_end == base::npos)
        break;
      before = line_end;
      if (lines == 1)
        return from + line_end + 1;
    }
    end = from;
  }
  return lines > 0 ? 0 : size;
}

/// The number of the line that begins there.
std::size_t line_at(platform::RandomFile& file, std::uint64_t start) {
  constexpr std::uint64_t kPiece = 1U << 20U;
  std::size_t number = 1;
  for (std::uint64_t at = 0; at < start; at += kPiece) {
    const std::string piece = file.read(at, std::min(kPiece, start - at));
    number += static_cast<std::size_t>(std::count(piece.begin(), piece.end(), '\n'));
  }
  return number;
}

int show_log(Context& context, std::size_t tail) {
  const std::string path = log_path(context);
  if (!context.services().files.exists(path))
    return kExitGreen;
  const std::unique_ptr<platform::RandomFile> file = context.services().files.open_random_read(path);
  const std::uint64_t start = tail == base::npos ? 0 : start_of_tail(*file, tail);
  std::size_t number = context.options().json ? line_at(*file, start) : 0;
  for (const std::string& line : text_lines(base::from_ansi(file->read(start, file->size() - start)))) {
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
  if (context.output().json())
    context.output().result({{"deleted", true}}, {});
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
