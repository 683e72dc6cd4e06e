#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace twk::session {
struct Session;
}

/// Tests and routines on the network paths of homes and profiles, "\\FS1\Users\jo": server, share and,
/// behind the share, a possible tail.
namespace twk::lifecycle {

/// Where the backslash behind the share's name stands; 0 when there is none.
std::size_t tail_position(std::string_view path);
/// "\jo" of "\\FS1\Users\jo"; empty without a tail.
std::string tail_of(std::string_view path);

/// True when a backslash follows the share's name.
bool Has_Sub_Path(std::string_view path);
/// True when server and share are the same, in any case.
bool Same_Share(std::string_view a, std::string_view b);
/// Deletes the share that the path names. False when that failed; a share that stands for a whole drive is
/// kept.
bool Delete_Share_Of(session::Session& session, std::string_view path);
/// The folder that a share stands for, by the administrative share of its drive: "\\FS1\D$\Users"; with the
/// path's own tail when it is kept. Raises when the server does not know the share, or the folder is none of
/// a drive.
std::string Admin_Path_Of(session::Session& session, std::string_view path, bool KeepTail);
/// True when a folder of that path can be looked up. Looks up the `TEMP` directory then, so that no look-up
/// stays open on the user's.
bool Dir_Exists(session::Session& session, std::string_view path);
/// The other half of that: the look-up of `TEMP` alone.
void look_up_temp(session::Session& session);

/// The path up to the first backslash behind the name, the whole path when none follows; empty when the name
/// is not in it. The name is found in any case.
std::string Cut_At_Name(std::string_view path, std::string_view name);
/// The folder on the server that the path's share stands for. Raises what the directory raises.
std::string Share_Local_Path(session::Session& session, std::string_view path);

}  // namespace twk::lifecycle
