#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.hpp"

/// The text files of the database directory: lines with CR LF, in code page 1252. What has no place in the
/// code page makes a table, or a file of a run, UTF-8 with a byte-order mark as a whole; in a log it appears
/// as its number, "<U+0141>". So no character is ever replaced by another.
namespace twk::session {

/// A line of a log. Control characters appear as their numbers, too.
std::string log_line(std::string_view text);
/// The text as it is read in a log.
std::string text_in_log(std::string_view text);

/// The bytes of a text table. Control characters appear as their numbers.
std::string table_bytes(const std::vector<std::string>& lines);
/// The lines of a text table, in UTF-8, without their ends.
std::vector<std::string> table_lines(std::string_view bytes);

/// A file that a run writes besides the log. Lines stay as they are, so that a refused line can be corrected
/// and imported again. The first line that code page 1252 has no place for, or whose bytes there would read
/// as UTF-8, turns the whole file into UTF-8. Calls raise the runtime error of the platform's files; lines
/// for a file that is not open are dropped.
class RunFile {
 public:
  /// `fresh` empties an existing file; otherwise lines are appended in its encoding.
  void open(platform::Files& files, std::string_view path, bool fresh);
  void line(std::string_view text);
  void close() { file_.reset(); }

 private:
  void turn_into_utf8();

  platform::Files* files_ = nullptr;
  std::string path_;
  std::unique_ptr<platform::AppendFile> file_;
  bool utf8_ = false;
};

}  // namespace twk::session
