#include "directory/operations.hpp"

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/names.hpp"
#include "platform/adsi.hpp"
#include "platform/ldap_text.hpp"
#include "platform/query.hpp"
#include "session/session.hpp"

namespace twk::directory {
namespace {

using platform::ObjectPtr;
using session::Session;

/// Reads the pre-2000 name from the partition of the domain.
void read_partition_name(Session& session, std::string_view configuration) {
  const auto partitions = session.platform.query.execute(
      {"LDAP://cn=Partitions," + std::string(configuration),
       "(&(objectClass=crossRef)(dnsRoot=" + platform::escape_filter_value(session.DomainName) + "))",
       {"name", "dnsRoot"},
       platform::Scope::kOneLevel},
      {});
  for (; !partitions->at_eof(); partitions->MoveNext()) {
    const std::string name = partitions->field(0).text();
    const bool skipped = name == "Enterprise Configuration" || name == "Enterprise Schema";
    if (!skipped && partitions->field(1).text() == session.DomainName)
      session.NTDomainName = name;
  }
}

std::string asked_password(Session& session, std::string_view password) {
  if (base::upper(password) != "PROMPT")
    return std::string(password);
  return session.platform.dialogs.InputBox("Enter User Password:", "Enter Password", true);
}

/// `expire` names the attribute that asks for a new password at the next logon, and its value.
bool reset_password(Session& session, const std::string& path, std::string_view password,
                    std::string_view expire, std::int32_t value, std::string* reason) {
  bool set = false;
  base::Trap trap;
  trap([&] {
    session.CurrentUser = session.platform.directory.GetObject(path);
    platform::User user(session.CurrentUser);
    user.SetPassword(password);
    user.Put(expire, value);
    user.SetInfo();
    set = true;
    user.put_IsAccountLocked(false);
    user.SetInfo();
  });
  session.CurrentUser.reset();
  if (!set && reason != nullptr)
    *reason = base::in_words(trap.number(), trap.description());
  return set;
}

/// The last four bytes of a SID, the relative identifier in little-endian order; negative with its top bit
/// set.
std::int32_t relative_id(const base::Bytes& sid) {
  if (sid.size() < 4)
    throw base::RuntimeError(base::error::kTypeMismatch, "The SID is too short");
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < 4; ++i)
    number = (number << 8U) | sid[sid.size() - 1 - i];
  return static_cast<std::int32_t>(number);
}

}  // namespace

std::int32_t Determine_Mode(Session& session, std::string_view domain) {
  session.NTDomainName = domain;
  std::int32_t mode = session::kWinNtMode;
  if (domain.find('.') != base::npos) {
    const ObjectPtr root = session.platform.directory.GetObject("LDAP://RootDSE");
    const std::string configuration = root->Get("configurationNamingContext").text();
    session.DnsServerName = root->Get("dnshostname").text();
    read_partition_name(session, configuration);
    mode =
        session.platform.directory.GetObject("LDAP://" + std::string(domain))->Get("nTMixedDomain").integer();
  }
  return mode;
}

std::string forest_path(Session& session) {
  std::string path;
  session.platform.directory.GetObject("GC:")->enumerate({}, [&path](const ObjectPtr& child) {
    path = child->ADsPath();
    return true;
  });
  return path;
}

std::vector<std::string> Load_Domain_List(Session& session) {
  base::Trap trap(session::is_debug(session));
  std::vector<std::string> found;
  trap([&] {
    const std::vector<std::string> domains{"domain"};
    session.platform.directory.GetObject("WinNT:")->enumerate(domains, [&](const ObjectPtr& domain) {
      found.push_back(domain->Name());
      return true;
    });
  });
  std::string forest;
  trap([&] { forest = forest_path(session); });
  if (forest.empty())
    return found;
  trap([&] {
    const auto rows = run_query(
        session, "<" + forest + ">;(&(objectCategory=Domain)(objectClass=Domain));distinguishedName;subTree");
    if (!rows->at_eof())
      rows->MoveFirst();
    for (; !rows->at_eof(); rows->MoveNext())
      found.push_back(domain_dns_name(rows->field(0).text()));
  });
  if (trap.number() != 0) {
    session.platform.dialogs.MsgBox("Error getting Domain Data: " + base::to_text(trap.number()),
                                    platform::Buttons::kOk, platform::Icon::kNone, "");
  }
  return found;
}

bool Reset_AD_Password(Session& session, std::string_view password, std::string_view path,
                       std::string* reason) {
  const std::string full =
      base::starts_with_fold(path, "LDAP://") ? std::string(path) : "LDAP://" + std::string(path);
  return reset_password(session, full, asked_password(session, password), "pwdLastSet", 0, reason);
}

bool Reset_NT_Password(Session& session, std::string_view password, std::string_view name,
                       std::string* reason) {
  return reset_password(session, winnt_path(session, name), asked_password(session, password),
                        "PasswordExpired", 1, reason);
}

std::int32_t Group_RID(Session& session, std::string_view group) {
  if (!session::is_active_directory(session))
    return Group_RID_by_name(session, group);
  // Only a group that a rehearsal would have made has no identifier.
  const platform::Value sid =
      platform::value_or_empty(*session.platform.directory.GetObject(group), "objectSID");
  return sid.is_empty() ? 0 : relative_id(sid.bytes());
}

std::int32_t Group_RID_by_name(Session& session, std::string_view name) {
  const std::string path = winnt_path(session, name) + ",group";
  return relative_id(session.platform.directory.GetObject(path)->Get("objectSID").bytes());
}

bool Is_Name_Used_In_Forest(Session& session, std::string_view user_principal_name) {
  bool used = false;
  base::Trap trap;
  trap([&] {
    const auto rows =
        run_query(session, "<" + forest_path(session) +
                               ">;(&(objectClass=user)(objectCategory=person)(userprincipalName=" +
                               platform::escape_filter_value(user_principal_name) +
                               "));userPrincipalName,cn,distinguishedName;subtree");
    used = !(rows->at_eof() && rows->at_bof());
  });
  return used;
}

const std::string& winnt_domain(const Session& session) {
  return session::is_active_directory(session) ? session.NTDomainName : session.DomainName;
}

std::string winnt_path(const Session& session) {
  return platform::winnt_path(winnt_domain(session));
}

std::string winnt_path(const Session& session, std::string_view name) {
  return platform::winnt_path(winnt_domain(session), name);
}

std::unique_ptr<platform::Recordset> run_query(Session& session, std::string_view text,
                                               const platform::QueryOptions& options) {
  return session.platform.query.execute(platform::parse_query_text(text), options);
}

}  // namespace twk::directory
