#pragma once

#include <CLI/CLI.hpp>
#include <cstddef>

namespace twk::cli {

/// Refuses a text that a record's field would cut.
CLI::Validator at_most(std::size_t characters);

/// Refuses what is not 42 hexadecimal digits, the 168 hours of a week as bits.
CLI::Validator logon_hours();

}  // namespace twk::cli
