#pragma once

#include <cstddef>

namespace twk::lab {

/// Prepares the heap for many small objects of so many bytes together: the kernel then gives memory by 2 MiB,
/// not by 4 KiB with an interrupt for each, which is a third of what opening a large lab costs. What stays
/// unused takes no memory. Nothing happens for few bytes, or where the kernel has no such pages (madvise(2),
/// MADV_HUGEPAGE).
void expect_memory(std::size_t bytes);

}  // namespace twk::lab
