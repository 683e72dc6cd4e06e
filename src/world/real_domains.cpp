#include "world/real_domains.hpp"

#include <dlfcn.h>

#include <filesystem>

/// Present where the module is built into a program, as into the tests.
#pragma weak twk_real_domains

namespace twk::world {
namespace {

constexpr std::uint32_t kModuleNotFound = 126;  // ERROR_MOD_NOT_FOUND, [MS-ERREF] 2.2

using Entry = decltype(&twk_real_domains);

std::string module_path() {
  std::error_code unreadable;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", unreadable);
  return (program.parent_path().parent_path() / "lib/tarnwick/real_domains.so").string();
}

Entry load() {
  const std::string path = module_path();
  // Never unloaded: the libraries of Samba do not expect it.
  void* const module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  void* const entry = module == nullptr ? nullptr : dlsym(module, "twk_real_domains");
  if (entry == nullptr) {
    const char* const reason = dlerror();  // NOLINT(concurrency-mt-unsafe): it is per thread
    base::raise(kModuleNotFound, "The part of the program for real domains cannot be loaded: " +
                                     std::string(reason == nullptr ? path : reason));
  }
  return reinterpret_cast<Entry>(entry);
}

}  // namespace

RealDomains& real_domains() {
  static const Entry entry = twk_real_domains != nullptr ? &twk_real_domains : load();
  if (RealDomains* const domains = entry(TWK_VERSION))
    return *domains;
  base::raise(kModuleNotFound,
              "The part of the program for real domains was replaced by that of another version: start the "
              "program again");
}

}  // namespace twk::world
