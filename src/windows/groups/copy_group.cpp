#include "windows/groups/copy_group.hpp"

#include "controls/drawing_off.hpp"
#include "groups/copy_group.hpp"
#include "session/loaded_domain.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/group_windows.hpp"

namespace twk::windows {
namespace {

using controls::ListRow;

void clear_results(frmCopy_Group& window) {
  window.ListView1.clear();
  window.ProgressBar1.value = 0;
  window.Label1.caption = std::string();
}

/// The window during a copy: disables what must not be pressed, and shows the result for each user.
class Run final : public groups::CopyView {
 public:
  explicit Run(Desktop& session) : session_(session), window_(session.copy_group) {
    window_.Running = true;
    window_.Stopped = false;
    window_.btnCopy_Group.enabled = false;
    window_.btnCancel.caption = "&Stop";
  }
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;
  ~Run() override {
    window_.Running = false;
    window_.btnCopy_Group.enabled = true;
    window_.btnCancel.caption = "C&lose";
  }

  void copied(const groups::CopiedUser& user) override {
    window_.ListView1.add(user.path, user.text, std::string(user.light));
  }
  void progress(int percent) override { window_.ProgressBar1.value = percent; }
  bool stopped() override {
    session_.platform.dialogs.DoEvents();
    return window_.Stopped;
  }

 private:
  Desktop& session_;
  frmCopy_Group& window_;
};

}  // namespace

void frmCopy_Group_Form_Load(Desktop& session) {
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
  clear_results(window);
  window.btnCancel.caption = "C&lose";
  frmCopy_Group_ImageCombo_Click(session);
}

void frmCopy_Group_ImageCombo_Click(Desktop& session) {
  frmCopy_Group& window = session.copy_group;
  window.btnCopy_Group.enabled =
      window.ImageCombo1.selected() != nullptr && window.ImageCombo2.selected() != nullptr;
}

bool frmCopy_Group_btnCopy_Group_Click(Desktop& session) {
  frmCopy_Group& window = session.copy_group;
  const ListRow* const source = window.ImageCombo1.selected();
  const ListRow* const destination = window.ImageCombo2.selected();
  if (source == nullptr || destination == nullptr || window.Running)
    return false;
  const groups::GroupRow from = groups::group_of(*source);
  const groups::GroupRow to = groups::group_of(*destination);
  if (!groups::confirm_copy(session, from, to))
    return false;
  clear_results(window);
  Run run(session);
  const groups::CopyOutcome outcome = groups::copy_group(session, from, to, run);
  window.Label1.caption = outcome.text;
  return outcome.complete;
}

bool frmCopy_Group_btnCancel_Click(Desktop& session) {
  if (!session.copy_group.Running)
    return true;
  session.copy_group.Stopped = true;
  return false;
}

}  // namespace twk::windows
