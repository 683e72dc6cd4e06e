#pragma once

#include <array>
#include <string>
#include <vector>

#include "controls/observable.hpp"

namespace twk::session {

struct Form1;

/// What was changed on the user details tab since the account on it was read. A change of a control sets the
/// flag of its group, whoever makes it; in Active Directory only the groups that changed are written.
struct DetailsChanges {
  explicit DetailsChanges(Form1& form);
  DetailsChanges(const DetailsChanges&) = delete;
  DetailsChanges& operator=(const DetailsChanges&) = delete;

  bool Account = false;  ///< names of the logon, mail address, expiry
  bool Profile = false;  ///< profile, home directory and its drive, logon script
  bool General = false;
  bool Flags = false;
  bool Custom = false;
  std::array<bool, 4>
      Custom_Changed{};  ///< which of the boxes; several values in one would become a single one
  /// What the last save was refused, as "HomeDirectory: reason"; the rest was saved.
  std::vector<std::string> refused;

  /// What the account on the tab has now; nothing counts as changed.
  void clear();
  /// `chkMustChange` as the account had it.
  [[nodiscard]] bool must_change() const { return must_change_; }

 private:
  const Form1& form_;
  bool must_change_ = false;
  std::vector<controls::Watch> watches_;
};

}  // namespace twk::session
