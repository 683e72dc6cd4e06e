#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/process.hpp"

namespace twk::local {

/// Programs of the workstation, found on PATH. One that is not waited for is handed to the system at
/// once, so that nothing of it is left in this process when it ends.
class SystemProcess final : public platform::Process {
 public:
  std::string cannot_start(const std::vector<std::string>& words) override;
  platform::ProgramResult run(const std::vector<std::string>& words, bool wait,
                              std::int16_t window_style) override;
};

/// Whether a variable of the environment, "NAME=value", holds a secret: its name says so, or it is the
/// "user%password" that Samba's tools read.
bool is_secret_variable(std::string_view variable);

}  // namespace twk::local
