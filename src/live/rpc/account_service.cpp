#include "live/rpc/account_service.hpp"

#include <algorithm>
#include <cstring>

#include "base/random.hpp"
#include "base/text.hpp"
#include "live/rpc/account_session.hpp"
#include "live/rpc/password_buffer.hpp"
#include "platform/little_endian.hpp"
#include "platform/logon_hours.hpp"

namespace twk::live {
namespace {

constexpr std::uint16_t kHoursPerWeek = 168;

constexpr std::uint32_t kInvalidInfoClass = 0xC0000003;  // STATUS_INVALID_INFO_CLASS

SamAccount user_account(std::uint32_t rid) {
  return {.name = base::to_text(static_cast<std::int64_t>(rid)),
          .kind = SamAccount::Kind::kUser,
          .builtin = false,
          .rid = rid};
}

base::Bytes to_bytes(const lsa_BinaryString& text) {
  base::Bytes bytes;
  for (std::size_t i = 0; text.array != nullptr && i < text.length / 2U; ++i)
    platform::append_u16(bytes, text.array[i]);
  return bytes;
}

base::Bytes to_bytes(const samr_LogonHours& hours) {
  if (hours.bits == nullptr || hours.units_per_week != kHoursPerWeek)
    return {};
  return base::Bytes(hours.bits, hours.bits + platform::kLogonHoursSize);
}

SamUser to_user(const samr_UserInfo21& info) {
  SamUser user;
  user.name = from_lsa(info.account_name);
  user.full_name = from_lsa(info.full_name);
  user.description = from_lsa(info.description);
  user.home_directory = from_lsa(info.home_directory);
  user.home_drive = from_lsa(info.home_drive);
  user.logon_script = from_lsa(info.logon_script);
  user.profile_path = from_lsa(info.profile_path);
  user.workstations = from_lsa(info.workstations);
  user.parameters = to_bytes(info.parameters);
  user.logon_hours = to_bytes(info.logon_hours);
  user.flags = info.acct_flags;
  user.primary_group = info.primary_gid;
  user.bad_passwords = info.bad_password_count;
  user.password_expired = info.password_expired != 0;
  user.last_logon = info.last_logon;
  user.last_logoff = info.last_logoff;
  user.expires = info.acct_expiry;
  return user;
}

/// A change in the service's form: the fields, and which of them count. `change` must outlive it.
class ChangeInfo {
 public:
  explicit ChangeInfo(const SamUserChange& change) {
    samr_UserInfo21& fields = info_.info21;
    const auto text = [&](const std::optional<std::string>& value, lsa_String& field, std::uint32_t bit) {
      if (!value)
        return;
      field = to_lsa(*value);
      fields.fields_present |= bit;
    };
    text(change.name, fields.account_name, SAMR_FIELD_ACCOUNT_NAME);
    text(change.full_name, fields.full_name, SAMR_FIELD_FULL_NAME);
    text(change.description, fields.description, SAMR_FIELD_DESCRIPTION);
    text(change.home_directory, fields.home_directory, SAMR_FIELD_HOME_DIRECTORY);
    text(change.home_drive, fields.home_drive, SAMR_FIELD_HOME_DRIVE);
    text(change.logon_script, fields.logon_script, SAMR_FIELD_LOGON_SCRIPT);
    text(change.profile_path, fields.profile_path, SAMR_FIELD_PROFILE_PATH);
    text(change.workstations, fields.workstations, SAMR_FIELD_WORKSTATIONS);
    if (change.parameters) {
      for (std::size_t i = 0; i + 1 < change.parameters->size(); i += 2)
        units_.push_back(platform::read_u16(*change.parameters, i));
      fields.parameters.array = units_.data();
      fields.parameters.length = fields.parameters.size = static_cast<std::uint16_t>(2 * units_.size());
      fields.fields_present |= SAMR_FIELD_PARAMETERS;
    }
    if (change.logon_hours) {
      hours_ = *change.logon_hours;
      hours_.resize(platform::kLogonHoursSize);
      fields.logon_hours.bits = hours_.data();
      fields.logon_hours.units_per_week = kHoursPerWeek;
      fields.fields_present |= SAMR_FIELD_LOGON_HOURS;
    }
    if (change.flags) {
      fields.acct_flags = *change.flags;
      fields.fields_present |= SAMR_FIELD_ACCT_FLAGS;
    }
    if (change.primary_group) {
      fields.primary_gid = *change.primary_group;
      fields.fields_present |= SAMR_FIELD_PRIMARY_GID;
    }
    if (change.password_expired) {
      fields.password_expired = *change.password_expired ? 1 : 0;
      fields.fields_present |= SAMR_FIELD_EXPIRED_FLAG;
    }
    if (change.expires) {
      fields.acct_expiry = *change.expires;
      fields.fields_present |= SAMR_FIELD_ACCT_EXPIRY;
    }
  }

