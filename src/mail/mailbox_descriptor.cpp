#include "mail/mailbox_descriptor.hpp"

#include <algorithm>
#include <functional>
#include <optional>
#include <vector>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/operations.hpp"
#include "platform/security_descriptor.hpp"
#include "session/session.hpp"

namespace twk::mail {
namespace {

using base::RuntimeError;
using platform::Acl;
using platform::Sid;
using session::Session;

void log_step(Session& session, std::string_view text) {
  if (session::is_debug(session))
    session.log.line(text);
}

/// One call; its failure is raised again with the call's name.
void run_step(Session& session, std::string_view caption, const std::string& failure,
              const std::function<void()>& call) {
  log_step(session, caption);
  try {
    call();
  } catch (const RuntimeError& error) {
    throw RuntimeError(error.number(), failure);
  }
}

/// Raises unless the look-up found one.
Sid require_sid(std::int32_t result, const base::Bytes& bytes) {
  const auto sid = result == 1 ? Sid::decode(bytes) : std::nullopt;
  if (!sid)
    throw RuntimeError(kDescriptorFailed, "GetSID");
  return *sid;
}

/// The user's identifier; `server` becomes the one that knows the user.
Sid find_owner(Session& session, std::string& server, std::string_view domain, std::string_view name) {
  base::Bytes bytes;
  log_step(session, "Get SID");
  std::int32_t result = GetUserSid(session, server, domain, name, bytes);
  if (result == 0) {
    session.log.line("Error getting SID");
    if (session::is_active_directory(session))
      server = session.DnsServerName;
    log_step(session, "Get SID 2nd attempt");
    result = GetUserSid(session, server, domain, name, bytes);
    if (result == 0)
      session.log.line("Error getting User SID from:" + server);
  }
  return require_sid(result, bytes);
}

}  // namespace

base::Bytes hex_text(std::span<const std::uint8_t> bytes) {
  base::Bytes text;
  text.reserve(bytes.size() * 2);
  for (const std::uint8_t byte : bytes) {
    for (const char digit : base::hex_byte(byte))
      text.push_back(static_cast<std::uint8_t>(digit));
  }
  return text;
}

std::int32_t GetUserSid(Session& session, std::string_view server, std::string_view domain,
                        std::string_view name, base::Bytes& sid) {
  const std::string account = std::string(domain) + "\\" + std::string(name);
  base::Trap trap;
  const bool found =
      trap([&] { sid = session.platform.security.LookupAccountName(server, account).sid.bytes(); });
  const std::int32_t result = found ? 1 : 0;
  log_step(session, base::to_text(result) + " Number should be 1");
  if (!found) {
    sid.clear();
    session.log.line("SID error... goto error routine");
    session.log.line("SID lookup error:" + trap.description());
  }
  return result;
}

bool BuildMailboxDescriptor(Session& session, base::Bytes& descriptor, std::string_view server,
                            std::string_view domain, std::string_view userName,
                            std::span<const AccountMask> pairs) {
  platform::SecurityDescriptor whole;
  run_step(session, "Init SD", "Error Init SD", [&] { whole = {}; });
  std::string asked(server);
  const Sid owner = find_owner(session, asked, domain, userName);
  run_step(session, "Setting SD Onwer", "Error setting SD Owner", [&] { whole.owner = owner; });
  run_step(session, "Setting SD Group", "Error setting SD Group", [&] { whole.group = owner; });

  std::vector<platform::Ace> entries;
  std::size_t size = Acl::kHeaderSize;
  for (const auto& [name, mask] : pairs) {
    base::Bytes bytes;
    const Sid sid = require_sid(GetUserSid(session, asked, domain, name, bytes), bytes);
    entries.emplace_back(platform::ace_type::kAllow, std::uint8_t{0}, mask, sid);
    size += sid.size() + 8;
  }
  std::optional<Acl> list;
  run_step(session, "Setting ACE", "Error setting ACE", [&] {
    list.emplace(size);
    for (const platform::Ace& entry : entries)
      list->add(Acl::kAtEnd, entry);
  });
  run_step(session, "Setting DACL", "Error setting DACL", [&] { whole.set_dacl(*std::move(list)); });
  run_step(session, "Setting Relative SD", "Error setting Relative SD", [&] { descriptor = whole.encode(); });
  return true;
}

void GetSidAsHex(Session& session, std::string_view name, base::Bytes& hex) {
  const std::string& domain = directory::winnt_domain(session);
  const std::string controller = session.platform.network.NetGetDCName("", domain);
  const std::string account = domain + "\\" + std::string(name);
  const std::size_t host = std::min(controller.find_first_not_of('\\'), controller.size());
  hex = hex_text(session.platform.security.LookupAccountName(controller.substr(host), account).sid.bytes());
}

}  // namespace twk::mail
