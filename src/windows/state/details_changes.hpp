#pragma once

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "controls/observable.hpp"
#include "windows/state/leaving.hpp"

namespace twk::windows {

struct Form1;

/// What was changed on the user details tab since the account on it was read. A change of a control sets the
/// flag of its group, whatever caused it; in Active Directory only the groups that changed are written.
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
      Custom_Changed{};  ///< which of the boxes; saving one with several values would leave a single one
  /// What the last save could not write, as "HomeDirectory: reason"; the rest was saved.
  std::vector<std::string> refused;

  Leaving leaving;

  /// True when the field holds something else than the account.
  [[nodiscard]] bool differs(const controls::Observable<std::string>& text) const;
  [[nodiscard]] bool differs(const controls::Observable<int>& value) const;
  /// True when any field of the account that is shown does.
  [[nodiscard]] bool any() const;
  /// Called when that may have changed.
  [[nodiscard]] controls::Watch watch(controls::Signal::Callback callback) const {
    return changed_.watch(std::move(callback));
  }
  /// Takes the tab's current contents as the account's; nothing counts as changed.
  void clear();
  /// `chkMustChange` as the account had it.
  [[nodiscard]] bool must_change() const { return must_change_; }

 private:
  template <typename T>
  struct Field {
    const controls::Observable<T>* value;
    T before;
  };
  template <typename T>
  void follow(const controls::Observable<T>& value, std::vector<Field<T>>& fields, bool& flag);

  const Form1& form_;
  bool must_change_ = false;
  std::vector<Field<std::string>> texts_;
  std::vector<Field<int>> ticks_;
  controls::Signal changed_;
  std::vector<controls::Watch> watches_;
};

}  // namespace twk::windows
