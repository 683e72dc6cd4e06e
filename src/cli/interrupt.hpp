#pragma once

namespace twk::cli {

/// From here on Ctrl-C (SIGINT) and SIGTERM do not end the program but are remembered, so that the work stops
/// after the item in hand. A second one ends the program at once, with 130. A write that
/// is refused, by a reader that went away (SIGPIPE) or a limit on the size of files (SIGXFSZ), is that
/// write's failure and not the program's end.
void catch_interrupts();
/// True once Ctrl-C was pressed.
bool interrupted();

}  // namespace twk::cli
