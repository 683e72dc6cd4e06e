#include "windows/log_window.hpp"

#include <algorithm>
#include <optional>

#include "base/dates.hpp"
#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "controls/drawing_off.hpp"
#include "session/log_tab.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/hourglass.hpp"
#include "windows/state/log_window.hpp"

namespace twk::windows {
namespace {

/// The end of a file of any size is what one looks for.
constexpr std::uint64_t kMostBytes = 4U << 20U;
constexpr std::string_view kUserLine = "User:";

std::string_view without_return(std::string_view line) {
  return line.ends_with('\r') ? line.substr(0, line.size() - 1) : line;
}

void add_line(LogBlock& block, std::string_view line) {
  block.text += std::string(line) + "\n";
  block.has_errors = block.has_errors || base::starts_with_fold(base::trim(line), "Error") ||
                     base::starts_with_fold(base::trim(line), "Failed");
  if (block.time.empty())
    block.time = base::trim(line);
  else if (block.administrator.empty() && line.starts_with(kUserLine))
    block.administrator = base::trim(line.substr(kUserLine.size()));
  else if (block.subject.empty())
    block.subject = base::trim(line);
}

/// From the first complete block on.
std::vector<LogBlock> blocks_of(std::string_view bytes) {
  std::vector<LogBlock> blocks;
  for (const std::string& raw : base::split(bytes, '\n')) {
    const std::string_view line = without_return(raw);
    if (line == session::kAsterisks)
      blocks.emplace_back();
    else if (!blocks.empty())
      add_line(blocks.back(), line);
  }
  std::erase_if(blocks, [](const LogBlock& block) { return block.time.empty(); });
  std::ranges::reverse(blocks);
  return blocks;
}

std::string read_end(Desktop& session, bool& whole) {
  const auto file = session.platform.files.open_random_read(session.log.path());
  const std::uint64_t size = file->size();
  const std::uint64_t from = size - std::min(size, kMostBytes);
  whole = from == 0;
  return base::from_ansi(file->read(from, size - from));
}

void fill(LogWindow& window) {
  const controls::DrawingOff off(window.blocks);
  window.blocks.clear();
  for (std::size_t i = 0; i < window.all.size(); ++i) {
    const LogBlock& block = window.all[i];
    if (window.only_errors.on() && !block.has_errors)
      continue;
    window.blocks.add(
        std::to_string(i), block.subject.empty() ? std::string("(nothing was written)") : block.subject,
        block.has_errors ? session::kYellow : std::string_view(), {block.time, block.administrator});
  }
}

/// False, after a box with the reason, when the file cannot be read.
bool load(Desktop& session) {
  LogWindow& window = session.log_window;
  const Hourglass hourglass(session.form1);
  window.text.caption = std::string();
  bool whole = true;
  base::Trap trap;
  window.only_errors.value = 0;
  if (!trap([&] { window.all = blocks_of(read_end(session, whole)); })) {
    session.platform.dialogs.MsgBox(
        "The log cannot be read: " + base::in_words(trap.number(), trap.description()),
        platform::Buttons::kOk, platform::Icon::kExclamation, "Log");
    return false;
  }
  fill(window);
  window.told.caption = session.log.path() + (whole ? "" : ", its last 4 MB");
  return true;
}

/// The newest block that began at that time or before.
controls::ListRow* block_at(controls::ListView& blocks, const std::string& time) {
  const auto wanted = base::parse_date(time);
  for (std::size_t place = 0; wanted && place < blocks.size(); ++place) {
    const auto begun = base::parse_date(blocks.at(place).sub_items.front());
    if (begun && *begun <= *wanted)
      return &blocks.at(place);
  }
  return nullptr;
}

void show(Desktop& session, controls::ListRow* block) {
  controls::ListView& blocks = session.log_window.blocks;
  blocks.select(block == nullptr && !blocks.empty() ? &blocks.at(0) : block);
  LogWindow_Selected(session);
  session.platform.dialogs.show_modal("LogWindow");
}

}  // namespace

void View_Log_Click(Desktop& session) {
  const std::string status = session.form1.StatusBar1.panel1.get();
  if (session::Log_Detail(session) || !load(session))
    return;
  session.form1.StatusBar1.panel1 = status;
  show(session, nullptr);
}

void show_block_of(Desktop& session, const controls::ListRow& row) {
  const std::string time = row.sub_items.empty() ? std::string() : row.sub_items.front();
  if (load(session))
    show(session, block_at(session.log_window.blocks, time));
}

void LogWindow_Selected(Desktop& session) {
  LogWindow& window = session.log_window;
  const controls::ListRow* const row = window.blocks.selected();
  window.text.caption =
      row == nullptr ? std::string() : window.all.at(static_cast<std::size_t>(std::stoul(row->key))).text;
}

void LogWindow_Filter(Desktop& session) {
  LogWindow& window = session.log_window;
  fill(window);
  window.blocks.select(window.blocks.empty() ? nullptr : &window.blocks.at(0));
  LogWindow_Selected(session);
}

}  // namespace twk::windows
