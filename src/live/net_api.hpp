#pragma once

#include <string>
#include <string_view>

#include "live/live_settings.hpp"

namespace twk::live {

/// The calls that libnetapi makes for us: those whose arguments are encrypted with the session's key, and the
/// search for a controller. The library has one context a process, which keeps its connections; each call
/// sets the logon first. Its time-outs are the library's own, up to a minute.
class NetApi {
 public:
  explicit NetApi(LiveSettings settings) : settings_(std::move(settings)) {}

  /// "\\DC1": the primary controller of a domain, as `server` tells. Raises kControllerNotFound, kBadNetPath.
  std::string get_dc_name(const std::string& server, const std::string& domain);
  /// Raises kUserNotFound (2221), 2245 for a password that the policy refuses, kAccessDenied (5).
  void set_password(const std::string& server, const std::string& user, const std::string& password);

 private:
  void log_on();

  LiveSettings settings_;
};

}  // namespace twk::live
