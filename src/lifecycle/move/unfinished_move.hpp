#pragma once

#include <string>
#include <string_view>

namespace twk::session {
struct Session;
}

/// What a move knows between the removal of a user's own share and that of the folder that it stood for, kept
/// in the database directory until the folder has gone: nothing else would lead a second try there. A
/// directory that cannot be written is passed over.
namespace twk::lifecycle {

/// `old_path` is what the account has ("\\FS1\jo$"), `way` how its folder is reached without the share.
void remember_old_folder(session::Session& session, std::string_view account, const std::string& old_path,
                         const std::string& way);
/// The way that a move which broke off has remembered; empty for none.
std::string remembered_old_folder(session::Session& session, std::string_view account,
                                  const std::string& old_path);
void forget_old_folder(session::Session& session, std::string_view account, const std::string& old_path);

}  // namespace twk::lifecycle
