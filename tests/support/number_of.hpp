#pragma once

#include <cstdint>
#include <string>
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

/// What the error that `step` raises says; empty when it succeeds.
template <typename Step>
std::string complaint_of(Step&& step) {
  base::Trap trap;
  trap(std::forward<Step>(step));
  return trap.description();
}

}  // namespace twk::test
