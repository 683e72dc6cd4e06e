#include "windows/multi_user/groups_tab.hpp"

#include <map>
#include <optional>

#include "base/text.hpp"
#include "batch/change_groups.hpp"
#include "batch/move_to_unit.hpp"
#include "directory/units.hpp"
#include "session/loaded_domain.hpp"
#include "windows/account/unsaved.hpp"
#include "windows/multi_user/run_preview.hpp"
#include "windows/multi_user/run_watch.hpp"
#include "windows/multi_user/run_window.hpp"
#include "windows/multi_user/selection_aside.hpp"
#include "windows/tree/unit_chooser.hpp"

namespace twk::windows {
namespace {

using Run = std::function<bool(session::RunView& view, const batch::RunHooks& hooks)>;

std::string chosen_group(const controls::ComboBox& box) {
  return std::string(base::trim(box.text.get()));
}

/// Adds the group that is chosen, if one is. False, which `Label3` explains, for a name that is not one
/// group's.
bool take_group(Desktop& session, const controls::ComboBox& box, std::vector<groups::GroupRow>& order) {
  const std::string name = chosen_group(box);
  if (name.empty())
    return true;
  const auto found = session.domain.all_groups.find_text(name);
  if (found.size() != 1) {
    session.multi_user.Label3.caption =
        found.empty() ? "The list of groups has none of the name \"" + name + "\"."
                      : "Several groups have the name \"" + name + "\": change them in the groups window.";
    return false;
  }
  order.push_back(groups::group_of(*found.front()));
  return true;
}

/// None, which `Label3` explains, when it would change nothing.
std::optional<batch::GroupsOrder> groups_order(Desktop& session) {
  const MultiUser& window = session.multi_user;
  batch::GroupsOrder order;
  if (!take_group(session, window.joined_group, order.add) ||
      !take_group(session, window.left_group, order.remove))
    return std::nullopt;
  if (order.add.empty() && order.remove.empty()) {
    session.multi_user.Label3.caption = std::string("Choose a group first.");
    return std::nullopt;
  }
  return order;
}

std::string in_words(const batch::GroupsOrder& order) {
  std::string text;
  if (!order.add.empty())
    text = "Add these accounts to " + order.add.front().name + ".";
  if (!order.remove.empty())
    text += (text.empty() ? "Take these accounts out of " : " Take them out of ") +
            order.remove.front().name + ".";
  return text;
}

void run_with_watch(Desktop& session, controls::Button& start, void (*again)(Desktop&), const char* logged,
                    const Run& run) {
  MultiUser& window = session.multi_user;
  const RunningWindow running(
      session, start,
      {&window.Command1.enabled, &window.Command2.enabled, &window.Command7.enabled,
       &window.DELIMPORT.enabled, &window.joined_group.enabled, &window.left_group.enabled});
  RunWatch watch(session, again);
  const batch::RunHooks hooks = watch.hooks();
  run_over_selection(session, start, "Completed", [&](session::RunView& view) { return run(view, hooks); });
  watch.log(logged);
}

/// True when the press of a start button was meant to stop its run, or nothing can be started.
bool stops_or_waits(Desktop& session, controls::Button& start, std::string_view caption) {
  if (start.caption == std::string(kCancelCaption)) {
    stop_over_selection(session, start, caption, "Canceled by user.");
    return true;
  }
  return is_running(session.multi_user) || lacks_selection(session);
}

}  // namespace

void fill_group_choices(Desktop& session) {
  std::map<std::string, std::string> sorted;  // by their upper case
  for (const controls::ListRow* const group : rows_of(session.domain.all_groups))
    sorted.emplace(base::upper(group->text), group->text);
  std::vector<std::string> names = {""};
  for (const auto& [folded, name] : sorted)
    names.push_back(name);
  session.multi_user.joined_group.set_items(names);
  session.multi_user.left_group.set_items(std::move(names));
}

void change_groups_Click(Desktop& session) {
  controls::Button& start = session.multi_user.change_groups;
  if (stops_or_waits(session, start, "Change &Groups"))
    return;
  const auto order = groups_order(session);
  if (order && is_run_wanted(session, {"Change Groups", in_words(*order), "&Change"}))
    run_with_watch(session, start, change_groups_Click, "Groups changed",
                   [&](session::RunView& view, const batch::RunHooks& hooks) {
                     return batch::change_groups(session, *order, view, hooks);
                   });
}

void move_to_unit_Click(Desktop& session) {
  controls::Button& start = session.multi_user.move_to_unit;
  if (stops_or_waits(session, start, "Move to &OU\u2026") || !may_leave_details(session))
    return;
  UnitQuestion question{"Move to OU", "Move the selected users to:"};
  question.with_containers = true;
  const auto unit = choose_unit(session, question);
  if (!unit)
    return;
  const std::string place = directory::unit_in_words(*unit);
  if (!is_run_wanted(session, {"Move to OU", "Move these users to " + place + ".", "&Move"}))
    return;
  const std::string logged = "Moved to " + place;
  run_with_watch(session, start, move_to_unit_Click, logged.c_str(),
                 [&](session::RunView& view, const batch::RunHooks& hooks) {
                   batch::RunHooks followed = hooks;
                   followed.done = [&](const batch::UserOutcome& outcome) {
                     hooks.done(outcome);
                     if (outcome.done)
                       follow_move(session, outcome.path, *unit);
                   };
                   return batch::move_to_unit(session, *unit, view, followed);
                 });
}

}  // namespace twk::windows
