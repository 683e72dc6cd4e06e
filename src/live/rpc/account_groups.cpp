#include <algorithm>

#include "live/ldap/ldap_errors.hpp"
#include "live/rpc/account_service.hpp"
#include "live/rpc/account_session.hpp"

namespace twk::live {
namespace {

using Kind = SamAccount::Kind;

constexpr std::uint32_t kUserNotFound = 2221;
constexpr std::uint32_t kGroupNotFound = 2220;
constexpr std::uint32_t kUserExists = 2224;
constexpr std::uint32_t kGroupExists = 2223;
constexpr std::uint32_t kMemberInGroup = 1320;
constexpr std::uint32_t kMemberNotInGroup = 1321;
constexpr std::uint32_t kGroupAttributes = 7;  // mandatory, enabled, by default, [MS-SAMR] 2.2.1.10
constexpr std::uint32_t kAnswerSize = 0xFFFF;
/// More than any domain has.
constexpr std::size_t kMostAccounts = 20'000'000;

/// Runs one of the service's enumerations to its end.
template <typename Call>
void enumerate_kind(AccountSession& session, std::uint32_t operation, bool builtin, Kind kind, Call call,
                    std::vector<SamAccount>& found) {
  std::uint32_t resume = 0;
  for (std::size_t told = 0;;) {
    const std::uint32_t from = resume;
    const Memory memory;
    samr_SamArray* names = nullptr;
    std::uint32_t count = 0;
    call.in.domain_handle = &session.domain(builtin).handle;
    call.in.max_size = kAnswerSize;
    call.in.resume_handle = call.out.resume_handle = &resume;
    call.out.sam = &names;
    call.out.num_entries = &count;
    const std::uint32_t status = session.ask(operation, call, memory);
    if (status != kMoreEntries && status != kNoMoreEntries)
      AccountSession::check(status, "The accounts of the domain");
    if (names == nullptr)
      return;
    for (const samr_SamEntry& entry : items_of(names->entries, names->count)) {
      std::string name = from_lsa(entry.name);
      if (!name.ends_with('$'))
        found.push_back({.name = std::move(name), .kind = kind, .builtin = builtin, .rid = entry.idx});
    }
    if (status != kMoreEntries || names->count == 0)
      return;
    told += names->count;
    if (resume == from || told > kMostAccounts)
      base::raise(kProtocolError, "The server never finishes sending the accounts of the domain");
    session.require_going_on();
  }
}

/// SAMPR_DOMAIN_DISPLAY_USER, [MS-SAMR] 2.2.8.2.
constexpr std::uint16_t kDisplayUsers = 1;

/// None when the service refuses such a list.
std::optional<std::vector<SamUser>> display_users(AccountSession& session) {
  std::vector<SamUser> users;
  for (std::uint32_t told = 0;;) {
    const Memory memory;
    samr_DispInfo info{};
    std::uint32_t total = 0;
    std::uint32_t returned = 0;
    samr_QueryDisplayInfo call{};
    call.in.domain_handle = &session.domain(false).handle;
    call.in.level = kDisplayUsers;
    call.in.start_idx = told;
    call.in.max_entries = kAnswerSize;
    call.in.buf_size = kAnswerSize;
    call.out.total_size = &total;
    call.out.returned_size = &returned;
    call.out.info = &info;
    const std::uint32_t status = session.ask(NDR_SAMR_QUERYDISPLAYINFO, call, memory);
    if (status != kMoreEntries && status != kNoMoreEntries && status != 0)
      return std::nullopt;
    const auto entries = items_of(info.info1.entries, info.info1.count);
    for (const samr_DispEntryGeneral& entry : entries) {
      SamUser user;
      user.name = from_lsa(entry.account_name);
      user.full_name = from_lsa(entry.full_name);
      user.description = from_lsa(entry.description);
      user.flags = entry.acct_flags;
      if (!user.name.ends_with('$'))
        users.push_back(std::move(user));
    }
    told += static_cast<std::uint32_t>(entries.size());
    if (status != kMoreEntries || entries.empty())
      return users;
    if (told > kMostAccounts)
      base::raise(kProtocolError, "The server never finishes sending the accounts of the domain");
    session.require_going_on();
  }
}

std::vector<platform::Sid> alias_members(AccountSession& session, const SamAccount& group) {
  const Memory memory;
  OpenAccount opened(session, group);
  lsa_SidArray sids{};
  samr_GetMembersInAlias call{};
  call.in.alias_handle = opened.handle();
  call.out.sids = &sids;
  session.run(NDR_SAMR_GETMEMBERSINALIAS, call, memory, "The members of " + group.name);
  std::vector<platform::Sid> members;
  for (const lsa_SidPtr& one : items_of(sids.sids, sids.num_sids))
    members.push_back(from_dom_sid(part_of(one.sid)));
  return members;
}

std::vector<std::uint32_t> group_members(AccountSession& session, const SamAccount& group) {
  const Memory memory;
  OpenAccount opened(session, group);
  samr_RidAttrArray* rids = nullptr;
  samr_QueryGroupMember call{};
  call.in.group_handle = opened.handle();
  call.out.rids = &rids;
  session.run(NDR_SAMR_QUERYGROUPMEMBER, call, memory, "The members of " + group.name);
  if (rids == nullptr)
    return {};
  const auto numbers = items_of(rids->rids, rids->count);
  return {numbers.begin(), numbers.end()};
}

std::vector<std::uint32_t> group_rids_of(AccountSession& session, const SamAccount& user) {
  const Memory memory;
  OpenAccount opened(session, user);
  samr_RidWithAttributeArray* rids = nullptr;
  samr_GetGroupsForUser call{};
  call.in.user_handle = opened.handle();
  call.out.rids = &rids;
  session.run(NDR_SAMR_GETGROUPSFORUSER, call, memory, "The groups of " + user.name);
  std::vector<std::uint32_t> groups;
  if (rids == nullptr)
    return groups;
  for (const samr_RidWithAttribute& one : items_of(rids->rids, rids->count))
    groups.push_back(one.rid);
  return groups;
}

/// The local groups of a domain that one of the identifiers is a direct member of.
std::vector<SamAccount> local_groups_of(AccountSession& session, const std::vector<platform::Sid>& members,
                                        bool builtin) {
  const Memory memory;
  std::vector<dom_sid> wanted;
  wanted.reserve(members.size());
  for (const platform::Sid& member : members)
    wanted.push_back(to_dom_sid(member));
  std::vector<lsa_SidPtr> pointers;
  pointers.reserve(wanted.size());
  for (dom_sid& sid : wanted)
    pointers.push_back({.sid = &sid});
  lsa_SidArray sids{.num_sids = static_cast<std::uint32_t>(pointers.size()), .sids = pointers.data()};
  samr_Ids rids{};
  samr_GetAliasMembership call{};
  call.in.domain_handle = &session.domain(builtin).handle;
  call.in.sids = &sids;
  call.out.rids = &rids;
  session.run(NDR_SAMR_GETALIASMEMBERSHIP, call, memory, "The local groups of an account");
  const auto numbers = items_of(rids.ids, rids.count);
  return look_up_rids(session, {numbers.begin(), numbers.end()}, builtin);
}

/// A global group takes members by their relative identifier, a local one by the whole identifier.
struct Member {
  std::uint32_t rid = 0;
  platform::Sid sid;
};

/// Adds or removes a member, by the operation and call of each kind of group.
template <typename GlobalCall, typename LocalCall>
void change_member(AccountSession& session, const SamAccount& group, const Member& member,
                   std::uint32_t global_operation, GlobalCall global, std::uint32_t local_operation,
                   LocalCall local) {
  const Memory memory;
  OpenAccount opened(session, group);
  const std::string what = "The group " + group.name;
  if (group.kind == Kind::kGlobalGroup) {
    global.in.group_handle = opened.handle();
    global.in.rid = member.rid;
    return session.run(global_operation, global, memory, what);
  }
  dom_sid sid = to_dom_sid(member.sid);
  local.in.alias_handle = opened.handle();
  local.in.sid = &sid;
  session.run(local_operation, local, memory, what);
}

}  // namespace

void AccountService::enumerate(bool users, bool groups, const std::function<bool(const SamAccount&)>& visit) {
  const auto found = repeat([&](AccountSession& session) {
    std::vector<SamAccount> all;
    if (users) {
      samr_EnumDomainUsers call{};
      call.in.acct_flags = ACB_NORMAL;
      enumerate_kind(session, NDR_SAMR_ENUMDOMAINUSERS, false, Kind::kUser, call, all);
    }
    if (groups) {
      enumerate_kind(session, NDR_SAMR_ENUMDOMAINGROUPS, false, Kind::kGlobalGroup, samr_EnumDomainGroups{},
                     all);
      for (const bool builtin : {false, true})
        enumerate_kind(session, NDR_SAMR_ENUMDOMAINALIASES, builtin, Kind::kLocalGroup,
                       samr_EnumDomainAliases{}, all);
    }
    return all;
  });
  for (const SamAccount& account : found) {
    if (!visit(account))
      return;
  }
}

std::vector<SamUser> AccountService::list_users() {
  if (auto users = repeat([](AccountSession& session) { return display_users(session); }))
    return *std::move(users);
  std::vector<SamUser> names;
  enumerate(true, false, [&](const SamAccount& account) {
    names.emplace_back().name = account.name;
    return true;
  });
  return names;
}

SamAccount AccountService::create(std::string_view name, Kind kind) {
  const std::uint32_t exists = kind == Kind::kUser ? kUserExists : kGroupExists;
  if (find(name))
    base::raise(exists, "The domain has an account " + std::string(name) + " already");
  const std::string text(name);
  repeat_write(exists, [&](AccountSession& session) {
    const Memory memory;
    lsa_String wanted = to_lsa(text);
    policy_handle made{};
    std::uint32_t rid = 0;
    std::uint32_t granted = 0;
    const auto run = [&](std::uint32_t operation, auto& call) {
      call.in.domain_handle = &session.domain(false).handle;
      call.in.access_mask = kMaximumAllowed;
      call.out.rid = &rid;
      session.run(operation, call, memory, "The account " + text);
    };
    if (kind == Kind::kUser) {
      samr_CreateUser2 call{};
      call.in.account_name = &wanted;
      call.in.acct_flags = ACB_NORMAL;
      call.out.user_handle = &made;
      call.out.access_granted = &granted;
      run(NDR_SAMR_CREATEUSER2, call);
    } else if (kind == Kind::kGlobalGroup) {
      samr_CreateDomainGroup call{};
      call.in.name = &wanted;
      call.out.group_handle = &made;
      run(NDR_SAMR_CREATEDOMAINGROUP, call);
    } else {
      samr_CreateDomAlias call{};
      call.in.alias_name = &wanted;
      call.out.alias_handle = &made;
      run(NDR_SAMR_CREATEDOMALIAS, call);
    }
    samr_Close close{};
    close.in.handle = close.out.handle = &made;
    session.ask(NDR_SAMR_CLOSE, close, memory);
  });
  auto account = find(name);
  if (!account)
    base::raise(kUserNotFound, "The account " + text + " was made but does not exist");
  return *std::move(account);
}

void AccountService::remove(const SamAccount& account) {
  const std::uint32_t gone = account.kind == Kind::kUser ? kUserNotFound : kGroupNotFound;
  repeat_write(gone, [&](AccountSession& session) {
    const Memory memory;
    OpenAccount opened(session, account);
    const auto run = [&](std::uint32_t operation, auto& call, policy_handle*& in, policy_handle*& out) {
      in = out = opened.handle();
      session.run(operation, call, memory, "The account " + account.name);
      opened.release();
    };
    samr_DeleteUser user{};
    samr_DeleteDomainGroup group{};
    samr_DeleteDomAlias alias{};
    switch (account.kind) {
      case Kind::kUser:
        return run(NDR_SAMR_DELETEUSER, user, user.in.user_handle, user.out.user_handle);
      case Kind::kGlobalGroup:
        return run(NDR_SAMR_DELETEDOMAINGROUP, group, group.in.group_handle, group.out.group_handle);
      case Kind::kLocalGroup:
        return run(NDR_SAMR_DELETEDOMALIAS, alias, alias.in.alias_handle, alias.out.alias_handle);
    }
  });
}

std::string AccountService::group_description(const SamAccount& group) {
  return repeat([&](AccountSession& session) {
    const Memory memory;
    OpenAccount opened(session, group);
    if (group.kind == Kind::kGlobalGroup) {
      samr_GroupInfo* info = nullptr;
      samr_QueryGroupInfo call{};
      call.in.group_handle = opened.handle();
      call.in.level = GROUPINFODESCRIPTION;
      call.out.info = &info;
      session.run(NDR_SAMR_QUERYGROUPINFO, call, memory, "The group " + group.name);
      return from_lsa(part_of(info).description);
    }
    samr_AliasInfo* info = nullptr;
    samr_QueryAliasInfo call{};
    call.in.alias_handle = opened.handle();
    call.in.level = ALIASINFODESCRIPTION;
    call.out.info = &info;
    session.run(NDR_SAMR_QUERYALIASINFO, call, memory, "The group " + group.name);
    return from_lsa(part_of(info).description);
  });
}

void AccountService::write_group(const SamAccount& group, const std::optional<std::string>& name,
                                 const std::optional<std::string>& description) {
  const auto write = [&](AccountSession& session, bool is_name, const std::string& text) {
    const Memory memory;
    OpenAccount opened(session, group);
    const auto run = [&](std::uint32_t operation, auto& call, auto& info, auto level) {
      (is_name ? info.name : info.description) = to_lsa(text);
      call.in.level = level;
      call.in.info = &info;
      session.run(operation, call, memory, "The group " + group.name);
    };
    if (group.kind == Kind::kGlobalGroup) {
      samr_GroupInfo info{};
      samr_SetGroupInfo call{};
      call.in.group_handle = opened.handle();
      run(NDR_SAMR_SETGROUPINFO, call, info, is_name ? GROUPINFONAME : GROUPINFODESCRIPTION);
    } else {
      samr_AliasInfo info{};
      samr_SetAliasInfo call{};
      call.in.alias_handle = opened.handle();
      run(NDR_SAMR_SETALIASINFO, call, info, is_name ? ALIASINFONAME : ALIASINFODESCRIPTION);
    }
  };
  repeat([&](AccountSession& session) {
    if (description)
      write(session, false, *description);
    if (name)
      write(session, true, *name);
  });
}

void AccountService::add_member(const SamAccount& group, const SamAccount& member) {
  const platform::Sid sid = sid_of(member);
  repeat_write(kMemberInGroup, [&](AccountSession& session) {
    samr_AddGroupMember global{};
    global.in.flags = kGroupAttributes;
    change_member(session, group, {member.rid, sid}, NDR_SAMR_ADDGROUPMEMBER, global, NDR_SAMR_ADDALIASMEMBER,
                  samr_AddAliasMember{});
  });
}

void AccountService::remove_member(const SamAccount& group, const SamAccount& member) {
  const platform::Sid sid = sid_of(member);
  repeat_write(kMemberNotInGroup, [&](AccountSession& session) {
    change_member(session, group, {member.rid, sid}, NDR_SAMR_DELETEGROUPMEMBER, samr_DeleteGroupMember{},
                  NDR_SAMR_DELETEALIASMEMBER, samr_DeleteAliasMember{});
  });
}

std::vector<SamAccount> AccountService::members(const SamAccount& group) {
  if (group.kind == Kind::kGlobalGroup) {
    return repeat([&](AccountSession& session) {
      return look_up_rids(session, group_members(session, group), group.builtin);
    });
  }
  const auto sids = repeat([&](AccountSession& session) { return alias_members(session, group); });
  std::vector<SamAccount> accounts;
  for (const platform::Sid& sid : sids) {
    if (auto account = find(sid))
      accounts.push_back(*std::move(account));
  }
  return accounts;
}

std::vector<SamAccount> AccountService::groups_of(const SamAccount& user) {
  const platform::Sid sid = sid_of(user);
  const std::uint32_t primary = read_user(user.rid).primary_group;
  return repeat([&](AccountSession& session) {
    std::vector<std::uint32_t> rids = group_rids_of(session, user);
    const auto first = std::find(rids.begin(), rids.end(), primary);
    if (first != rids.end())
      std::rotate(rids.begin(), first, first + 1);
    std::vector<SamAccount> groups = look_up_rids(session, rids, false);
    for (const bool builtin : {false, true}) {
      for (SamAccount& one : local_groups_of(session, {sid}, builtin))
        groups.push_back(std::move(one));
    }
    return groups;
  });
}

std::vector<platform::Sid> AccountService::identifiers_of(const SamAccount& user) {
  std::vector<platform::Sid> sids = {sid_of(user)};
  if (user.kind != Kind::kUser)
    return sids;
  for (const std::uint32_t rid :
       repeat([&](AccountSession& session) { return group_rids_of(session, user); }))
    sids.push_back(sid_of({.name = {}, .kind = Kind::kGlobalGroup, .builtin = false, .rid = rid}));
  const auto local = repeat([&](AccountSession& session) {
    std::vector<SamAccount> groups = local_groups_of(session, sids, false);
    for (SamAccount& one : local_groups_of(session, sids, true))
      groups.push_back(std::move(one));
    return groups;
  });
  for (const SamAccount& group : local)
    sids.push_back(sid_of(group));
  return sids;
}

}  // namespace twk::live