  [[nodiscard]] samr_UserInfo* get() { return &info_; }
  [[nodiscard]] bool empty() const { return info_.info21.fields_present == 0; }

 private:
  samr_UserInfo info_{};
  std::vector<std::uint16_t> units_;
  base::Bytes hours_;
};

/// The access list of an opened user.
security_acl* read_list(AccountSession& session, OpenAccount& user, const Memory& memory) {
  sec_desc_buf* buffer = nullptr;
  samr_QuerySecurity query{};
  query.in.handle = user.handle();
  query.in.sec_info = SECINFO_DACL;
  query.out.sdbuf = &buffer;
  session.run(NDR_SAMR_QUERYSECURITY, query, memory, "The access list of a user");
  return buffer == nullptr || buffer->sd == nullptr ? nullptr : buffer->sd->dacl;
}

/// The library's enumeration cannot hold every value that a server may send, so the number is copied out.
bool allows(const security_ace& ace) {
  std::uint32_t type = 0;
  std::memcpy(&type, &ace.type, sizeof type);
  return type == SEC_ACE_TYPE_ACCESS_ALLOWED;
}

/// The entries that decide whether the person may change the password: Everyone's and the user's own.
bool speaks_of_person(const security_ace& ace, const platform::Sid& user) {
  const platform::Sid sid = from_dom_sid(ace.trustee);
  return sid == platform::well_known::everyone() || sid == user;
}

}  // namespace

AccountService::AccountService(std::shared_ptr<Credentials> credentials, std::string_view server)
    : pipe_(std::move(credentials), server, RpcInterface::kAccounts) {}

AccountService::AccountService(RpcPipe pipe) : pipe_(std::move(pipe)) {}

AccountService::~AccountService() = default;

AccountSession& AccountService::session() {
  if (session_ == nullptr)
    session_ = std::make_unique<AccountSession>(pipe_);
  return *session_;
}

std::string AccountService::domain_name() {
  return repeat([](AccountSession& session) { return session.domain(false).name; });
}

platform::Sid AccountService::domain_sid() {
  return repeat([](AccountSession& session) { return from_dom_sid(session.domain(false).sid); });
}

platform::Sid AccountService::sid_of(const SamAccount& account) {
  return repeat([&](AccountSession& session) {
    dom_sid sid = session.domain(account.builtin).sid;
    sid.sub_auths[sid.num_auths++] = account.rid;
    return from_dom_sid(sid);
  });
}

std::optional<SamAccount> AccountService::find(std::string_view name) {
  if (name.empty() || !base::is_valid_utf8(name) || base::find_control_character(name))
    return std::nullopt;
  return repeat([&](AccountSession& session) {
    auto found = look_up_name(session, name, false);
    return found ? found : look_up_name(session, name, true);
  });
}

std::optional<SamAccount> AccountService::find(const platform::Sid& sid) {
  return repeat([&](AccountSession& session) -> std::optional<SamAccount> {
    dom_sid domain = to_dom_sid(sid);
    if (domain.num_auths < 1)
      return std::nullopt;
    const std::uint32_t rid = domain.sub_auths[--domain.num_auths];
    domain.sub_auths[domain.num_auths] = 0;
    for (const bool builtin : {false, true}) {
      if (from_dom_sid(domain) != from_dom_sid(session.domain(builtin).sid))
        continue;
      const auto found = look_up_rids(session, {rid}, builtin);
      return found.empty() ? std::nullopt : std::optional(found.front());
    }
    return std::nullopt;
  });
}

SamUser AccountService::read_user(std::uint32_t rid) {
  return repeat([&](AccountSession& session) {
    const Memory memory;
    OpenAccount user(session, user_account(rid));
    samr_UserInfo* info = nullptr;
    samr_QueryUserInfo query{};
    query.in.user_handle = user.handle();
    query.in.level = UserAllInformation;
    query.out.info = &info;
    session.run(NDR_SAMR_QUERYUSERINFO, query, memory, "The user " + base::to_text(std::int64_t{rid}));
    return to_user(part_of(info).info21);
  });
}

void AccountService::write_user(std::uint32_t rid, const SamUserChange& change) {
  ChangeInfo info(change);
  if (info.empty())
    return;
  repeat([&](AccountSession& session) {
    const Memory memory;
    OpenAccount user(session, user_account(rid));
    samr_SetUserInfo set{};
    set.in.user_handle = user.handle();
    set.in.level = UserAllInformation;
    set.in.info = info.get();
    session.run(NDR_SAMR_SETUSERINFO, set, memory, "The user " + base::to_text(std::int64_t{rid}));
  });
}

void AccountService::set_password(std::uint32_t rid, std::string_view password) {
  repeat([&](AccountSession& session) {
    const Memory memory;
    OpenAccount user(session, user_account(rid));
    const base::Bytes key = pipe_.session_key();
    const base::Bytes random = base::random_bytes(kPasswordBufferSize);
    const base::Bytes salt = base::random_bytes(kPasswordSaltSize);
    const base::Bytes buffer = password_buffer(password, random);

    base::Bytes salted = salt;
    salted.insert(salted.end(), key.begin(), key.end());
    base::Bytes encrypted = rc4(md5(salted), buffer);
    encrypted.insert(encrypted.end(), salt.begin(), salt.end());
    samr_UserInfo info{};
    std::copy(encrypted.begin(), encrypted.end(), std::begin(info.info26.password.data));
    samr_SetUserInfo set{};
    set.in.user_handle = user.handle();
    set.in.level = UserInternal5InformationNew;
    set.in.info = &info;
    std::uint32_t status = session.ask(NDR_SAMR_SETUSERINFO, set, memory);
    if (status == kInvalidInfoClass) {
      // First-generation servers know only the form without a salt.
      encrypted = rc4(key, buffer);
      info = {};
      std::copy(encrypted.begin(), encrypted.end(), std::begin(info.info24.password.data));
      set.in.level = UserInternal5Information;
      status = session.ask(NDR_SAMR_SETUSERINFO, set, memory);
    }
    AccountSession::check(status, "The password of a user");
  });
}

bool AccountService::cannot_change_password(std::uint32_t rid) {
  const platform::Sid own = sid_of(user_account(rid));
  return repeat([&](AccountSession& session) {
    const Memory memory;
    OpenAccount user(session, user_account(rid));
    const security_acl* const list = read_list(session, user, memory);
    for (std::uint32_t i = 0; list != nullptr && i < list->num_aces; ++i) {
      const security_ace& ace = list->aces[i];
      if (allows(ace) && speaks_of_person(ace, own) &&
          (ace.access_mask & SAMR_USER_ACCESS_CHANGE_PASSWORD) != 0)
        return false;
    }
    return list != nullptr;
  });
}

void AccountService::set_cannot_change_password(std::uint32_t rid, bool cannot) {
  const platform::Sid own = sid_of(user_account(rid));
  repeat([&](AccountSession& session) {
    const Memory memory;
    OpenAccount user(session, user_account(rid));
    security_acl* const list = read_list(session, user, memory);
    for (std::uint32_t i = 0; list != nullptr && i < list->num_aces; ++i) {
      security_ace& ace = list->aces[i];
      if (!allows(ace) || !speaks_of_person(ace, own))
        continue;
      ace.access_mask = cannot ? ace.access_mask & ~std::uint32_t{SAMR_USER_ACCESS_CHANGE_PASSWORD}
                               : ace.access_mask | SAMR_USER_ACCESS_CHANGE_PASSWORD;
    }
    security_descriptor descriptor{};
    descriptor.revision = SECURITY_DESCRIPTOR_REVISION_1;
    descriptor.type = SEC_DESC_DACL_PRESENT | SEC_DESC_SELF_RELATIVE;
    descriptor.dacl = list;
    sec_desc_buf buffer{.sd_size = 0, .sd = &descriptor};
    samr_SetSecurity set{};
    set.in.handle = user.handle();
    set.in.sec_info = SECINFO_DACL;
    set.in.sdbuf = &buffer;
    session.run(NDR_SAMR_SETSECURITY, set, memory, "The access list of a user");
  });
}

}  // namespace twk::live
