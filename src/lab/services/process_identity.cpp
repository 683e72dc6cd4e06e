#include "lab/services/process_identity.hpp"

#include <algorithm>

#include "ads/sid.hpp"
#include "base/text.hpp"
#include "lab/domain/account_identity.hpp"
#include "lab/store/errors.hpp"
#include "platform/access_check.hpp"

namespace twk::lab {
namespace {

using platform::Sid;
namespace access = platform::access;
namespace privilege = platform::privilege;

constexpr std::uint32_t kAdministratorRid = 500;
constexpr std::uint32_t kDomainAdminsRid = 512;

Sid with_rid(std::string_view domain_sid, std::uint32_t rid) {
  const std::string bytes = ads::append_rid(domain_sid, rid);
  return Sid::decode(base::Bytes(bytes.begin(), bytes.end()))
      .value_or(platform::well_known::administrators());
}

}  // namespace

std::string ProcessIdentity::domain_sid() const {
  const Entry* const root = domain_.store.find(domain_.root_dn);
  return root == nullptr ? std::string() : root->value("objectSid").value_or(std::string());
}

Sid ProcessIdentity::account() {
  if (domain_.config.logon.empty())
    return with_rid(domain_sid(), kAdministratorRid);
  try {
    return look_up_account(domain_, {}, domain_.config.logon).sid;
  } catch (const base::RuntimeError& failure) {
    raise(failure.number(), "lab.conf: \"logon\": " + failure.description());
  }
}

const std::vector<Sid>& ProcessIdentity::identifiers() {
  if (!identifiers_.empty())
    return identifiers_;
  identifiers_ = logon_identifiers(domain_, account());
  if (!domain_.config.logon.empty())
    return identifiers_;
  // A directory that came from elsewhere may lack the administrator or its groups.
  for (const Sid& group :
       {with_rid(domain_sid(), kDomainAdminsRid), platform::well_known::administrators()}) {
    if (std::find(identifiers_.begin(), identifiers_.end(), group) == identifiers_.end())
      identifiers_.push_back(group);
  }
  return identifiers_;
}

bool ProcessIdentity::is_administrator() {
  const std::vector<Sid>& all = identifiers();
  return std::find(all.begin(), all.end(), platform::well_known::administrators()) != all.end();
}

Sid ProcessIdentity::default_owner() {
  return is_administrator() ? platform::well_known::administrators() : account();
}

bool ProcessIdentity::holds(std::string_view name) const {
  if (!domain_.config.privileges)
    return true;
  const std::vector<std::string> held = base::split(*domain_.config.privileges, ' ');
  return std::any_of(held.begin(), held.end(),
                     [&](const std::string& one) { return base::equals_fold(one, name); });
}

bool ProcessIdentity::is_enabled(std::string_view name) const {
  return enabled_.contains(name);
}

void ProcessIdentity::enable(std::string_view name, bool on) {
  if (on)
    enabled_.emplace(name);
  else
    enabled_.erase(std::string(name));
}

std::uint32_t ProcessIdentity::rights(const platform::SecurityDescriptor& descriptor) {
  std::uint32_t granted = platform::granted_access(descriptor, identifiers());
  if (is_enabled(privilege::kBackup))
    granted |= access::kFileGenericRead | access::kFileGenericExecute;
  if (is_enabled(privilege::kRestore)) {
    granted |= access::kFileGenericWrite | access::kDelete | access::kFileDeleteChild | access::kWriteDac |
               access::kWriteOwner;
  }
  if (is_enabled(privilege::kTakeOwnership))
    granted |= access::kWriteOwner;
  return granted;
}

}  // namespace twk::lab
