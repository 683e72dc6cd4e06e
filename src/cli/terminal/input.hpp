#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace twk::cli {

/// The whole of a file, or of standard input for "-". Raises `BadInput` when it cannot be read or is larger
/// than 64 MiB.
std::string read_input(const std::string& path);

/// The lines of a text without their ends (CRLF or LF), as UTF-8: text that is not UTF-8 counts as code page
/// 1252. A leading byte-order mark is skipped.
std::vector<std::string> text_lines(std::string_view text);

/// A password from a file, or from standard input for "-": the first line without its end. Raises `BadInput`
/// when there is none.
std::string read_password(const std::string& path);

}  // namespace twk::cli
