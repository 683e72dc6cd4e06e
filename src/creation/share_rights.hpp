#pragma once

#include <string>
#include <string_view>

namespace twk::session {
struct Session;
}

/// Before anything is made for a user: would the file server take the shares that the template requests?
/// Otherwise each user would get an account and a folder, and a share that is made and taken away again.
namespace twk::creation {

struct CreationRun;

/// Why the server would not make shares for this account; empty when it would, and when it does not answer.
std::string refusal_of_shares(session::Session& session, const std::string& server);

/// Raises the server's refusal. Passes when the run makes no shares, and when the server does not answer,
/// which the stages tell.
void RequireShareRights(CreationRun& run);

/// The same for a run over many users, by the names of their template and site. Passes for names that the
/// database does not have.
void require_share_rights(session::Session& session, std::string_view template_name,
                          std::string_view site_name);

}  // namespace twk::creation
