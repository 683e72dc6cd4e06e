#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/security_descriptor.hpp"

namespace twk::session {
struct Session;
}

/// Privileges of the process, and owner and access list of whole trees.
namespace twk::resources {

/// Switch a privilege of this process on and off. A failure shows a message box with its number and gives
/// False.
bool EnablePrivilege(session::Session& session, std::string_view name);
bool DisablePrivilege(session::Session& session, std::string_view name);

/// What came of a tree.
struct TreeOutcome {
  std::size_t written = 0;   ///< files and folders that got owner and list
  std::size_t refused = 0;   ///< those that kept one of them or both
  std::string first_reason;  ///< the first of these and why, or a folder that cannot be looked through
  bool stopped = false;      ///< a person ended it; what comes behind has what it had
};

/// Writes owner, then list on all that is below a folder, each folder's own entries before what is in its
/// sub-folders. Of the names those that `mask` fits ("*.*" is all), but every sub-folder. What refuses is
/// passed over and counted. The multi-user window shows each name. Ends behind the folder in hand when
/// `ImportStopped` is set.
TreeOutcome SetTreeSecurity(session::Session& session, std::string path, std::string_view mask,
                            const platform::SecurityDescriptor& daclDescriptor,
                            const platform::SecurityDescriptor& ownerDescriptor);

}  // namespace twk::resources
