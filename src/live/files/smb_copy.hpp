#pragma once

#include <functional>
#include <string>

#include "live/files/smb_client.hpp"
#include "platform/files.hpp"

namespace twk::live {

/// An ordinary file to be copied, wherever it is.
struct CopySource {
  std::string name;  ///< for messages
  std::function<platform::FileEntry()> status;
  std::function<std::string(std::uint64_t offset, std::size_t count)> read;
};

/// Copies to a new file of a server as `Files::copy_file` says. A copy that replaces a file is made beside it
/// and given its name when it is whole.
bool copy_to_server(SmbClient& client, const CopySource& from, const SmbPath& to, bool replace,
                    const platform::CopyProgress& progress);

}  // namespace twk::live
