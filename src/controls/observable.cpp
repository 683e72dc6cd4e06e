#include "controls/observable.hpp"

namespace twk::controls {

Watch Signal::watch(Callback callback) const {
  auto hold = std::make_shared<Callback>(std::move(callback));
  callbacks_.push_back(hold);
  return Watch(std::move(hold));
}

void Signal::emit() const {
  if (callbacks_.empty())
    return;
  const auto now = callbacks_;
  for (const auto& weak : now) {
    if (const auto callback = weak.lock())
      (*callback)();
  }
  std::erase_if(callbacks_, [](const auto& weak) { return weak.expired(); });
}

}  // namespace twk::controls
