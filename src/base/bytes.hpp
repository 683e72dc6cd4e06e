#pragma once

#include <cstdint>
#include <vector>

namespace twk::base {

/// Raw bytes: SIDs, logon hours, descriptors, file contents.
using Bytes = std::vector<std::uint8_t>;

}  // namespace twk::base
