#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/bytes.hpp"

/// The hours of a week at which users may log on.
///
/// As 21 bytes, a bit an hour, set for permitted. Bit value 1 of byte 0 is the first hour of Sunday in UTC;
/// each following bit (2, 4 … 128, then the next byte) is the next hour. With the fixed offset of the grid
/// that is Sunday 12pm, and the last twelve bits are Sunday morning; `hours_zone.hpp` has the other offset.
///
/// As cells, a value an hour, row by row from Sunday, column by column from 12am.
///
/// As text, seven lines of 24 characters, '#' for permitted and '.' for denied.
namespace twk::directory {

inline constexpr int kDays = 7;
inline constexpr int kHours = 24;
/// Hours by which the grid is ahead of UTC unless the administrator chose otherwise.
inline constexpr int kFixedHoursAhead = 12;

/// "Sunday" for row 1 to "Saturday" for row 7.
std::string_view day_name(int row);
/// "12am" for 0, "12pm" for 12, "12am" again for 24: the end of the hour of column 1 to 24, the value
/// before being its beginning.
std::string hour_name(int hour);

/// Missing bytes count as permitted.
std::vector<bool> cells_of_bytes(const base::Bytes& bytes, int hours_ahead = kFixedHoursAhead);
base::Bytes bytes_of_cells(const std::vector<bool>& cells, int hours_ahead = kFixedHoursAhead);

/// Seven lines.
std::vector<std::string> text_of_cells(const std::vector<bool>& cells);

struct HoursText {
  std::vector<bool> cells;  ///< empty when the text is invalid
  std::string error;        ///< "line 3, column 5: …"; what is wrong with it
};
/// Seven lines of 24 characters, Sunday first, 12am first: '#', '1' or 'X' permits, '.', '0' or '-' denies. A
/// line may begin with the day's name or its first three letters, which must then be correct. Blanks between
/// the characters and empty lines are ignored.
HoursText parse_hours(const std::vector<std::string>& lines);

}  // namespace twk::directory
