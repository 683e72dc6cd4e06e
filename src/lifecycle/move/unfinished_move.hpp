#pragma once

#include <string>
#include <string_view>

namespace twk::session {
struct Session;
}

/// What a move remembers between removing a user's own share and removing its folder, kept in the database
/// directory until the folder is gone: nothing else would lead a second try there. A directory that cannot be
/// written is ignored.
namespace twk::lifecycle {

/// `old_path` is what the account has ("\\FS1\jo$"), `way` the path to its folder without the share.
void remember_old_folder(session::Session& session, std::string_view account, const std::string& old_path,
                         const std::string& way);
/// The path that an interrupted move has remembered; empty for none.
std::string remembered_old_folder(session::Session& session, std::string_view account,
                                  const std::string& old_path);
void forget_old_folder(session::Session& session, std::string_view account, const std::string& old_path);

}  // namespace twk::lifecycle
