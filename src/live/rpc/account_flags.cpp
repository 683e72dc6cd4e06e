#include "live/rpc/account_flags.hpp"

#include <array>

namespace twk::live {
namespace {

struct FlagCode {
  std::uint32_t flag;
  std::uint32_t code;
};

constexpr std::array<FlagCode, 18> kFlags = {{
    {0x00000002, 0x00000001},  // disabled
    {0x00000008, 0x00000002},  // home directory required
    {0x00000020, 0x00000004},  // password not required
    {0x00000100, 0x00000008},  // temporary duplicate
    {0x00000200, 0x00000010},  // normal account
    {0x00000800, 0x00000040},  // of a trusted domain
    {0x00001000, 0x00000080},  // of a workstation
    {0x00002000, 0x00000100},  // of a backup controller
    {0x00010000, 0x00000200},  // password does not expire
    {0x00000010, 0x00000400},  // locked
    {0x00000080, 0x00000800},  // password stored readably
    {0x00040000, 0x00001000},  // smart card required
    {0x00080000, 0x00002000},  // trusted for delegation
    {0x00100000, 0x00004000},  // not delegated
    {0x00200000, 0x00008000},  // DES keys only
    {0x00400000, 0x00010000},  // without preauthentication
    {0x00800000, 0x00020000},  // password expired
    {0x01000000, 0x00040000},  // trusted to authenticate for delegation
}};

}  // namespace

std::int32_t flags_of_codes(std::uint32_t codes) {
  std::uint32_t flags = 0;
  for (const FlagCode& one : kFlags)
    flags |= (codes & one.code) != 0 ? one.flag : 0;
  return static_cast<std::int32_t>(flags);
}

std::uint32_t with_flags(std::uint32_t codes, std::int32_t flags) {
  for (const FlagCode& one : kFlags) {
    const bool set = (static_cast<std::uint32_t>(flags) & one.flag) != 0;
    codes = set ? codes | one.code : codes & ~one.code;
  }
  return codes;
}

}  // namespace twk::live
