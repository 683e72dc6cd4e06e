#include "resources/share502.hpp"

#include <algorithm>
#include <array>
#include <vector>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "format/replace.hpp"
#include "platform/acl.hpp"
#include "resources/share_descriptor.hpp"
#include "session/session.hpp"
#include "stores/side_tables.hpp"

namespace twk::resources {
namespace {

using records::PermissionRecord;
using session::Session;

struct ShareAccess {
  std::string_view word;
  std::uint32_t mask;
};

constexpr std::array<ShareAccess, 3> kShareAccess = {
    {{"READ", 0xA0000000}, {"CHANGE", 0xE0010000}, {"FULL CONTROL", 0x10000000}}};

/// A word that is not an access word means the same as the row before.
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

std::string unknown_text(const std::vector<std::string>& accounts) {
  std::string text = "The table of share permissions names an account that is not found: ";
  for (const std::string& account : accounts)
    text += (&account == &accounts.front() ? "" : ", ") + account;
  return text;
}

ShareList no_list(std::string reason) {
  return {ShareResult::kFailed, std::nullopt, std::move(reason)};
}

ShareList list_for_everybody(Session& session) {
  auto descriptor = BuildShareDescriptor(session, nullptr, {world_entry(platform::access::kGenericAll)});
  if (!descriptor)
    return no_list("Unable to create Security Descriptor");
  return {ShareResult::kFallbackList, std::move(descriptor),
          "The table of share permissions has no rows: everyone gets full control"};
}

/// True when one of the entries is for the user or for a group that the user is in.
bool gives_access(Session& session, const std::vector<AccessEntry>& entries, const std::string& userName) {
  std::vector<platform::Sid> user;
  base::Trap unknown;
  unknown([&] { user = session.platform.security.account_identifiers(userName); });
  return std::any_of(entries.begin(), entries.end(), [&](const AccessEntry& entry) {
    return entry.mask != 0 &&
           (entry.well_known || std::find(user.begin(), user.end(), *entry.sid) != user.end());
  });
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
  std::vector<PermissionRecord> rows;
  base::Trap trap;
  trap([&] { rows = stores::read_permissions(session, stores::kSharePermissionFile); });
  if (trap.number() != 0 && trap.number() != base::error::kFileNotFound &&
      trap.number() != base::error::kPathNotFound)
    return no_list("The table of share permissions cannot be read: " +
                   base::in_words(trap.number(), trap.description()));
  if (rows.empty())
    return list_for_everybody(session);
  std::vector<AccessEntry> entries = entries_of(session, rows, userName);
  const std::vector<std::string> unknown = drop_unknown(session, entries);
  if (!unknown.empty() && !gives_access(session, entries, userName))
    return no_list(unknown_text(unknown) + ", and no row is left that gives " + userName + " access");
  auto descriptor = BuildShareDescriptor(session, nullptr, std::move(entries));
  if (!descriptor)
    return no_list("The table of share permissions is too long for a list");
  if (unknown.empty())
    return {ShareResult::kMade, std::move(descriptor)};
  return {ShareResult::kFallbackList, std::move(descriptor),
          unknown_text(unknown) + ", which gets no access to the share"};
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
  if (list.result != ShareResult::kMade)
    session.log.reason("Share " + shareName + ": " + list.reason);
  if (!list.descriptor)
    return ShareResult::kFailed;
  platform::ShareInfo502 share = share_of_folder(shareName, path, remark);
  share.shi502_security_descriptor = std::move(list.descriptor);
  base::Trap trap;
  if (trap([&] { session.platform.network.NetShareAdd(server, share); }))
    return list.result;
  session.log.reason("Share " + shareName +
                     " was not made: " + base::in_words(trap.number(), trap.description()));
  session.log.line("NetShareSetInfo failed with error code : " + base::to_text(trap.number()));
  return ShareResult::kFailed;
}

bool is_without_answer(Session& session, const std::string& server, const std::string& shareName) {
  base::Trap trap;
  return !trap([&] { session.platform.network.NetShareGetInfo(server, shareName); }) &&
         trap.number() != platform::network_error::kShareNotFound &&
         trap.number() != platform::security_error::kAccessDenied;
}

}  // namespace twk::resources
