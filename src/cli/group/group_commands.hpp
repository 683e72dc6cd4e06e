#pragma once

#include <string>
#include <string_view>

#include "cli/parser/command.hpp"
#include "groups/group_object.hpp"

namespace twk::session {
struct Session;
}

/// The parts of the command `group`, and what they share.
namespace twk::cli {

class Context;

void add_group_create(Command& group, Context& context);
void add_group_delete(Command& group, Context& context);
void add_group_copy(Command& group, Context& context);
/// The sub-commands `members`, `add-member` and `remove-member`.
void add_group_members(Command& group, Context& context);
/// tree, find-empty.
void add_group_nested(Command& group, Context& context);
/// rename, set.
void add_group_change(Command& group, Context& context);

/// `members --nested`: the users in a group and in all groups below it, with the group of each.
int list_nested_members(Context& context, const std::string& name);

/// A session whose lists contain all groups, and either all users or none, whatever the load options
/// say.
session::Session& groups_session(Context& context, bool with_users);
/// The group of that account name, common name or distinguished name. Raises `Refused`.
groups::GroupRow find_group(Context& context, const session::Session& session, const std::string& name);
/// Prints the outcome of an operation on a group; returns the exit code of its light.
int tell_group(Context& context, const std::string& group, std::string_view light,
               const std::string& message);

}  // namespace twk::cli
