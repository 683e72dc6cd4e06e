#pragma once

#include <string>
#include <vector>

namespace twk::live {

/// The domains that this workstation can know of without a logon, as DNS names in small letters, likeliest
/// first: those of the Kerberos tickets, the default realm of the Kerberos configuration; and, if the name
/// service has records of a controller for them, the other realms of that configuration and the search
/// domains for host names.
std::vector<std::string> discover_domains();

/// The domain that is meant when none is named: that of the Kerberos ticket, otherwise of the default realm;
/// empty when there is neither.
std::string usual_domain();

}  // namespace twk::live
