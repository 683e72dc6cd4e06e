#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/network.hpp"

namespace twk::session {
struct Session;
}

/// Shares of a file server, made with their access list in one call at information level 502.
namespace twk::resources {

/// The mask of "Read", "Change" or "Full Control" for a share, in any case; none for any other word.
std::optional<std::uint32_t> share_mask_of_access_word(std::string_view word);

enum class ShareResult : std::int16_t {
  kMade = 1,
  kFallbackList = 2,  ///< not with the table's list: see `share_list_of_table`
  kFailed = 3         ///< not made
};

/// An access list for a new share, and the outcome for a share that has it.
struct ShareList {
  ShareResult result = ShareResult::kMade;
  std::optional<platform::SecurityDescriptor> descriptor;
  std::string reason = {};  ///< why it differs from the table
};

/// The list that "SharePerm.dat" prescribes for a user. Without a table, or with one that has no rows,
/// everyone gets full control (`kFallbackList`). Rows whose account is not found are left out, as long as a
/// remaining one gives the user access (also `kFallbackList`). Otherwise, and for a table that cannot be
/// read, there is no list (`kFailed`), and no share must be made: it would be open to everyone.
ShareList share_list_of_table(session::Session& session, const std::string& userName);

/// A share of a folder, given by its path on the server.
platform::ShareInfo502 share_of_folder(const std::string& shareName, const std::string& path,
                                       const std::string& remark);

/// Shares a folder of the server with the list of the table. The log says why that is not the table's own
/// list, or why no share was made.
ShareResult CreateShare(session::Session& session, const std::string& server, const std::string& shareName,
                        const std::string& path, const std::string& remark, const std::string& userName);

/// True when the server gives no answer about a share; that it has none, or that it says nothing to this
/// account, is one.
bool is_without_answer(session::Session& session, const std::string& server, const std::string& shareName);

}  // namespace twk::resources
