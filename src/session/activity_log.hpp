#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/files.hpp"
#include "session/text_file.hpp"

namespace twk::session {

struct Session;

/// Lights of the log tab, which are also the names of their pictures.
inline constexpr std::string_view kGreen = "GREEN";
inline constexpr std::string_view kYellow = "YELLOW";
inline constexpr std::string_view kRed = "RED";

/// The row of asterisks that begins each block of a log.
inline constexpr std::string_view kAsterisks = "*****************************************";

/// One row at the end of the log tab, with the time. "RED" beeps. A row that is not GREEN bears the reasons
/// that the log was given since the row before, behind the message: " User jo deleted.: Error Deleting: …;
/// …", each text once and the first of many. Gives the text of the row. Raises when the severity is none of
/// the three.
std::string LOG_TAB(Session& session, std::string_view severity, std::string_view message);

/// "Log.txt" in the database directory, open for the block of one operation; one write a line.
///
/// A log that cannot be opened or written does not stop the operation: the first failure adds a "YELLOW" row
/// to the log tab that names the file and the reason, and the rest of that block is dropped.
class ActivityLog {
 public:
  /// Opens the file when it is not open yet; without a header.
  void open(Session& session);
  /// Opens the file and writes asterisks, date and time, and the person's name.
  void begin_block(Session& session);
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
  /// They are none from here on; a row of the log tab bears them if it is `told`.
  std::vector<std::string> take_reasons(bool told = false);
  /// The reasons that rows of the log tab bear, one by one, since they were taken the last time.
  std::vector<std::string> take_told();
  /// From here on lines, reasons and rows of the log tab show stars in place of a secret; none for the empty
  /// text. One of less than six characters could be a part of any text and is not looked for.
  void conceal(std::string secret) { secret_ = std::move(secret); }
  /// A text as it may be shown.
  [[nodiscard]] std::string concealed(std::string_view text) const;
  void close();
  [[nodiscard]] bool is_open() const { return file_ != nullptr; }

 private:
  void fail(const std::string& reason);

  Session* session_ = nullptr;
  std::unique_ptr<platform::AppendFile> file_;
  std::vector<std::string> reasons_;
  std::vector<std::string> told_;
  std::string secret_;
};

/// "31/12/2026 09:05:00" of the session's clock.
std::string date_and_time(Session& session);

/// One line of a file that an import keeps beside the log. A failure adds a "YELLOW" row to the log tab and
/// closes the file, so that it is told once.
void write_run_file(Session& session, RunFile& file, std::string_view text);

/// The buttons of the log tab.
void Clear_log(Session& session);
/// Shows "Log.txt" in a text viewer, without waiting for it.
void Log_Detail(Session& session);
/// Asks, and deletes "Log.txt" on Yes. A file that is not there is no fault.
void Delete_Log_File(Session& session);

}  // namespace twk::session
