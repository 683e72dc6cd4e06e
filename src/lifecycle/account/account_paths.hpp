#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace twk::session {
struct Session;
}

namespace twk::lifecycle {

/// The names of an account's paths in messages.
inline constexpr std::string_view kHomePath = "home";
inline constexpr std::string_view kProfilePath = "profile";
inline constexpr std::string_view kTerminalHomePath = "terminal-server home";
inline constexpr std::string_view kTerminalProfilePath = "terminal-server profile";

/// Reads all accounts of the domain that have a home or profile, for logons at a workstation or at a terminal
/// server, by one search (an account at a time in a WinNT domain), and calls `visit` with each path that is
/// not empty. Raises what the directory raises.
void read_account_paths(session::Session& session,
                        const std::function<void(const std::string& account, std::string_view what,
                                                 const std::string& path)>& visit);

}  // namespace twk::lifecycle
