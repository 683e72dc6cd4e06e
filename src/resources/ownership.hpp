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

/// Switch a privilege of this process on and off. A failure shows a message box with its number and returns
/// False.
bool EnablePrivilege(session::Session& session, std::string_view name);
bool DisablePrivilege(session::Session& session, std::string_view name);

/// The outcome for a tree.
struct TreeOutcome {
  std::size_t written = 0;   ///< files and folders that got owner and list
  std::size_t refused = 0;   ///< those that kept the old owner or list
  std::string first_reason;  ///< the first of these and why, or a folder that cannot be read
  bool stopped = false;      ///< a person ended it; the rest is unchanged
};

/// Writes owner, then list to everything below a folder, each folder's own entries before the contents of its
/// sub-folders. Only names that match `mask` ("*.*" is all), but every sub-folder. Refusals are skipped and
/// counted. The multi-user window shows each name. Ends after the current folder when `ImportStopped` is set.
TreeOutcome SetTreeSecurity(session::Session& session, std::string path, std::string_view mask,
                            const platform::SecurityDescriptor& daclDescriptor,
                            const platform::SecurityDescriptor& ownerDescriptor);

}  // namespace twk::resources
