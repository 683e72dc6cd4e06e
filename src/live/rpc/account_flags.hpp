#pragma once

#include <cstdint>

/// The two encodings of an account's flags, [MS-SAMR] 2.2.1.12 and 2.2.1.13.
namespace twk::live {

/// "userAccountControl" of USER_ACCOUNT codes; including the bit of a locked account.
std::int32_t flags_of_codes(std::uint32_t codes);
/// The codes with the flags applied; codes without a flag stay.
std::uint32_t with_flags(std::uint32_t codes, std::int32_t flags);

}  // namespace twk::live
