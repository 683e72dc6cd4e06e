#include "cli/terminal/progress.hpp"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>

#include "cli/terminal/display.hpp"

namespace twk::cli {
namespace {

constexpr std::chrono::milliseconds kPause{66};

std::size_t terminal_width() {
  winsize size = {};
  if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
    return 79;
  return size.ws_col - 1U;
}

}  // namespace

Progress::Progress() : terminal_(can_move_cursor(STDERR_FILENO)) {}

Progress::~Progress() {
  clear();
}

void Progress::show(std::string_view text) {
  const auto now = std::chrono::steady_clock::now();
  if (!terminal_ || (shown_ && now - last_ < kPause))
    return;
  const std::string line = printable(text);
  std::fprintf(stderr, "\r\x1b[K%s", std::string(clip(line, terminal_width())).c_str());
  std::fflush(stderr);
  shown_ = true;
  last_ = now;
}

void Progress::clear() {
  if (!shown_)
    return;
  std::fputs("\r\x1b[K", stderr);
  std::fflush(stderr);
  shown_ = false;
}

}  // namespace twk::cli
