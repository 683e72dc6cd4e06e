#pragma once

#include <string>
#include <vector>

#include "platform/process.hpp"

namespace twk::local {

/// Programs of the workstation, found on PATH. One that is not waited for belongs to the system from its
/// start, so that nothing of it is left in this process when it ends. With `window_style` 0 its input is
/// empty as well.
class SystemProcess final : public platform::Process {
 public:
  std::int32_t run(std::string_view command_line, bool wait, std::int16_t window_style) override;
};

/// The words of a command line: blanks and tabs separate, double quotes hold a word together and are not part
/// of it (`""` is an empty word). A quote that is not closed reaches to the end. Everything else, backslashes
/// too, stands as it is.
std::vector<std::string> split_command_line(std::string_view command_line);

}  // namespace twk::local
