#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "batch/rehearsed_session.hpp"
#include "batch/selected_users.hpp"
#include "lifecycle/deletion/delete_order.hpp"
#include "lifecycle/move/move_order.hpp"

namespace twk::batch {

/// What a deletion or a move would do to one user after the other, each by the run's own routine. Nobody is
/// asked: where the run would ask, a step says so. `goes_on` is called often; False ends the look at a user.
class SelectionRehearsal {
 public:
  SelectionRehearsal(session::Session& real, lifecycle::DeleteOrder order, std::function<bool()> goes_on);
  SelectionRehearsal(session::Session& real, lifecycle::MoveOrder order, std::function<bool()> goes_on);
  SelectionRehearsal(const SelectionRehearsal&) = delete;
  SelectionRehearsal& operator=(const SelectionRehearsal&) = delete;
  ~SelectionRehearsal();

  /// The steps, and last why it would not end GREEN: "Delete the account …", "YELLOW: …".
  std::vector<std::string> steps_of(const MeantUser& user);

 private:
  struct Work;
  std::unique_ptr<Work> work_;
};

}  // namespace twk::batch
