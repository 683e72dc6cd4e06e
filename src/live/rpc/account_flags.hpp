#pragma once

#include <cstdint>

/// The two encodings of an account's flags, [MS-SAMR] 2.2.1.12 and 2.2.1.13.
namespace twk::live {

/// "userAccountControl" of USER_ACCOUNT codes; a locked account's bit among them.
std::int32_t flags_of_codes(std::uint32_t codes);
/// The codes with what the flags say put into their places; codes without a flag stay.
std::uint32_t with_flags(std::uint32_t codes, std::int32_t flags);

}  // namespace twk::live
