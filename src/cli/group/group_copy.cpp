#include <algorithm>

#include "cli/frame/context.hpp"
#include "cli/group/group_commands.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/interrupt.hpp"
#include "cli/terminal/progress.hpp"
#include "groups/copy_group.hpp"
#include "session/group_windows.hpp"

namespace twk::cli {
namespace {

/// The worst light among the rows; at least YELLOW for a stopped run.
std::string_view worst_light(const session::frmCopy_Group& window) {
  int worst = window.Stopped ? kExitYellow : kExitGreen;
  for (std::size_t i = 0; i < window.ListView1.size(); ++i)
    worst = std::max(worst, exit_code_of_light(window.ListView1.at(i).icon));
  if (worst == kExitGreen)
    return session::kGreen;
  return worst == kExitYellow ? session::kYellow : session::kRed;
}

int copy_group(Context& context, const std::string& from, const std::string& to) {
  session::Session& session = groups_session(context, false);
  session::frmCopy_Group& window = session.copy_group;
  groups::frmCopy_Group_Form_Load(session);
  choose_group(context, window.ImageCombo1, from);
  const std::string destination = choose_group(context, window.ImageCombo2, to).text;
  Progress progress;
  context.dialogs().before_text([&] { progress.clear(); });
  context.dialogs().on_events([&] {
    window.Stopped = interrupted();
    progress.show(std::to_string(window.ProgressBar1.value.get()) + " %");
  });
  const auto rows = window.ListView1.watch([&](const controls::ListChange& change) {
    if (change.kind != controls::ListChange::Kind::kInserted)
      return;
    const controls::ListRow& row = window.ListView1.at(change.place);
    progress.clear();
    context.output().result({{"path", row.key}, {"light", row.icon}, {"message", row.text}},
                            context.output().light(row.icon) + "  " + row.text);
  });
  const bool copied = groups::frmCopy_Group_btnCopy_Group_Click(session);
  context.dialogs().before_text({});
  context.dialogs().on_events({});
  progress.clear();
  if (window.Label1.caption.get().empty()) {
    complain(destination + ": nothing was done.");
    return kExitYellow;
  }
  return tell_group(context, destination, copied ? worst_light(window) : session::kRed,
                    window.Label1.caption.get());
}

}  // namespace

void add_group_copy(Command& group, Context& context) {
  auto from = std::make_shared<std::string>();
  auto to = std::make_shared<std::string>();
  auto* command = group.add_subcommand("copy", "Copy the users of one group into another");
  command->add_option("FROM", *from, "The group to copy from")->required();
  command->add_option("TO", *to, "The group to copy to")->required();
  command->callback(
      [=, &context] { context.set_action([=, &context] { return copy_group(context, *from, *to); }); });
}

}  // namespace twk::cli
