#pragma once

#include <QString>
#include <functional>

namespace twk::app {

/// Does `work` in another thread. When that takes longer than a moment, a small window says so in the
/// meantime, with `text`. Raises what the work raises.
void wait_for(const QString& text, const std::function<void()>& work);

}  // namespace twk::app
