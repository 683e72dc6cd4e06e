#pragma once

#include <cstdint>
#include <functional>
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

/// Why that host's file server cannot be talked to: it does not listen, or does not answer the first question
/// of SMB; empty when it can. Waits at most that many seconds for each. Raises kStopped when `is_stopped`
/// says so after three seconds of silence, and what `resolve_host` raises.
std::string why_no_file_server(const std::string& host, int timeout_seconds,
                               const std::function<bool()>& is_stopped);

}  // namespace twk::live
