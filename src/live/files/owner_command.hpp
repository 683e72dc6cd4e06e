#pragma once

#include "live/files/smb_path.hpp"
#include "live/logon/credentials.hpp"
#include "platform/sid.hpp"

namespace twk::live {

/// Changes the owner of a file or folder, even when its list lets the caller read nothing. The SMB
/// library cannot do that, because it reads the descriptor before it writes one; the program "smbcacls" from
/// the same project needs only the right to take ownership.
///
/// Raises the numbers of `platform::Security`, with the program's message.
void write_owner_by_command(Credentials& credentials, const SmbPath& path, const platform::Sid& owner);

}  // namespace twk::live
