#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "base/bytes.hpp"

namespace twk::session {
struct Session;
}

/// What links an Exchange 5.5 mailbox to its Windows account: the account's identifier and a security
/// descriptor, both held by the directory as hexadecimal text.
namespace twk::mail {

/// Rights of an account's owner on its mailbox.
inline constexpr std::uint32_t kMailboxOwnerRights = 26;
/// The error of a descriptor that could not be built.
inline constexpr std::uint32_t kDescriptorFailed = 0x80040001;

/// Twice as many bytes: the character codes of each byte's two hexadecimal digits, in capitals.
base::Bytes hex_text(std::span<const std::uint8_t> bytes);

/// Looks "<domain>\<name>" up on the server (a name without backslashes; empty for the default controller).
/// 1 on success, 0 for an account that is not found, which is logged.
std::int32_t GetUserSid(session::Session& session, std::string_view server, std::string_view domain,
                        std::string_view name, base::Bytes& sid);

/// An account and what it may do.
using AccountMask = std::pair<std::string, std::uint32_t>;

/// Builds a self-relative descriptor owned by the user, whose list grants each account of `pairs` its mask. A
/// user who is not found on the server is looked up on the session's own. True on success;
/// raises an error that names the call that failed. With "/DEBUG" each step is logged.
bool BuildMailboxDescriptor(session::Session& session, base::Bytes& descriptor, std::string_view server,
                            std::string_view domain, std::string_view userName,
                            std::span<const AccountMask> pairs);

/// The hexadecimal text of an account's identifier, looked up on a controller of the NetBIOS domain. Raises
/// what the look-up raises.
void GetSidAsHex(session::Session& session, std::string_view name, base::Bytes& hex);

}  // namespace twk::mail
