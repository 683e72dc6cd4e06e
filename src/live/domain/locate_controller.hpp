#pragma once

#include <string>
#include <vector>

#include "live/terms/live_settings.hpp"

namespace twk::live {

/// Host name of a controller of a domain: the first one that answers, of those in the name service's
/// SRV records ("_ldap._tcp.dc._msdcs.<domain>", [MS-ADTS] 6.3.2.3). Where there are several, they are asked
/// in which site of the directory this workstation is; the controllers of that one come first, and those that
/// are silent last, since trying one that is gone takes seconds. Without such records the
/// domain's own name is used for its controllers' addresses, and the server there is asked for its name,
/// because a ticket is issued for a name.
std::string locate_controller(const LiveSettings& settings, const std::string& domain);

/// The first of those that answers, other than one that is known not to; empty when there is none.
std::string answering_controller(const LiveSettings& settings, const std::string& domain,
                                 const std::string& gone);

/// The result of a query to the name service.
enum class SrvAnswer {
  kFound,
  kNone,    ///< there is no such record
  kSilence  ///< no name service answers
};

/// Targets of an SRV record, RFC 2782, in the order in which to try them; none when there is no such
/// record.
std::vector<std::string> look_up_srv(const std::string& name, SrvAnswer* answer = nullptr);

}  // namespace twk::live
