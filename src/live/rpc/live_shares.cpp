#include "live/rpc/live_shares.hpp"

#include <utility>

#include "base/errors.hpp"
#include "base/text.hpp"

namespace twk::live {
namespace {

using ads::FileShare;
using platform::ShareInfo502;

FileShare to_share(ShareInfo502 info) {
  FileShare share;
  share.administrative = (info.shi502_type & platform::kAdministrativeShare) != 0;
  share.name = std::move(info.shi502_netname);
  share.path = std::move(info.shi502_path);
  share.comment = std::move(info.shi502_remark);
  share.max_users = info.shi502_max_uses;
  share.descriptor = std::move(info.shi502_security_descriptor);
  return share;
}

}  // namespace

std::vector<FileShare> LiveShares::all() {
  std::vector<FileShare> shares;
  for (ShareInfo502& info : as_directory_call([&] { return service_.all(); }))
    shares.push_back(to_share(std::move(info)));
  return shares;
}

std::optional<FileShare> LiveShares::find(std::string_view name) {
  base::Trap trap;
  std::optional<FileShare> share;
  trap([&] { share = to_share(service_.get(name)); });
  if (trap.number() != 0 && trap.number() != platform::network_error::kShareNotFound)
    base::raise(directory_number(trap.number()), trap.description());
  return share;
}

void LiveShares::store(const FileShare& share, bool replace) {
  as_directory_call([&] {
    ShareInfo502 info;
    if (replace)
      info = service_.get(share.name);
    else
      info.shi502_path = share.path;
    if (!base::equals_fold(info.shi502_path, share.path))
      base::raise(platform::ads_error::kUnwilling, "The folder of a share cannot be changed: " + share.name);
    info.shi502_netname = share.name;
    info.shi502_remark = share.comment;
    info.shi502_max_uses = share.max_users;
    if (replace)
      service_.change(info);
    else
      service_.add(info);
  });
}

void LiveShares::remove(std::string_view name) {
  as_directory_call([&] { service_.remove(name); });
}

}  // namespace twk::live
