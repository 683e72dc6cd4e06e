#pragma once

#include <string>

namespace twk::base {

/// Overwrites a secret, in a way that no compiler optimizes out, and empties it.
inline void wipe(std::string& secret) {
  volatile char* const bytes = secret.data();
  for (std::size_t i = 0; i < secret.size(); ++i)
    bytes[i] = '\0';
  secret.clear();
}

}  // namespace twk::base
