#include "local/private_memory.hpp"

#include <sys/prctl.h>
#include <sys/resource.h>

#include "base/errors.hpp"

namespace twk::local {

void keep_memory_private() {
#ifndef __SANITIZE_ADDRESS__  // which searches for leaks from a separate process
  const rlimit none{0, 0};
  if (setrlimit(RLIMIT_CORE, &none) != 0 || prctl(PR_SET_DUMPABLE, 0, 0, 0, 0) != 0)
    base::raise(base::error::kPermissionDenied,
                "The system does not keep the memory of this program private");
#endif
}

}  // namespace twk::local
