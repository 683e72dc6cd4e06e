#pragma once

#include <cstddef>

#include "cli/parser/command.hpp"

namespace twk::cli {

/// Refuses a text that a record's field would cut.
Check at_most(std::size_t characters);

/// Refuses anything but 42 hexadecimal digits, the 168 hours of a week as bits.
Check logon_hours();

}  // namespace twk::cli
