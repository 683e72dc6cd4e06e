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
inline constexpr std::int32_t kStripOnly = 1;  ///< no entry: its old ones are removed
inline constexpr std::int32_t kChange = 2;
inline constexpr std::int32_t kFullControl = 3;
inline constexpr std::int32_t kRead = 4;
inline constexpr std::int32_t kNoAccess = 5;
}  // namespace access_mode

/// The mode of "Full Control", "Change", "Read" or "No Access", exact in case; none for any other word.
std::optional<std::int32_t> mode_of_access_word(std::string_view word);
/// The rights that a word grants or denies; 0 for any other word.
std::uint32_t mask_of_access_word(std::string_view word);
/// The word for an entry's type and mask; none for a mask without a word.
std::optional<std::string_view> access_word(std::uint8_t ace_type, std::uint32_t mask);

struct FilePermission {
  std::string account;
  std::int32_t mode = access_mode::kFullControl;
  bool replaceAll = false;  ///< only entries for "System" are kept from the old list
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

/// Gives an account access to `path`. Its old entries are removed and two new ones put first: one for files
/// created in the folder, one for the folder and those below it. The account is looked up on `server`, then
/// on the fallback server, which `server` then becomes, before anything is changed. A replacement does not
/// need an old list that can be read. Raises `PermissionFailure`. Failures below the folder are skipped and
/// counted.
TreeOutcome write_file_permission(session::Session& session, std::string& server, const std::string& path,
                                  const FilePermission& permission);

/// Makes an account the owner without reading the list, which may be closed to everyone. Raises
/// `PermissionFailure`.
void take_owner(session::Session& session, std::string& server, const std::string& path,
                const std::string& account);

/// The same for a tree that others have closed: "Administrators" take ownership first, so that its list can
/// be read. An unknown account changes nothing.
TreeOutcome take_tree(session::Session& session, std::string& server, const std::string& path,
                      const std::string& account);

/// `write_file_permission`, True when it was completed. Otherwise the log says why; with "/DEBUG" it also has
/// the steps, and for a failure the step, the number and the system's text.
bool SetFilePermission(session::Session& session, std::string& server, const std::string& path,
                       const FilePermission& permission);

}  // namespace twk::resources
