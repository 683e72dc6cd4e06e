#pragma once

#include <cstddef>

#include "base/bytes.hpp"

namespace twk::base {

/// Unpredictable bytes from the system.
Bytes random_bytes(std::size_t count);

}  // namespace twk::base
