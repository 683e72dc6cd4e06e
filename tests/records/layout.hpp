#pragma once

#include <array>
#include <cstdio>
#include <string>
#include <string_view>

#include "support/temporary_directory.hpp"

/// Record files by way of layout.py, which knows their layout from a description of its own.
namespace twk::test {

inline std::string layout_command(std::string_view command, std::string_view kind, std::string_view path) {
  return std::string("python3 '") + TWK_SOURCE_DIR + "/tests/records/layout.py' " + std::string(command) +
         " " + std::string(kind) + " '" + std::string(path) + "'";
}

/// One line for each record; preceded by "failed" when the file does not have the layout.
inline std::string dump_records(std::string_view kind, const std::string& path) {
  std::FILE* const pipe = popen((layout_command("dump", kind, path) + " 2>&1").c_str(), "r");
  std::string out;
  std::array<char, 4096> buffer{};
  for (std::size_t got = 1; got > 0;) {
    got = std::fread(buffer.data(), 1, buffer.size(), pipe);
    out.append(buffer.data(), got);
  }
  return pclose(pipe) == 0 ? out : "failed: " + out;
}

/// True when the lines could be written as records.
inline bool make_records(std::string_view kind, const std::string& path, std::string_view lines) {
  std::FILE* const pipe = popen(layout_command("make", kind, path).c_str(), "w");
  std::fwrite(lines.data(), 1, lines.size(), pipe);
  return pclose(pipe) == 0;
}

}  // namespace twk::test
