#include "windows/log_window.hpp"

#include <algorithm>
#include <optional>

#include "base/dates.hpp"
#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "controls/drawing_off.hpp"
#include "session/log_block.hpp"
#include "session/log_tab.hpp"
#include "windows/log_lights.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/hourglass.hpp"
#include "windows/state/log_window.hpp"

namespace twk::windows {
namespace {

/// The end of a file of any size is what one looks for.
constexpr std::uint64_t kMostBytes = 4U << 20U;
constexpr const char* kAllBlocks = "All operations";
constexpr const char* kWithoutLight = "No light";
constexpr const char* kWithErrors = "With lines of errors";

std::string_view without_return(std::string_view line) {
  return line.ends_with('\r') ? line.substr(0, line.size() - 1) : line;
}

bool is_error(std::string_view line) {
  return base::starts_with_fold(base::trim(line), "Error") ||
         base::starts_with_fold(base::trim(line), "Failed");
}

/// From the first complete block on, oldest first.
std::vector<LogBlock> blocks_of(std::string_view bytes) {
  std::vector<LogBlock> blocks;
  session::BlockReader reader;
  for (const std::string& raw : base::split(bytes, '\n')) {
    const std::string_view line = without_return(raw);
    if (reader.take(line)) {
      blocks.emplace_back();
      continue;
    }
    if (blocks.empty())
      continue;
    LogBlock& block = blocks.back();
    block.text += std::string(line) + "\n";
    block.has_errors = block.has_errors || is_error(line);
    block.time = reader.time();
    block.administrator = reader.administrator();
    block.subject = reader.subject();
    block.name = reader.name();
  }
  std::erase_if(blocks, [](const LogBlock& block) { return block.time.empty(); });
  return blocks;
}

std::string read_end(Desktop& session, bool& whole) {
  const auto file = session.platform.files.open_random_read(session.log.path());
  const std::uint64_t size = file->size();
  const std::uint64_t from = size - std::min(size, kMostBytes);
  whole = from == 0;
  return base::from_ansi(file->read(from, size - from));
}

bool is_shown(const LogBlock& block, const std::string& choice) {
  if (choice == kAllBlocks)
    return true;
  if (choice == kWithErrors)
    return block.has_errors;
  return choice == kWithoutLight ? block.light.empty() : block.light == choice;
}

void fill(LogWindow& window) {
  const controls::DrawingOff off(window.blocks);
  window.blocks.clear();
  for (std::size_t i = 0; i < window.all.size(); ++i) {
    const LogBlock& block = window.all[i];
    if (!is_shown(block, window.shown.text))
      continue;
    window.blocks.add(std::to_string(i),
                      block.subject.empty() ? std::string("(nothing was written)") : block.subject,
                      block.light, {block.time, block.administrator});
  }
}

std::string light_in_words(const LogBlock& block) {
  return block.light.empty() ? "No light: neither the log tab nor the record of an import tells it."
                             : block.light + ", told by " + block.told_by + ".";
}

/// False, after a box with the reason, when the file cannot be read.
bool load(Desktop& session) {
  LogWindow& window = session.log_window;
  const Hourglass hourglass(session.form1);
  window.text.caption = std::string();
  bool whole = true;
  base::Trap trap;
  window.shown.set_items({kAllBlocks, std::string(session::kGreen), std::string(session::kYellow),
                          std::string(session::kRed), kWithoutLight, kWithErrors});
  window.shown.text = std::string(kAllBlocks);
  const auto read = [&] {
    window.all = blocks_of(read_end(session, whole));
    give_lights(session, window.all);
    std::ranges::reverse(window.all);
  };
  if (!trap(read)) {
    session.platform.dialogs.MsgBox(
        "The log cannot be read: " + base::in_words(trap.number(), trap.description()),
        platform::Buttons::kOk, platform::Icon::kExclamation, "Log");
    return false;
  }
  fill(window);
  std::string path = session.log.path();
  // A database on this machine is in a folder with slashes, and ends in a backslash as everywhere.
  if (path.starts_with('/'))
    std::ranges::replace(path, '\\', '/');
  window.told.caption = path + (whole ? "" : ", its last 4 MB");
  return true;
}

controls::ListRow* block_named(LogWindow& window, const std::string& name) {
  const auto found = std::ranges::find(window.all, name, &LogBlock::name);
  return found == window.all.end() ? nullptr
                                   : &window.blocks.at(static_cast<std::size_t>(found - window.all.begin()));
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
  const std::vector<std::string> told = row.sub_items;
  if (!load(session))
    return;
  LogWindow& window = session.log_window;
  controls::ListRow* block = told.size() > 1 ? block_named(window, told[1]) : nullptr;
  if (block == nullptr && !told.empty())
    block = block_at(window.blocks, told.front());
  show(session, block);
}

void LogWindow_Selected(Desktop& session) {
  LogWindow& window = session.log_window;
  const controls::ListRow* const row = window.blocks.selected();
  const LogBlock* const block =
      row == nullptr ? nullptr : &window.all.at(static_cast<std::size_t>(std::stoul(row->key)));
  window.light.caption = block == nullptr ? std::string() : light_in_words(*block);
  window.text.caption = block == nullptr ? std::string() : block->text;
}

void LogWindow_Filter(Desktop& session) {
  LogWindow& window = session.log_window;
  fill(window);
  window.blocks.select(window.blocks.empty() ? nullptr : &window.blocks.at(0));
  LogWindow_Selected(session);
}

}  // namespace twk::windows
