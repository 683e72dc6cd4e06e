#include "live/domain/bind_shares.hpp"

#include "live/domain/live_domain.hpp"

namespace twk::live {

platform::ObjectPtr bind_shares(LiveDomain& domain, const ads::AdsPath& path) {
  LiveShares& shares = domain.rpc().share_store(path.server);
  const auto server = std::make_shared<ads::FileServerObject>(shares, path.server);
  if (path.kind == ads::AdsPath::Kind::kFileShare)
    return server->GetObject("FileShare", path.name);
  as_directory_call([&] { domain.rpc().shares(path.server).open(); });
  return server;
}

}  // namespace twk::live
