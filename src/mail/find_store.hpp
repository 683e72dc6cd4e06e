#pragma once

#include <string>
#include <vector>

namespace twk::session {
struct Session;
}

/// The stores of Exchange 2000 servers in the configuration of the domain.
namespace twk::mail {

struct StorageGroups {
  std::string organisation;  ///< the one that has the server; empty when there is no organisation
  std::vector<std::string> names;
};

/// The storage groups of the server in that organisation, or in the first one that has it when none is given.
/// Raises the last failure when none has.
StorageGroups find_storage_groups(session::Session& session, const std::string& server,
                                  const std::string& organisation);

/// The stores in a storage group. Raises what the directory raises.
std::vector<std::string> find_stores(session::Session& session, const std::string& server,
                                     const std::string& organisation, const std::string& storage_group);

}  // namespace twk::mail
