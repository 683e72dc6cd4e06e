#pragma once

#include <functional>
#include <string>

/// What was edited and is not saved. Whatever would make it disappear asks first.
namespace twk::windows {

struct Desktop;

/// Asks whether to save `what`, "the changes to ann". True when it may disappear: it was discarded, or `save`
/// returned True.
bool may_leave(Desktop& session, const std::string& what, const std::function<bool()>& save);

/// True when the user details tab may show somebody else, or nobody.
bool may_leave_details(Desktop& session);

}  // namespace twk::windows
