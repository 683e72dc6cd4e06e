#pragma once

namespace twk::local {

/// From here on the memory of this process, which holds passwords, goes into no core dump, and other
/// processes of the same person can neither attach to it nor read its environment.
void keep_memory_private();

}  // namespace twk::local
