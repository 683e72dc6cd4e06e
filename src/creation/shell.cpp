#include "creation/shell.hpp"

#include "base/errors.hpp"
#include "platform/process.hpp"

namespace twk::creation {

std::int32_t clsShell::Spawn(std::string_view command, bool wait, std::int16_t window_style) const {
  std::int32_t result = 0;
  base::Trap trap;
  trap([&] { result = process_.run(command, wait, window_style); });
  return result;
}

}  // namespace twk::creation
