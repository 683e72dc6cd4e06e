#include "resources/share_descriptor.hpp"

#include <algorithm>

#include "base/errors.hpp"
#include "resources/account_lookup.hpp"
#include "session/session.hpp"

namespace twk::resources {
namespace {

using platform::Ace;
using platform::Acl;
using platform::SecurityDescriptor;
using platform::Sid;
using session::Session;

std::optional<Sid> look_up(Session& session, const std::string& account) {
  std::string server = server_for_accounts(session);
  std::optional<Sid> sid;
  base::Trap trap;
  const auto ask = [&] { sid = session.platform.security.LookupAccountName(server, account).sid; };
  if (trap(ask))
    return sid;
  session.log.line("Could not get SID from: " + server);
  server = fallback_server(session);
  session.log.line("Will Use server " + server + " to lookup account");
  if (trap(ask))
    return sid;
  session.log.line(trap.number() == platform::security_error::kNoneMapped
                       ? "Error looking up Account: " + account
                       : "Error Getting SID from: " + server);
  return std::nullopt;
}

bool find_identifiers(Session& session, std::vector<AccessEntry>& entries) {
  return std::all_of(entries.begin(), entries.end(), [&](AccessEntry& entry) {
    if (!entry.sid)
      entry.sid = look_up(session, entry.account);
    return entry.sid.has_value();
  });
}

/// What remains of an old list next to new entries.
std::vector<Ace> merged_entries(const SecurityDescriptor* old, const std::vector<AccessEntry>& entries) {
  std::vector<Ace> kept;
  if (old == nullptr || !old->dacl)
    return kept;
  const auto is_named = [&entries](const Ace& ace) {
    return std::any_of(entries.begin(), entries.end(),
                       [&ace](const AccessEntry& entry) { return ace.sid() == entry.sid; });
  };
  for (const Ace& ace : old->dacl->entries()) {
    if ((ace.flags() & platform::ace_flag::kInherited) == 0 && !is_named(ace))
      kept.push_back(ace);
  }
  return kept;
}

std::size_t list_size(const std::vector<AccessEntry>& entries, const std::vector<Ace>& merged) {
  constexpr std::size_t kEntryWithoutSid = 8;
  std::size_t size = Acl::kHeaderSize;
  for (const AccessEntry& entry : entries)
    size += kEntryWithoutSid + entry.sid->size();
  for (const Ace& ace : merged)
    size += ace.size();
  return size;
}

void add_type(Acl& list, const std::vector<AccessEntry>& entries, std::uint8_t type) {
  for (const AccessEntry& entry : entries) {
    if (entry.aceType == type)
      AddAccessEntry(list, entry.aceType, entry.aceFlags, entry.mask, *entry.sid);
  }
}

}  // namespace

AccessEntry world_entry(std::uint32_t mask) {
  AccessEntry entry;
  entry.account = "Everyone";
  entry.well_known = true;
  entry.mask = mask;
  entry.sid = platform::well_known::everyone();
  return entry;
}

std::vector<std::string> drop_unknown(Session& session, std::vector<AccessEntry>& entries) {
  std::vector<std::string> unknown;
  std::erase_if(entries, [&](AccessEntry& entry) {
    if (!entry.sid)
      entry.sid = look_up(session, entry.account);
    if (!entry.sid)
      unknown.push_back(entry.account);
    return !entry.sid;
  });
  return unknown;
}

void AddAccessEntry(Acl& acl, std::uint8_t aceType, std::uint8_t aceFlags, std::uint32_t mask,
                    const Sid& sid) {
  acl.add(Acl::kAtEnd, Ace(aceType, aceFlags, mask, sid));
}

std::optional<SecurityDescriptor> BuildShareDescriptor(Session& session,
                                                       const SecurityDescriptor* oldDescriptor,
                                                       std::vector<AccessEntry> entries) {
  if (!find_identifiers(session, entries))
    return std::nullopt;
  const std::vector<Ace> merged = merged_entries(oldDescriptor, entries);
  try {
    Acl list(list_size(entries, merged));
    add_type(list, entries, platform::ace_type::kDeny);
    for (const Ace& ace : merged)
      list.add(Acl::kAtEnd, ace);
    add_type(list, entries, platform::ace_type::kAllow);
    SecurityDescriptor descriptor;
    descriptor.set_dacl(std::move(list));
    return descriptor;
  } catch (const base::RuntimeError&) {
    return std::nullopt;
  }
}

}  // namespace twk::resources
