#pragma once

#include <string>
#include <string_view>

#include "live/terms/live_settings.hpp"

/// A logon's user, given as "name", "DOMAIN\name" or "name@domain", in the form of each protocol. A name
/// alone is one of the domain itself, whatever the workstation belongs to.
namespace twk::live {

/// Of Windows protocols: files, shares, remote calls.
struct WindowsLogon {
  std::string user;
  std::string domain;  ///< empty for "name@domain"

  /// "CORP\jo", for programs.
  [[nodiscard]] std::string text() const { return domain.empty() ? user : domain + "\\" + user; }
};
WindowsLogon windows_logon(const LiveSettings& settings);

/// Of Kerberos, "jo@CORP.TEST", for file servers and remote calls; empty in an NT4-style domain and for
/// "OTHER\jo", unless that is the domain's `netbios` name: the realm is not known then, and they log on by
/// NTLM.
std::string kerberos_name(const LiveSettings& settings, std::string_view netbios);

/// Of a bind to the directory, which takes neither a bare name nor the DNS name of a domain before a
/// backslash
/// ([MS-ADTS] 5.1.1.1.1).
std::string bind_name(const LiveSettings& settings);

}  // namespace twk::live
