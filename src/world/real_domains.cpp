#include "world/real_domains.hpp"

#include "local/module.hpp"

/// Present where the module is built into a program, as into the tests.
#pragma weak twk_real_domains

namespace twk::world {
namespace {

using local::kModuleNotFound;

using Entry = decltype(&twk_real_domains);

Entry load() {
  return reinterpret_cast<Entry>(local::load_module("real_domains.so", "twk_real_domains", "real domains"));
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
