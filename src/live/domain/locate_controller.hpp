#pragma once

#include <string>
#include <vector>

#include "live/logon/live_settings.hpp"

namespace twk::live {

/// Host name of a controller of a domain: of those that the name service tells by its SRV records
/// ("_ldap._tcp.dc._msdcs.<domain>", [MS-ADTS] 6.3.2.3) the first one that answers. Without such records the
/// domain's own name stands for its controllers' addresses, and the server there is asked what it is called,
/// because a ticket is for a name.
std::string locate_controller(const LiveSettings& settings, const std::string& domain);

/// How a question to the name service ended.
enum class SrvAnswer {
  kFound,
  kNone,    ///< there is no such record
  kSilence  ///< no name service answers
};

/// Targets of an SRV record, RFC 2782, the ones to be asked first in front; none when there is no such
/// record.
std::vector<std::string> look_up_srv(const std::string& name, SrvAnswer* answer = nullptr);

}  // namespace twk::live
