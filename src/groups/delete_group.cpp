#include "groups/delete_group.hpp"

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "session/activity_log.hpp"
#include "session/session.hpp"

namespace twk::groups {

using session::Session;

bool confirm_deletion(Session& session, const std::string& name) {
  return session.platform.dialogs.MsgBox("Sure to Delete Global Group " + name, platform::Buttons::kOkCancel,
                                         platform::Icon::kQuestion, "Delete Group") == platform::Answer::kOk;
}

GroupOutcome delete_group(Session& session, const GroupRow& group) {
  base::Trap trap;
  trap([&] {
    const platform::ObjectPtr bound = bind_group(session, group);
    session.platform.directory.GetObject(bound->Parent())->Delete("group", bound->Name());
  });
  if (trap.number() != 0) {
    session.platform.dialogs.MsgBox("Error Deleting Group", platform::Buttons::kOk,
                                    platform::Icon::kExclamation, "Delete Group");
    return {session::kRed,
            "Error Deleting Group " + group.name + ": " + base::in_words(trap.number(), trap.description())};
  }
  give_members_back(session);
  remove_group_rows(session, group.key);
  return {session::kGreen, "Deleted group " + group.name};
}

}  // namespace twk::groups
