#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

namespace twk::session {

/// The row of asterisks that begins each block of a log.
inline constexpr std::string_view kAsterisks = "*****************************************";

/// Tells the blocks of "Log.txt" apart, from its lines in their order: asterisks, day and time, "User:" with
/// a name, and what was done. Before the first asterisks there is no block.
class BlockReader {
 public:
  /// A line without its end, as `text_in_log` makes it. True for the asterisks that begin a block.
  bool take(std::string_view line);
  /// True when the line says something of its block that is not known yet.
  [[nodiscard]] bool needs(std::string_view line) const;

  [[nodiscard]] const std::string& time() const { return time_; }
  [[nodiscard]] const std::string& administrator() const { return administrator_; }
  /// The first line of its own.
  [[nodiscard]] const std::string& subject() const { return subject_; }
  /// The same for whoever reads the log as for whoever wrote it: time, subject, and which one it is of those
  /// alike within a second. Empty while the subject is not known.
  [[nodiscard]] const std::string& name() const { return name_; }

 private:
  void take_subject(std::string_view line);

  bool begun_ = false;
  std::string time_;
  std::string administrator_;
  std::string subject_;
  std::string name_;
  std::string second_;  ///< the time of the blocks that are counted
  std::unordered_map<std::string, int> alike_;
};

}  // namespace twk::session
