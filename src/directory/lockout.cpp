#include "directory/lockout.hpp"

#include "directory/domain_search.hpp"
#include "platform/adsi.hpp"

namespace twk::directory {

std::int64_t steps_of_domain(const AccountDomain& domain, std::string_view attribute) {
  const platform::ObjectPtr root = domain.services.directory.GetObject(ldap_path(domain, {}));
  return number_of(platform::value_or_empty(*root, attribute));
}

std::int64_t lockout_duration(const AccountDomain& domain) {
  return steps_of_domain(domain, "lockoutDuration");
}

bool is_lock_over(std::int64_t locked, std::int64_t duration, std::int64_t now) {
  return duration < 0 && duration != kForever && locked - duration <= now;
}

}  // namespace twk::directory
