#pragma once

#include <array>
#include <string>

#include "controls/basic.hpp"
#include "controls/list_view.hpp"

namespace twk::session {
struct LoadedDomain;
}  // namespace twk::session

/// State of the windows around the groups of the domain. Fields have the names of the windows' controls.
namespace twk::windows {

/// The groups of the domain and who is in them. The lists are filled by the load of the domain; between
/// `Members` and `NotMembers` rows are only moved.
struct Groupsfrm {
  explicit Groupsfrm(session::LoadedDomain& domain);

  controls::Observable<bool> visible{false};
  controls::ListView& ListView1;   ///< all groups of the domain; sub-item 1 is the type
  controls::ListView& Members;     ///< users in the group that is shown; sub-item 1 marks the primary group
  controls::ListView& NotMembers;  ///< all other users
  controls::TextBox Decsription_Text;  ///< comment of the group
  controls::Button Add_Group;
  controls::Button Delete_Group;
  controls::Button Group_Details;
  controls::Button Command1;  ///< users out of the group
  controls::Button Command2;  ///< users into the group
  controls::Button COPY_GRP;
  controls::Button ExitButton;
  controls::Button btn_showGrpusers;
  controls::StatusBar StatusBar1;
  /// How `ListView1` is sorted: by the text (0) or the type (1).
  controls::Observable<int> SortKey{0};
  controls::Observable<bool> SortDescending{false};
  /// Key of the group whose members are in `Members`; empty for none.
  controls::Observable<std::string> ShownGroup;
};

/// Makes a group.
struct GroupAdd {
  controls::TextBox GRP_Name;
  controls::TextBox GRP_DESCRIPTION;
  std::array<controls::OptionButton, 3> Option1;  ///< domain local, global, universal
  std::array<controls::OptionButton, 2> Option2;  ///< security, distribution
};

/// Copies the users of one group into another.
struct frmCopy_Group {
  controls::TextBox Domain_Source;
  controls::TextBox Domain_Destination;
  controls::ListView ImageCombo1;  ///< groups; the selected one is copied from
  controls::ListView ImageCombo2;  ///< groups; the selected one is copied to
  controls::ListView ListView1;    ///< the result for each user, with its light
  controls::ProgressBar ProgressBar1;
  controls::Label Label1;  ///< the result of the run
  controls::Button btnCopy_Group;
  controls::Button btnCancel;
  bool Running = false;
  bool Stopped = false;  ///< set while it runs: ends it after the current user
};

}  // namespace twk::windows
