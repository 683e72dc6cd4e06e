#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace twk::cli {

/// One line on a terminal's standard error that is overwritten repeatedly, and nothing at all in a pipe.
/// Drive it from a run's view, or from a value that is watched:
///
///     Progress progress;
///     const auto watch = domain.loading.watch([&] { progress.show(domain.loading.get()); });
class Progress {
 public:
  Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

  /// Shows the text, cut to the width of the terminal; at most about fifteen times a second.
  void show(std::string_view text);
  /// Removes the line, so that other text can be written.
  void clear();

 private:
  bool terminal_;
  bool shown_ = false;
  std::chrono::steady_clock::time_point last_;
};

}  // namespace twk::cli
