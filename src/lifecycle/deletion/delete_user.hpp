#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "lifecycle/deletion/delete_order.hpp"
#include "session/run_outcome.hpp"

namespace twk::session {
struct Session;
}

namespace twk::lifecycle {

/// Where a mailbox to delete can be: `kStoreOfTheAccount`, then the Exchange servers of the sites, each once.
/// Raises what the files raise.
std::vector<std::string> mailbox_servers(session::Session& session);

/// Removes a user and what belongs to the account, in this order: shares, mailbox, account, folders; then the
/// command. `UserKey` is the account's name in a WinNT domain, otherwise its LDAP path. Log and log tab
/// report what was done. It is done when the account is gone, or kept as ordered and the rest was carried
/// out.
session::RunOutcome Delete_One_User(session::Session& session, std::string_view UserKey,
                                    const DeleteOrder& order, session::RunView& view);

}  // namespace twk::lifecycle
