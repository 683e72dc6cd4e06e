#pragma once

namespace twk::local {

/// From here on a write that is refused, by a reader or a server that went away (SIGPIPE) or a limit on the
/// size of files (SIGXFSZ), is that write's failure and not the program's end. Programs that are started
/// begin with the system's own behaviour.
void outlive_refused_writes();

}  // namespace twk::local
