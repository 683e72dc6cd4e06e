#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/files.hpp"

namespace twk::batch {

/// "Import Remaining - <time>.csv": the lines of an import that made no account, as they are in its file,
/// below the heading of that. It holds all lines at first. One that made an account is overwritten with line
/// breaks at once, so that a killed run leaves no line in both places; at the end of the run these empty
/// lines go.
class RemainingLines {
 public:
  /// `bytes`, the input, must outlive the object. Raises what the files raise, as the other calls do.
  void open(platform::Files& files, std::string path, std::string_view bytes);
  /// A part of the input with its line end that made an account.
  void take(std::string_view raw);
  void finish();

  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  [[nodiscard]] std::string line_break() const;

  platform::Files* files_ = nullptr;
  std::string path_;
  std::string_view bytes_;
  std::unique_ptr<platform::RandomFile> file_;
  std::vector<std::pair<std::size_t, std::size_t>> taken_;  ///< offset and size, in the order of the file
};

}  // namespace twk::batch
