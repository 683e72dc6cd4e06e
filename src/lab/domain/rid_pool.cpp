#include "lab/domain/rid_pool.hpp"

#include <algorithm>

#include "ads/sid.hpp"
#include "base/text.hpp"
#include "lab/domain/entry_view.hpp"
#include "lab/store/errors.hpp"

namespace twk::lab {
namespace {

constexpr std::uint32_t kFirstRid = 1000;
constexpr std::uint32_t kBlock = 64;
constexpr std::uint32_t kLastRid = 0x3FFFFFFF;

/// Another process reserved the same block first.
struct Overtaken {};

/// One after the highest relative id in use, for a directory that came without a record of them.
std::uint32_t first_free_rid(const LabDomain& domain, const std::string& sid) {
  std::uint32_t highest = kFirstRid - 1;
  domain.store.subtree(require_entry(domain, domain.root_dn), [&](const Entry& entry) {
    const auto own = entry.value("objectSid");
    if (own && ads::without_rid(*own) == sid)
      highest = std::max(highest, ads::rid_of(*own).value_or(0));
    return true;
  });
  return highest + 1;
}

void reserve_block(LabDomain& domain) {
  const std::string sid = domain_sid(domain);
  for (;;) {
    domain.store.refresh();
    const auto recorded = require_entry(domain, domain.root_dn).value("rIDNextRID");
    const std::int64_t first = recorded ? base::val(*recorded) : first_free_rid(domain, sid);
    if (first < kFirstRid || first > kLastRid - kBlock)
      raise(ads_error::kUnwilling, "The relative ids are used up");
    const Modification next{ModifyKind::kReplace, "rIDNextRID", {base::to_text(first + kBlock)}};
    try {
      domain.store.modify(domain.root_dn, {next}, [&] {
        if (require_entry(domain, domain.root_dn).value("rIDNextRID") != recorded)
          throw Overtaken{};
      });
      domain.next_rid = static_cast<std::uint32_t>(first);
      domain.end_rid = domain.next_rid + kBlock;
      return;
    } catch (const Overtaken&) {
      continue;
    }
  }
}

}  // namespace

std::string next_sid(LabDomain& domain) {
  if (domain.next_rid == domain.end_rid)
    reserve_block(domain);
  return ads::append_rid(domain_sid(domain), domain.next_rid++);
}

std::string domain_sid(const LabDomain& domain) {
  auto sid = require_entry(domain, domain.root_dn).value("objectSid");
  if (!sid)
    raise(ads_error::kUnwilling, "The domain's entry has no objectSid");
  return *std::move(sid);
}

}  // namespace twk::lab
