#pragma once

#include <cstdint>
#include <string>

namespace twk::session {
struct Session;
}

/// The organizational unit that a session is limited to.
namespace twk::directory {

/// Limits the sessions of the person, or of everyone on this machine, to an OU from the next load on: `hive`
/// says where that is stored.
void limit_to_ou(session::Session& session, const std::string& distinguished_name, bool sub_ous,
                 std::uint32_t hive);
/// Restores the whole domain from the next load on, wherever the limit is stored.
void lift_limit(session::Session& session);

}  // namespace twk::directory
