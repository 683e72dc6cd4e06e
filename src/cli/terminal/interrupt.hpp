#pragma once

namespace twk::cli {

/// From here on Ctrl-C (SIGINT) and SIGTERM do not end the program but are remembered, so that the work stops
/// after the current item. A second one ends the program at once, with 130.
void catch_interrupts();
/// True once Ctrl-C was pressed.
bool interrupted();

}  // namespace twk::cli
