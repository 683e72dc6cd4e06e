#pragma once

#include <string>
#include <string_view>

#include "creation/creation_run.hpp"

namespace twk::creation {

/// The server of a network path: "srv" of "\\srv\share"; empty when the path names none.
std::string Get_Server_Name(std::string_view path);
/// The share of a network path: "share" of "\\srv\share\a"; empty when the path names none.
std::string Get_Share_Name(std::string_view path);

/// The network path of a folder that its server sees as "D:\Users\jo": its last part below a share point,
/// which ends in a backslash ("Homes\"), or without one through the administrative share of its drive.
std::string reachable_path(std::string_view server, std::string_view folder, std::string_view share_point);

/// Determines where the home and profile directories are and what the account says about them, from the
/// template's paths. A drive-letter path is reached through the server's administrative share of that drive,
/// or through the template's share point.
void ResolvePaths(CreationRun& run);

/// Makes the home directory, then the profile directory, one level each. If one exists, a question decides;
/// No ends the run. Raises a failure to make a directory.
Step CreateDirectories(CreationRun& run);

}  // namespace twk::creation
