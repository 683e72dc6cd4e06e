#pragma once

#include "live/files/smb_path.hpp"
#include "live/logon/live_settings.hpp"
#include "platform/sid.hpp"

namespace twk::live {

/// Gives a file or folder another owner, also where its list lets the caller read nothing. The SMB library
/// cannot do that, for it reads the descriptor before it writes one; the program "smbcacls" of the same
/// makers asks for nothing but the right to take the ownership.
///
/// Raises the numbers of `platform::Security`, with what the program said.
void write_owner_by_command(const LiveSettings& settings, const SmbPath& path, const platform::Sid& owner);

}  // namespace twk::live
