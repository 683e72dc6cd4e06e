#include "live/rpc/account_session.hpp"

#include <algorithm>
#include <array>
#include <cstring>

#include "base/text.hpp"
#include "platform/little_endian.hpp"

namespace twk::live {
namespace {

struct StatusNumber {
  std::uint32_t status;  ///< [MS-ERREF] 2.3
  std::uint32_t number;  ///< [MS-ERREF] 2.2
};

/// Where the library's own table differs from the numbers of the network calls.
constexpr std::array<StatusNumber, 15> kNumbers = {{
    {0xC0000063, 2224},  // STATUS_USER_EXISTS
    {0xC0000064, 2221},  // STATUS_NO_SUCH_USER
    {0xC0000065, 2223},  // STATUS_GROUP_EXISTS
    {0xC0000066, 2220},  // STATUS_NO_SUCH_GROUP
    {0xC0000067, 1320},  // STATUS_MEMBER_IN_GROUP
    {0xC0000068, 1321},  // STATUS_MEMBER_NOT_IN_GROUP
    {0xC000006C, 2245},  // STATUS_PASSWORD_RESTRICTION
    {0xC0000151, 2220},  // STATUS_NO_SUCH_ALIAS
    {0xC0000152, 1321},  // STATUS_MEMBER_NOT_IN_ALIAS
    {0xC0000153, 1320},  // STATUS_MEMBER_IN_ALIAS
    {0xC0000154, 2223},  // STATUS_ALIAS_EXISTS
    {0xC0000062, 2202},  // STATUS_INVALID_ACCOUNT_NAME
    {0xC0000022, 5},     // STATUS_ACCESS_DENIED
    {0xC0000073, 2221},  // STATUS_NONE_MAPPED
    {0xC000000D, 87},    // STATUS_INVALID_PARAMETER
}};

}  // namespace

lsa_String to_lsa(const std::string& text) {
  lsa_String value{};
  value.string = text.c_str();
  return value;
}

std::string from_lsa(const lsa_String& text) {
  return text.string == nullptr ? std::string() : std::string(text.string);
}

dom_sid to_dom_sid(const platform::Sid& sid) {
  dom_sid value{};
  const base::Bytes& bytes = sid.bytes();
  constexpr std::size_t kHeader = 8;
  value.sid_rev_num = bytes[0];
  value.num_auths = static_cast<std::int8_t>(bytes[1]);
  std::memcpy(value.id_auth, bytes.data() + 2, sizeof value.id_auth);
  for (std::size_t i = 0; i < bytes[1]; ++i)
    value.sub_auths[i] = platform::read_u32(bytes, kHeader + 4 * i);
  return value;
}

platform::Sid from_dom_sid(const dom_sid& sid) {
  base::Bytes bytes{sid.sid_rev_num, static_cast<std::uint8_t>(sid.num_auths)};
  bytes.insert(bytes.end(), std::begin(sid.id_auth), std::end(sid.id_auth));
  for (std::int8_t i = 0; i < sid.num_auths; ++i)
    platform::append_u32(bytes, sid.sub_auths[i]);
  return platform::Sid::decode(bytes).value_or(platform::Sid(0, {}));
}

void AccountSession::check(std::uint32_t status, std::string_view what) {
  if (status == 0)
    return;
  const auto* const known = std::find_if(kNumbers.begin(), kNumbers.end(),
                                         [&](const StatusNumber& one) { return one.status == status; });
  base::raise(known != kNumbers.end() ? known->number : win32_of_status(status),
              std::string(what) + ": " + nt_errstr(to_status(status)));
}

AccountSession::AccountSession(RpcPipe& pipe) : pipe_(pipe) {
  const Memory memory;
  const std::string name = "\\\\" + pipe.host();
  samr_Connect2 connect{};
  connect.in.system_name = name.c_str();
  connect.in.access_mask = kMaximumAllowed;
  connect.out.connect_handle = &connection_;
  run(NDR_SAMR_CONNECT2, connect, memory, "The account service of " + pipe.host());

  std::uint32_t resume = 0;
  std::uint32_t count = 0;
  samr_SamArray* names = nullptr;
  samr_EnumDomains domains{};
  domains.in.connect_handle = &connection_;
  domains.in.buf_size = 0xFFFF;
  domains.in.resume_handle = domains.out.resume_handle = &resume;
  domains.out.sam = &names;
  domains.out.num_entries = &count;
  run(NDR_SAMR_ENUMDOMAINS, domains, memory, "The domains of " + pipe.host());
  for (const samr_SamEntry& entry : items_of(part_of(names).entries, part_of(names).count)) {
    std::string one = from_lsa(entry.name);
    (base::equals_fold(one, "Builtin") ? builtin_ : own_).name = std::move(one);
  }
  open(own_);
  open(builtin_);
}

void AccountSession::open(Domain& domain) {
  const Memory memory;
  lsa_String name = to_lsa(domain.name);
  dom_sid* sid = nullptr;
  samr_LookupDomain find{};
  find.in.connect_handle = &connection_;
  find.in.domain_name = &name;
  find.out.sid = &sid;
  run(NDR_SAMR_LOOKUPDOMAIN, find, memory, "The domain " + domain.name);
  domain.sid = part_of(sid);
  // An account's identifier has one more number.
  if (domain.sid.num_auths < 1 || static_cast<std::size_t>(domain.sid.num_auths) >= std::size(sid->sub_auths))
    base::raise(kBadStub, "The server's answer is malformed: no domain has such an identifier");
  samr_OpenDomain opened{};
  opened.in.connect_handle = &connection_;
  opened.in.access_mask = kMaximumAllowed;
  opened.in.sid = sid;
  opened.out.domain_handle = &domain.handle;
  run(NDR_SAMR_OPENDOMAIN, opened, memory, "The domain " + domain.name);
}

OpenAccount::OpenAccount(AccountSession& session, const SamAccount& account) : session_(session) {
  const Memory memory;
  policy_handle* const domain = &session.domain(account.builtin).handle;
  const auto open = [&](std::uint32_t operation, auto&& call, policy_handle*& opened) {
    call.in.domain_handle = domain;
    call.in.access_mask = kMaximumAllowed;
    call.in.rid = account.rid;
    opened = &handle_;
    session.run(operation, call, memory, "The account " + account.name);
  };
  samr_OpenUser user{};
  samr_OpenGroup group{};
  samr_OpenAlias alias{};
  switch (account.kind) {
    case SamAccount::Kind::kUser:
      open(NDR_SAMR_OPENUSER, user, user.out.user_handle);
      break;
    case SamAccount::Kind::kGlobalGroup:
      open(NDR_SAMR_OPENGROUP, group, group.out.group_handle);
      break;
    case SamAccount::Kind::kLocalGroup:
      open(NDR_SAMR_OPENALIAS, alias, alias.out.alias_handle);
      break;
  }
}

OpenAccount::~OpenAccount() {
  if (!open_)
    return;
  // A pipe that broke has no handle left to close.
  base::Trap trap;
  trap([&] {
    const Memory memory;
    samr_Close close{};
    close.in.handle = close.out.handle = &handle_;
    session_.ask(NDR_SAMR_CLOSE, close, memory);
  });
}

namespace {

std::optional<SamAccount::Kind> kind_of(std::uint32_t type) {
  switch (type) {
    case SID_NAME_USER:
      return SamAccount::Kind::kUser;
    case SID_NAME_DOM_GRP:
      return SamAccount::Kind::kGlobalGroup;
    case SID_NAME_ALIAS:
      return SamAccount::Kind::kLocalGroup;
    default:
      return std::nullopt;
  }
}

}  // namespace

std::optional<SamAccount> look_up_name(AccountSession& session, std::string_view name, bool builtin) {
  const Memory memory;
  const std::string text(name);
  lsa_String wanted = to_lsa(text);
  samr_Ids rids{};
  samr_Ids types{};
  samr_LookupNames call{};
  call.in.domain_handle = &session.domain(builtin).handle;
  call.in.num_names = 1;
  call.in.names = &wanted;
  call.out.rids = &rids;
  call.out.types = &types;
  const std::uint32_t status = session.ask(NDR_SAMR_LOOKUPNAMES, call, memory);
  if (status == kNoneMappedStatus)
    return std::nullopt;
  AccountSession::check(status, "The account " + text);
  if (rids.count != 1 || types.count != 1)
    return std::nullopt;
  // Another call returns the name as stored.
  const auto found = look_up_rids(session, {part_of(rids.ids)}, builtin);
  return found.empty() ? std::nullopt : std::optional(found.front());
}

std::vector<SamAccount> look_up_rids(AccountSession& session, std::vector<std::uint32_t> rids, bool builtin) {
  constexpr std::size_t kMostAtOnce = 1000;
  std::vector<SamAccount> accounts;
  for (std::size_t from = 0; from < rids.size(); from += kMostAtOnce) {
    const Memory memory;
    lsa_Strings names{};
    samr_Ids types{};
    samr_LookupRids call{};
    call.in.domain_handle = &session.domain(builtin).handle;
    call.in.num_rids = static_cast<std::uint32_t>(std::min(rids.size() - from, kMostAtOnce));
    call.in.rids = rids.data() + from;
    call.out.names = &names;
    call.out.types = &types;
    const std::uint32_t status = session.ask(NDR_SAMR_LOOKUPRIDS, call, memory);
    if (status == kNoneMappedStatus)
      continue;
    if (status != kSomeNotMapped)
      AccountSession::check(status, "The names of accounts");
    const auto texts = items_of(names.names, names.count);
    const auto kinds = items_of(types.ids, types.count);
    if (texts.size() > call.in.num_rids || kinds.size() != texts.size())
      base::raise(kBadStub, "The server's answer is malformed: other names than requested");
    for (std::size_t i = 0; i < texts.size(); ++i) {
      std::string name = from_lsa(texts[i]);
      const auto kind = kind_of(kinds[i]);
      // A computer's account has the type of a user.
      if (kind && !name.ends_with('$'))
        accounts.push_back(
            {.name = std::move(name), .kind = *kind, .builtin = builtin, .rid = rids[from + i]});
    }
  }
  return accounts;
}

}  // namespace twk::live
