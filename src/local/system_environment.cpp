#include "local/system_environment.hpp"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

#include "base/text.hpp"

namespace twk::local {
namespace {

std::string own_variable(const std::string& name) {
  const char* const value = std::getenv(name.c_str());
  return value == nullptr ? std::string() : base::to_valid_utf8(value);
}

std::string account_name() {
  std::vector<char> buffer(16384);
  passwd entry{};
  passwd* found = nullptr;
  if (getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr)
    return {};
  return base::to_valid_utf8(found->pw_name);
}

}  // namespace

std::string SystemEnvironment::variable(std::string_view name) {
  if (name != "USERNAME")
    return own_variable(std::string(name));
  for (const char* const candidate : {"USERNAME", "USER", "LOGNAME"}) {
    if (std::string value = own_variable(candidate); !value.empty())
      return value;
  }
  if (!account_)
    account_ = account_name();
  return *account_;
}

}  // namespace twk::local
