#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "controls/basic.hpp"
#include "controls/list_view.hpp"

namespace twk::windows {

/// The window that shows whom a run would reach and what it would do, before it begins.
struct RunPreview {
  bool asks = true;  ///< False: a run begins without this window

  controls::Label title;
  controls::Label question;
  controls::Label counts;       ///< who is meant, and who of the selection is not
  controls::Label effects;      ///< what would be done to them altogether
  controls::ListView accounts;  ///< account, where it comes from, what would be done; long lists are cut off
  controls::ProgressBar done;
  controls::Button Rehearse;  ///< looks at the accounts that are left, or stops that
  controls::Button Start;
  controls::Observable<bool> rehearsing{false};
  bool accepted = false;
  bool closed = false;  ///< ends a rehearsal that is going on

  /// What would be done with the account of that place; none when a run touches the account alone.
  std::function<std::vector<std::string>(std::size_t place)> rehearse;
  std::size_t users = 0;                     ///< accounts that are meant
  std::size_t next = 0;                      ///< the first of them not yet looked at
  std::map<std::string, std::size_t> kinds;  ///< "Delete the folder": how often it would be done
};

}  // namespace twk::windows
