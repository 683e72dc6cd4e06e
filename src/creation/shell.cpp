#include "creation/shell.hpp"

#include "base/errors.hpp"

namespace twk::creation {

platform::ProgramResult clsShell::Spawn(const std::vector<std::string>& words, bool wait,
                                        std::int16_t window_style) const {
  platform::ProgramResult result;
  base::Trap trap;
  if (!trap([&] { result = process_.run(words, wait, window_style); }))
    result.failure = trap.description();
  return result;
}

}  // namespace twk::creation
