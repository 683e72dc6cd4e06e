#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// What can be found out of a server before anything is said to it.
namespace twk::live {

/// The addresses of a host, "192.0.2.7", in the order in which they are to be tried. Raises kServerDown for a
/// name that no name service knows, and for one that none answers for.
std::vector<std::string> resolve_host(const std::string& host);

/// Why nothing can be connected to that TCP port; the empty text when something can. Waits that many seconds
/// for each address at most. Raises what `resolve_host` raises.
std::string why_no_answer(const std::string& host, std::uint16_t port, int timeout_seconds);

}  // namespace twk::live
