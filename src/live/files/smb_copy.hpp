#pragma once

#include <functional>
#include <string>

#include "live/files/smb_client.hpp"
#include "platform/files.hpp"

namespace twk::live {

/// An ordinary file to copy, wherever it is.
struct CopySource {
  std::string name;  ///< for messages
  std::function<platform::FileEntry()> status;
  std::function<std::string(std::uint64_t offset, std::size_t count)> read;
};

/// Copies to a new file of a server as `Files::copy_file` describes. A replacement is written next to the old
/// file and renamed when it is complete.
bool copy_to_server(SmbClient& client, const CopySource& from, const SmbPath& to, bool replace,
                    const platform::CopyProgress& progress);

}  // namespace twk::live
