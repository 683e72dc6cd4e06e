#pragma once

#include "creation/creation_view.hpp"

namespace twk::creation {

/// Shows nothing: the base of a view that only listens to some of it.
class QuietView : public CreationView {
 public:
  void status(std::string_view /*text*/) override {}
  void step(std::string_view /*caption*/) override {}
  void progress(int /*percent*/) override {}
  void begin() override {}
  void start_work() override {}
  void names(const NewUserRequest& /*request*/) override {}
  void lock() override {}
  void unlock() override {}
  void stage(Stage /*stage*/, StageState /*state*/) override {}
};

}  // namespace twk::creation
