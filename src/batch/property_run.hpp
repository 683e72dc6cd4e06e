#pragma once

#include <cstddef>
#include <functional>

#include "batch/property_order.hpp"
#include "batch/selection_walk.hpp"
#include "session/current_run.hpp"

/// What the run over the selection and the run over a file share.
namespace twk::batch {

struct PropertyRun {
  session::Session& session;
  const PropertyOrder& order;
  session::RunView& view;
  PropertyCounts counts = {};
  std::int32_t line = 0;    ///< of the file; 0 for a run over the selection
  std::string reason = {};  ///< why the last user was not changed
};

void show_progress(PropertyRun& run, std::size_t done, std::size_t all);
/// A turn for events; true when the run should end.
bool is_cancelled(PropertyRun& run);

/// Sets the property of one user and counts. Messages about a failure of a member of a group have no quotes.
void change_one(PropertyRun& run, const SelectedUser& user, const std::string& value);
/// The same for one who has to be read first, called `name` in messages until then. Raises when no server
/// answers.
void change_user_at(PropertyRun& run, const std::string& path, const std::string& name,
                    const std::string& value);
/// A row or a user that could not be read. False when no server answers.
bool tell_unread(PropertyRun& run, const std::string& what, const std::string& value,
                 const base::RuntimeError& failure);

/// One block of the log: the head, what `changes` does, and the closing texts with the counts since it began.
/// A failure of `changes` is logged, counted as the run's and on the log tab, and returns False.
bool in_change_block(PropertyRun& run, const std::string& value, const std::function<void()>& changes);

}  // namespace twk::batch
