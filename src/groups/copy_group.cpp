#include "groups/copy_group.hpp"

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "controls/drawing_off.hpp"
#include "directory/operations.hpp"
#include "groups/group_object.hpp"
#include "session/group_windows.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"

namespace twk::groups {
namespace {

using controls::ListRow;
using platform::ObjectPtr;
using session::frmCopy_Group;
using session::Session;

/// The outcome for one user.
struct Outcome {
  std::string_view words;
  std::string_view light;
};

constexpr Outcome kAdded = {" Added user.", session::kGreen};
constexpr Outcome kIsMember = {" User already a member.", session::kYellow};
constexpr Outcome kRefused = {" Error adding user.", session::kRed};

/// The words for a runtime error number, 0 for none. A WinNT group reports an existing member with a
/// different number than a group of Active Directory.
Outcome outcome_of(const Session& session, std::uint32_t number) {
  if (number == 0)
    return kAdded;
  const std::uint32_t is_member = session::is_active_directory(session) ? platform::ads_error::kObjectExists
                                                                        : platform::ads_error::kMemberInGroup;
  return number == is_member ? kIsMember : kRefused;
}

/// Disables, for a scope, what must not be pressed during a copy.
class Run {
 public:
  explicit Run(frmCopy_Group& window) : window_(window) {
    window_.Running = true;
    window_.Stopped = false;
    window_.btnCopy_Group.enabled = false;
    window_.btnCancel.caption = "&Stop";
  }
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;
  ~Run() {
    window_.Running = false;
    window_.btnCopy_Group.enabled = true;
    window_.btnCancel.caption = "C&lose";
  }

 private:
  frmCopy_Group& window_;
};

std::vector<ObjectPtr> users_of(platform::DirectoryObject& group) {
  std::vector<ObjectPtr> users;
  base::Trap trap;
  for (const ObjectPtr& member : group.Members()) {
    trap([&] {
      if (is_user(*member))
        users.push_back(member);
    });
  }
  return users;
}

Outcome copy_user(Session& session, platform::DirectoryObject& destination, const ObjectPtr& user) {
  base::Trap trap;
  trap([&] {
    destination.Add(session::is_active_directory(session) ? user->ADsPath()
                                                          : directory::winnt_path(session, user->Name()));
  });
  const Outcome outcome = outcome_of(session, trap.number());
  session.copy_group.ListView1.add(user->ADsPath(), user->Name() + std::string(outcome.words),
                                   std::string(outcome.light));
  return outcome;
}

std::string counted(std::size_t number, const char* what) {
  return base::to_text(static_cast<std::int64_t>(number)) + what;
}

void copy_users(Session& session, const ListRow& from, const ListRow& to) {
  frmCopy_Group& window = session.copy_group;
  const ObjectPtr source = bind_group(session, from);
  const ObjectPtr destination = bind_group(session, to);
  const std::vector<ObjectPtr> users = users_of(*source);
  std::size_t done = 0;
  std::size_t added = 0;
  std::size_t refused = 0;
  platform::WriteBatch batch(session.platform.directory);
  for (const ObjectPtr& user : users) {
    const std::string_view light = copy_user(session, *destination, user).light;
    added += light == kAdded.light ? 1 : 0;
    refused += light == kRefused.light ? 1 : 0;
    ++done;
    window.ProgressBar1.value = static_cast<int>(done * 100 / users.size());
    session.platform.dialogs.DoEvents();
    if (window.Stopped)
      break;
  }
  batch.commit();
  window.Label1.caption = (window.Stopped ? "Stopped. " : "") + counted(done, " of ") +
                          counted(users.size(), " users: ") + counted(added, " added, ") +
                          counted(done - added - refused, " already members, ") +
                          counted(refused, " refused.");
}

}  // namespace

void frmCopy_Group_Form_Load(Session& session) {
  frmCopy_Group& window = session.copy_group;
  window.Domain_Source.text = session.DomainName;
  window.Domain_Destination.text = session.DomainName;
  for (controls::TextBox* const domain : {&window.Domain_Source, &window.Domain_Destination})
    domain->locked = true;
  const controls::ListView& groups = session.domain.all_groups;
  for (controls::ListView* const combo : {&window.ImageCombo1, &window.ImageCombo2}) {
    const controls::DrawingOff off(*combo);
    combo->clear();
    for (std::size_t i = 0; i < groups.size(); ++i)
      combo->add(groups.at(i).key, groups.at(i).text, groups.at(i).icon);
  }
  if (const ListRow* const chosen = session.domain.all_groups.selected())
    window.ImageCombo1.select(&window.ImageCombo1.at(groups.place_of(*chosen)));
  window.ListView1.clear();
  window.ProgressBar1.value = 0;
  window.Label1.caption = std::string();
  window.btnCancel.caption = "C&lose";
  frmCopy_Group_ImageCombo_Click(session);
}

void frmCopy_Group_ImageCombo_Click(Session& session) {
  frmCopy_Group& window = session.copy_group;
  window.btnCopy_Group.enabled =
      window.ImageCombo1.selected() != nullptr && window.ImageCombo2.selected() != nullptr;
}

bool frmCopy_Group_btnCopy_Group_Click(Session& session) {
  frmCopy_Group& window = session.copy_group;
  const ListRow* const from = window.ImageCombo1.selected();
  const ListRow* const to = window.ImageCombo2.selected();
  if (from == nullptr || to == nullptr || window.Running)
    return false;
  if (session.platform.dialogs.MsgBox(
          "Are you sure you want to copy all users\r\nfrom: " + from->text + "\r\nto:     " + to->text,
          platform::Buttons::kYesNo, platform::Icon::kQuestion, "Copy Group ?") != platform::Answer::kYes)
    return false;
  window.ListView1.clear();
  window.ProgressBar1.value = 0;
  window.Label1.caption = std::string();
  const Run run(window);
  base::Trap trap;
  trap([&] { copy_users(session, *from, *to); });
  if (trap.number() != 0)
    window.Label1.caption = "The copy ended: " + base::in_words(trap.number(), trap.description());
  return trap.number() == 0;
}

bool frmCopy_Group_btnCancel_Click(Session& session) {
  if (!session.copy_group.Running)
    return true;
  session.copy_group.Stopped = true;
  return false;
}

}  // namespace twk::groups
