#include "local/system_environment.hpp"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "local/letters/plain_letters.hpp"
#include "local/module.hpp"

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

std::string SystemEnvironment::plain_letters(std::string_view text) {
  using Entry = decltype(&twk_plain_letters);
  static const auto entry =
      reinterpret_cast<Entry>(load_module("plain_letters.so", "twk_plain_letters", "plain letters"));
  std::string plain;
  if (!entry(std::string(text), plain))
    base::raise(kModuleNotFound, "The tables of plain letters cannot be loaded");
  return plain;
}

}  // namespace twk::local
