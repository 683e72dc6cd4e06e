#include "resources/share502.hpp"

#include <array>
#include <vector>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "format/variables.hpp"
#include "resources/share_descriptor.hpp"
#include "session/session.hpp"
#include "stores/side_tables.hpp"

namespace twk::resources {
namespace {

using session::Session;
using stores::PermissionRecord;

struct ShareAccess {
  std::string_view word;
  std::uint32_t mask;
};

constexpr std::array<ShareAccess, 3> kShareAccess = {
    {{"READ", 0xA0000000}, {"CHANGE", 0xE0010000}, {"FULL CONTROL", 0x10000000}}};

/// None when there is no table that can be used.
std::vector<PermissionRecord> table_rows(Session& session) {
  std::vector<PermissionRecord> rows;
  base::Trap trap;
  trap([&] { rows = stores::read_permissions(session, stores::kSharePermissionFile); });
  return rows;
}

/// A word that is no access word means what the row before it meant.
std::vector<AccessEntry> entries_of(const Session& session, const std::vector<PermissionRecord>& rows,
                                    const std::string& userName) {
  std::vector<AccessEntry> entries;
  std::uint32_t mask = 0;
  for (const PermissionRecord& row : rows) {
    mask = share_mask_of_access_word(row.Access).value_or(mask);
    AccessEntry entry;
    entry.account = base::trim(format::FRString(format::FRString(row.Account, "%Domain%", session.DomainName),
                                                "%UserName%", userName));
    entry.mask = mask;
    entries.push_back(base::equals_fold(entry.account, "EVERYONE") ? world_entry(mask) : std::move(entry));
  }
  return entries;
}

}  // namespace

std::optional<std::uint32_t> share_mask_of_access_word(std::string_view word) {
  for (const ShareAccess& access : kShareAccess) {
    if (base::equals_fold(access.word, base::trim(word)))
      return access.mask;
  }
  return std::nullopt;
}

ShareList share_list_of_table(Session& session, const std::string& userName) {
  const std::vector<PermissionRecord> rows = table_rows(session);
  if (!rows.empty()) {
    auto descriptor = BuildShareDescriptor(session, nullptr, entries_of(session, rows, userName));
    if (descriptor)
      return {ShareResult::kMade, std::move(descriptor)};
  }
  constexpr std::uint32_t kEverything = platform::access::kGenericAll;
  auto fallback = BuildShareDescriptor(session, nullptr, {world_entry(kEverything)});
  if (fallback)
    return {ShareResult::kFallbackList, std::move(fallback)};
  session.platform.dialogs.MsgBox("Unable to create Security Descriptor", platform::Buttons::kOk,
                                  platform::Icon::kNone, {});
  return {ShareResult::kFailed, std::nullopt};
}

platform::ShareInfo502 share_of_folder(const std::string& shareName, const std::string& path,
                                       const std::string& remark) {
  platform::ShareInfo502 share;
  share.shi502_netname = shareName;
  share.shi502_remark = remark;
  share.shi502_permissions = 1;
  share.shi502_path = path;
  return share;
}

ShareResult CreateShare(Session& session, const std::string& server, const std::string& shareName,
                        const std::string& path, const std::string& remark, const std::string& userName) {
  ShareList list = share_list_of_table(session, userName);
  platform::ShareInfo502 share = share_of_folder(shareName, path, remark);
  share.shi502_security_descriptor = std::move(list.descriptor);
  base::Trap trap;
  if (trap([&] { session.platform.network.NetShareAdd(server, share); }))
    return list.result;
  session.log.line("NetShareSetInfo failed with error code : " + base::to_text(trap.number()));
  return ShareResult::kFailed;
}

}  // namespace twk::resources
