#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "local/folded_names.hpp"

/// The file servers of a lab and their shares. A server is a folder "servers/<NAME>", a drive a folder of one
/// letter in it, and "server.ldif" holds the shares, a record each:
///
///     dn: CN=Users,CN=Shares
///     objectClass: fileShare
///     path: D:\Users
///     description: …            the comment
///     maxUserCount: -1          -1 for no limit
///
/// Records of other classes are kept as they are. Each drive is also shared as a whole, as "D$".
namespace twk::lab {

struct FileShare {
  std::string name;
  std::string path;  ///< on the server, "D:\Users"
  std::string comment;
  std::int32_t max_users = -1;
  bool administrative = false;  ///< a drive's own share; it is in no record
};

/// The server's folder; names fold case. None when the lab has no such server.
std::optional<std::filesystem::path> find_server(const std::filesystem::path& servers, std::string_view name);

/// The drives' shares first, then those of "server.ldif" in their order.
std::vector<FileShare> read_shares(const std::filesystem::path& server);
std::optional<FileShare> find_share(const std::filesystem::path& server, std::string_view name);

/// Adds the share or replaces the one of its name (`replace`). Raises kShareExists for a new share of a name
/// in use, kUnwilling for a drive's share, and an error for a path that is no folder of the server, a name
/// that is empty, longer than 80 characters, or holds a character that no share has.
void store_share(const std::filesystem::path& server, const FileShare& share, bool replace);
/// Raises kShareNotFound, kUnwilling for a drive's share.
void remove_share(const std::filesystem::path& server, std::string_view name);

/// The folder of the lab that a path of the server ("D:\Users\jo") stands for; every part folds case, and a
/// part that is not there yet stands as written. Raises 76 without such a drive and for a path that has "..".
std::filesystem::path server_folder(const std::filesystem::path& server, std::string_view path,
                                    local::FoldedNames& names);

/// True when a share's folder is this one or lies below it. Drives' own shares hold nothing.
bool share_holds(const std::filesystem::path& server, const std::filesystem::path& folder);

}  // namespace twk::lab
