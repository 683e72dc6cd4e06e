#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/errors.hpp"
#include "resources/ownership.hpp"

namespace twk::session {
struct Session;
}

/// The access list of one file or folder, built entry by entry, without the system's own inheritance.
namespace twk::resources {

/// What an account gets. Any other number counts as full control.
namespace access_mode {
inline constexpr std::int32_t kStripOnly = 1;  ///< no entry: its old ones are dropped
inline constexpr std::int32_t kChange = 2;
inline constexpr std::int32_t kFullControl = 3;
inline constexpr std::int32_t kRead = 4;
inline constexpr std::int32_t kNoAccess = 5;
}  // namespace access_mode

/// The mode of "Full Control", "Change", "Read" or "No Access", exact in case; none for any other word.
std::optional<std::int32_t> mode_of_access_word(std::string_view word);
/// The rights that a word gives or takes; 0 for one that is none.
std::uint32_t mask_of_access_word(std::string_view word);
/// The word for an entry's type and mask; none for a mask that no word stands for.
std::optional<std::string_view> access_word(std::uint8_t ace_type, std::uint32_t mask);

struct FilePermission {
  std::string account;
  std::int32_t mode = access_mode::kFullControl;
  bool replaceAll = false;  ///< only what "System" has is kept of the old list
  bool recurse = false;     ///< also owner, and the same list for everything below
  bool ownerOnly = false;   ///< the owner is written, the list stays as it is
};

/// A step of `SetFilePermission` that the system refused.
class PermissionFailure : public base::RuntimeError {
 public:
  PermissionFailure(std::string step, const base::RuntimeError& cause)
      : base::RuntimeError(cause.number(), cause.description()), step_(std::move(step)) {}

  [[nodiscard]] const std::string& step() const { return step_; }

 private:
  std::string step_;
};

/// Gives an account access to `path`. Its old entries are dropped and two new ones put in front: one for the
/// files that come into the folder, one for the folder and those below it. The account is looked up on
/// `server`, then on the fall-back server, which `server` then is, before anything is changed. A replacement
/// does without an old list that cannot be read. Raises `PermissionFailure`. What fails below the folder is
/// passed over and counted.
TreeOutcome write_file_permission(session::Session& session, std::string& server, const std::string& path,
                                  const FilePermission& permission);

/// Makes an account the owner without a look at the list, which may be closed to everybody. Raises
/// `PermissionFailure`.
void take_owner(session::Session& session, std::string& server, const std::string& path,
                const std::string& account);

/// The same for a tree that others have closed: "Administrators" take it over first, so that its list can be
/// read. An account that nobody knows changes nothing.
TreeOutcome take_tree(session::Session& session, std::string& server, const std::string& path,
                      const std::string& account);

/// `write_file_permission`, True when it came through to its end. The log tells why not; with "/DEBUG" also
/// the steps, and of a failure the step, the number and the system's text.
bool SetFilePermission(session::Session& session, std::string& server, const std::string& path,
                       const FilePermission& permission);

}  // namespace twk::resources
