#pragma once

/// The tab "Groups and OU" of the multi-user window: the selection joins a group and leaves another, or moves
/// into another unit. Each run shows its preview first and has a row on the log tab that takes it back.
namespace twk::windows {

struct Desktop;

/// Offers the domain's groups.
void fill_group_choices(Desktop& session);

/// Starts its run; while that is going on stops it after the current user.
void change_groups_Click(Desktop& session);
void move_to_unit_Click(Desktop& session);

}  // namespace twk::windows
