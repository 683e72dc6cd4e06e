#include "lab/store/large_memory.hpp"

#include <malloc.h>
#include <sys/mman.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace twk::lab {

void expect_memory(std::size_t bytes) {
  constexpr std::size_t kPage = std::size_t{2} << 20U;
  constexpr std::size_t kMost = std::size_t{7} << 28U;  // what still fits into an int
  constexpr int kLargestInHeap = 32 << 20U;             // of a block, the most that mallopt(3) takes
  constexpr int kOwnMappings = 65536;                   // of blocks larger than that, its default
  if (bytes < 4 * kPage)
    return;
  bytes = std::min(bytes, kMost);
  // One block of the heap, which goes back into it at once and is kept there.
  mallopt(M_TRIM_THRESHOLD, static_cast<int>(bytes + kPage));
  mallopt(M_MMAP_THRESHOLD, kLargestInHeap);
  mallopt(M_MMAP_MAX, 0);
  void* const block = std::malloc(bytes);
  mallopt(M_MMAP_MAX, kOwnMappings);
  if (block == nullptr)
    return;
  const std::size_t to_first_page = (kPage - reinterpret_cast<std::uintptr_t>(block) % kPage) % kPage;
  madvise(static_cast<char*>(block) + to_first_page, (bytes - to_first_page) / kPage * kPage, MADV_HUGEPAGE);
  std::free(block);
}

}  // namespace twk::lab
