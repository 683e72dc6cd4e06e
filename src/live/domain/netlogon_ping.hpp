#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "live/domain/netlogon_answer.hpp"

/// The question by which workstations find a near controller: a search over UDP without a logon, [MS-ADTS]
/// 6.3.3.
namespace twk::live {

/// The datagram that asks a controller of the domain.
std::string netlogon_question(std::string_view domain);
/// None for a datagram that does not answer it.
std::optional<NetlogonAnswer> netlogon_answer_in(std::string_view datagram);

/// Asks the hosts at the same time. An answer for each, in their order; none of a host that was silent: for
/// half a second, or for a tenth when another one had answered.
std::vector<std::optional<NetlogonAnswer>> ping_controllers(const std::vector<std::string>& hosts,
                                                            const std::string& domain);

}  // namespace twk::live
