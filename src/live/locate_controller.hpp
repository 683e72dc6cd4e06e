#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace twk::live {

/// Host name of a controller of the domain, as the name service tells by its SRV records
/// ("_ldap._tcp.dc._msdcs.<domain>", [MS-ADTS] 6.3.2.3), else the domain's own name, which the controllers'
/// addresses stand for as well.
std::string locate_controller(std::string_view domain);

/// Targets of an SRV record, RFC 2782, the ones to be asked first in front; none when there is no such
/// record.
std::vector<std::string> look_up_srv(const std::string& name);

}  // namespace twk::live
