#include "platform/network_path.hpp"

#include "base/text.hpp"

namespace twk::platform {

NetworkPath take_apart(std::string_view path) {
  constexpr std::size_t kServer = 2;
  if (!path.starts_with('\\') || path.size() <= kServer)
    return {};
  const std::size_t server_end = path.find('\\', kServer);
  if (server_end == base::npos)
    return {};
  const std::string_view rest = path.substr(server_end + 1);
  const std::string_view share = rest.substr(0, rest.find('\\'));
  return {path.substr(kServer, server_end - kServer), share, rest.substr(share.size())};
}

}  // namespace twk::platform
