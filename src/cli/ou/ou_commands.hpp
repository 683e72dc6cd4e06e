#pragma once

#include <string>

#include "cli/frame/context.hpp"
#include "cli/parser/command.hpp"

/// The parts of the command `ou`, and what they share.
namespace twk::cli {

/// list, show.
void add_ou_list(Command& ou, Context& context);
/// rename, move.
void add_ou_change(Command& ou, Context& context);
void add_ou_delete(Command& ou, Context& context);

/// The distinguished name of an organizational unit as the directory spells it. Raises `Refused` when there
/// is none, or when it is a container or the domain.
std::string locate_own_ou(Context& context, const std::string& dn);

}  // namespace twk::cli
