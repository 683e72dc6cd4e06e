#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace twk::session {
struct Session;
}

/// Tests and routines on the network paths of homes and profiles, "\\FS1\Users\jo": server, share and
/// possibly a tail after the share.
namespace twk::lifecycle {

/// The position of the backslash after the share's name; 0 when there is none.
std::size_t tail_position(std::string_view path);
/// "\jo" of "\\FS1\Users\jo"; empty without a tail.
std::string tail_of(std::string_view path);

/// True when a backslash follows the share's name.
bool Has_Sub_Path(std::string_view path);
/// True when server and share are the same, in any case.
bool Same_Share(std::string_view a, std::string_view b);
/// The folder of a share, by the administrative share of its drive: "\\FS1\D$\Users"; with the
/// path's tail if that is kept. Raises when the server does not know the share, or the folder is not on
/// a drive.
std::string Admin_Path_Of(session::Session& session, std::string_view path, bool KeepTail);
/// True when a folder of that path can be looked up. Then looks up the `TEMP` directory, so that no look-up
/// stays open on the user's.
bool Dir_Exists(session::Session& session, std::string_view path);
/// Only the second half of that: the look-up of `TEMP`.
void look_up_temp(session::Session& session);

/// The folder on the server that the path's share leads to. Raises what the directory raises.
std::string Share_Local_Path(session::Session& session, std::string_view path);

}  // namespace twk::lifecycle
