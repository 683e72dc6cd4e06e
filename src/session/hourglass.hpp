#pragma once

#include "session/form1.hpp"

namespace twk::session {

/// Shows the hourglass for a scope.
class Hourglass {
 public:
  explicit Hourglass(Form1& form) : form_(form) { form_.mouse_pointer = 11; }
  Hourglass(const Hourglass&) = delete;
  Hourglass& operator=(const Hourglass&) = delete;
  ~Hourglass() { form_.mouse_pointer = 0; }

 private:
  Form1& form_;
};

}  // namespace twk::session
