#include "local/module.hpp"

#include <dlfcn.h>

#include <filesystem>

#include "base/errors.hpp"

namespace twk::local {

void* load_module(const std::string& file, const char* entry, const std::string& what) {
  std::error_code unreadable;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", unreadable);
  const std::string path = (program.parent_path().parent_path() / "lib/tarnwick" / file).string();
  // Never unloaded: the libraries of Samba do not expect it.
  void* const module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  void* const found = module == nullptr ? nullptr : dlsym(module, entry);
  if (found != nullptr)
    return found;
  const char* const reason = dlerror();  // NOLINT(concurrency-mt-unsafe): it is per thread
  base::raise(kModuleNotFound, "The part of the program for " + what +
                                   " cannot be loaded: " + std::string(reason == nullptr ? path : reason));
}

}  // namespace twk::local
