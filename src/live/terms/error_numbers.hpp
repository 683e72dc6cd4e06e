#pragma once

#include <cstdint>

namespace twk::live {

/// For a request that was abandoned because the person asked to stop; the classic runtime's number of an
/// interrupt by the user.
inline constexpr std::uint32_t kStopped = 18;

/// RPC_X_BAD_STUB_DATA, [MS-ERREF] 2.2: an answer that is not of its protocol's form.
inline constexpr std::uint32_t kBadStub = 1783;

}  // namespace twk::live
