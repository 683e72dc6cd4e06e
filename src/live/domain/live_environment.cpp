#include "live/domain/live_environment.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"

namespace twk::live {
namespace {

/// "jo" of "TWK\jo" and of "jo@TWK.TEST".
std::string bare_name(std::string_view user) {
  if (const std::size_t slash = user.find('\\'); slash != base::npos)
    user.remove_prefix(slash + 1);
  return std::string(user.substr(0, user.rfind('@')));
}

}  // namespace

std::string LiveEnvironment::user_name() {
  Credentials& credentials = domain_.credentials();
  return bare_name(credentials.has_user() ? credentials.settings().user : credentials.ticket().principal());
}

std::string LiveEnvironment::variable(std::string_view name) {
  base::Trap trap;
  std::string value;
  if (name == "USERNAME")
    trap([&] { value = user_name(); });
  else if (name == "USERDOMAIN")
    trap([&] { value = domain_.has_directory() ? domain_.netbios() : domain_.settings().domain; });
  else if (name == "LOGONSERVER")
    trap([&] { value = "\\\\" + domain_.controller(); });
  return value.empty() && (name == "USERNAME" || trap.number() == 0) ? system_.variable(name) : value;
}

}  // namespace twk::live
