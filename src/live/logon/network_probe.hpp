#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// What can be found out about a server before talking to it.
namespace twk::live {

/// The addresses of a host, "192.0.2.7", in the order in which to try them. Raises kServerDown for a
/// name that no name service knows, and when no name service answers.
std::vector<std::string> resolve_host(const std::string& host);

/// Why that TCP port cannot be connected to; empty when it can. Waits at most that many seconds for
/// each address. Raises what `resolve_host` raises.
std::string why_no_answer(const std::string& host, std::uint16_t port, int timeout_seconds);

}  // namespace twk::live
