#pragma once

#include <string_view>

namespace twk::platform {

/// "\\FS1\Users\jo\nt" by its backslashes, as views into it. Nothing is checked or made uniform.
struct NetworkPath {
  std::string_view server;  ///< "FS1"
  std::string_view share;   ///< "Users"
  std::string_view tail;    ///< "\jo\nt"; empty for the share itself
};

/// All empty for text that does not begin with a backslash or has no share.
NetworkPath take_apart(std::string_view path);

}  // namespace twk::platform
