#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace twk::live {

/// A network path, taken apart.
struct SmbPath {
  std::string server;  ///< "FS1"
  std::string share;   ///< "D$"
  std::string path;    ///< after the share, "Users/jo"; empty for the share itself

  /// "smb://FS1/D%24/Users/jo", every byte except letters, digits and a few marks escaped (RFC 3986 2.1).
  [[nodiscard]] std::string url() const;
  /// "\\FS1\D$\Users\jo", for messages.
  [[nodiscard]] std::string text() const;
  /// The folder that contains it; none for the share itself.
  [[nodiscard]] std::optional<SmbPath> folder() const;
};

/// Takes "\\FS1\D$\Users\jo" apart. None for a path of the workstation. Raises 52 for a path without server
/// and share and for one that holds a NUL or a character that no file name on a server contains, 76 for one
/// with a part "." or "..".
std::optional<SmbPath> parse_smb_path(std::string_view path);

}  // namespace twk::live
