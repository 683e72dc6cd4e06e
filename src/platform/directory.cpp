#include "platform/directory.hpp"

#include <utility>

#include "base/errors.hpp"

namespace twk::platform {

void WriteBatch::commit() {
  if (DirectoryService* const directory = std::exchange(directory_, nullptr))
    directory->end_batch();
}

WriteBatch::~WriteBatch() {
  base::Trap trap;
  trap([this] { commit(); });
}

}  // namespace twk::platform
