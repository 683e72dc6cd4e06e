#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "controls/list_view.hpp"
#include "platform/platform.hpp"
#include "session/log_block.hpp"

namespace twk::session {

/// Lights of the log tab, which are also the names of their pictures.
inline constexpr std::string_view kGreen = "GREEN";
inline constexpr std::string_view kYellow = "YELLOW";
inline constexpr std::string_view kRed = "RED";

/// A row of the log tab.
struct LogRow {
  std::string light;
  std::string text;
};

/// "Log.txt" in the database directory, open for the block of one operation; one write a line, unless lines
/// are gathered.
///
/// A log that cannot be opened or written does not stop the operation: the first failure adds a "YELLOW" row
/// to the log tab that names the file and the reason, and the rest of that block is dropped.
class ActivityLog {
 public:
  /// `directory` returns the database directory at each opening, `rows` the list of the log tab.
  ActivityLog(const platform::Platform& services, const std::string& directory, controls::ListView& rows)
      : services_(services), directory_(directory), rows_(rows) {}

  /// Opens the file when it is not open yet; without a header.
  void open();
  /// Opens the file and writes asterisks, date and time, and the person's name.
  void begin_block();
  /// One line; nothing happens while the file is closed.
  void line(std::string_view text);
  /// A line that also says why the next light will not be GREEN. It counts while the file is closed, too.
  void reason(std::string_view text);
  /// The same with the cause, which is a line of its own.
  void reason(std::string_view text, std::string_view why);
  /// A reason whose lines are written already.
  void remember(std::string_view text);
  /// The reasons since the last row of the log tab.
  [[nodiscard]] const std::vector<std::string>& reasons() const { return reasons_; }
  /// Clears them; they count as part of a row of the log tab if `told`.
  std::vector<std::string> take_reasons(bool told = false);
  /// The reasons in rows of the log tab, one by one, since they were last taken.
  std::vector<std::string> take_told();
  /// The rows of the log tab since they were last taken.
  std::vector<LogRow> take_rows();
  /// From here on lines, reasons and rows of the log tab show stars in place of a secret; none for the empty
  /// text. One of fewer than six characters could be part of any text and is not searched for.
  void conceal(std::string secret) { secret_ = std::move(secret); }
  /// A text with secrets hidden.
  [[nodiscard]] std::string concealed(std::string_view text) const;
  /// Writes what was gathered. From here on lines are gathered for one write if `on`, until the block ends.
  void gather(bool on);
  /// Gathered lines are lost with a killed program, so they are written before whatever may take long or go
  /// wrong: the next step of the work, a question, a command.
  void write_gathered();
  void close();
  /// Path of the file.
  [[nodiscard]] std::string path() const { return directory_ + "Log.txt"; }
  /// One row at the end of the log tab, with the time. "RED" beeps. A row that is not GREEN has the reasons
  /// logged since the previous row after the message: " User jo deleted.: Error Deleting: …;
  /// …", each text once and the first of many. `key`, which must be unique, says what the row is about.
  /// Returns the text of the row. Its second sub-item is the name of the block that it is about: of the open
  /// one, or of the last one when that has no row yet. Raises when the severity is not one of the three.
  std::string add_row(std::string_view severity, std::string_view message, std::string key = {});
  /// Nothing of a rehearsal of many lines is kept: neither lines nor rows, which are only formed.
  void rehearse(bool on) { rehearses_ = on; }
  [[nodiscard]] bool is_open() const { return file_ != nullptr; }

 private:
  void fail(const std::string& reason);
  void follow_block(std::string_view text);
  [[nodiscard]] std::vector<std::string> columns_of_row();
  void write(std::string_view text);

  const platform::Platform& services_;
  const std::string& directory_;
  controls::ListView& rows_;
  std::unique_ptr<platform::AppendFile> file_;
  bool gathers_ = false;
  std::string gathered_;
  BlockReader block_;
  bool block_has_row_ = false;
  std::vector<std::string> reasons_;
  std::vector<std::string> told_;
  std::vector<LogRow> added_;
  bool rehearses_ = false;
  std::string secret_;
};

/// "31/12/2026 09:05:00" of the clock.
std::string date_and_time(platform::Clock& clock);

}  // namespace twk::session
