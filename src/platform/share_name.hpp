#pragma once

#include <string>
#include <string_view>

namespace twk::platform {

/// Why no server accepts a share of that name ("is longer than 80 characters"); empty for a possible one.
/// [MS-SRVS] 3.1.4.7 leaves the rule to the server; these are those of Windows.
std::string share_name_fault(std::string_view name);

}  // namespace twk::platform
