#pragma once

namespace twk::windows {

struct Desktop;

/// True when the details, the template and the site that are being edited may all disappear, see `may_leave`.
bool may_leave_all(Desktop& session);

}  // namespace twk::windows
