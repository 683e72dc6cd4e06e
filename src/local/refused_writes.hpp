#pragma once

namespace twk::local {

/// From here on a write that is refused, because a reader or server went away (SIGPIPE) or files are limited
/// in size (SIGXFSZ), fails instead of ending the program. Started programs get the system's own behaviour.
void outlive_refused_writes();

}  // namespace twk::local
