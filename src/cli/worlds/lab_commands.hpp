#pragma once

#include "cli/frame/context.hpp"
#include "cli/parser/command.hpp"

/// The parts of the command `lab` that have files of their own.
namespace twk::cli {

/// lock, expire, logon: what happens to people in a rehearsal.
void add_lab_logon(Command& lab, Context& context);
/// server add.
void add_lab_server(Command& lab, Context& context);

}  // namespace twk::cli
