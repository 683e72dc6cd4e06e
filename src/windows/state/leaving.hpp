#pragma once

#include <string>

namespace twk::windows {

/// The question that is asked before something that was edited disappears.
struct Leaving {
  enum class Answer { kCancel, kSave, kDiscard };

  std::string text;
  Answer answer = Answer::kCancel;
};

}  // namespace twk::windows
