#pragma once

#include <cstdint>
#include <utility>

#include "base/errors.hpp"

namespace twk::test {

/// The number that `step` raises; 0 when it succeeds.
template <typename Step>
std::uint32_t number_of(Step&& step) {
  base::Trap trap;
  trap(std::forward<Step>(step));
  return trap.number();
}

}  // namespace twk::test
