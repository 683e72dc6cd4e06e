#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace twk::windows {

struct Desktop;

inline constexpr std::string_view kTipFile = "TIPOFDAY.TXT";

/// The tips of the day, one a line of a text: those of the file "TIPOFDAY.TXT" in the database directory, or
/// without such a file those of `shipped`. Blank lines do not count. The file is UTF-8 or code page 1252. A
/// file that cannot be read has none.
std::vector<std::string> read_tips(Desktop& session, std::string_view shipped);

}  // namespace twk::windows
