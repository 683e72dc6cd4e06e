#pragma once

#include <string_view>

namespace twk::session {

/// What a run reports while it works. A window paints it, the command line prints it.
class RunView {
 public:
  RunView() = default;
  RunView(const RunView&) = delete;
  RunView& operator=(const RunView&) = delete;
  virtual ~RunView() = default;

  /// The line of the status bar.
  virtual void status(std::string_view text) = 0;
  /// What is being done now; empty at rest.
  virtual void step(std::string_view caption) = 0;
  /// From 0 to 100.
  virtual void progress(int percent) = 0;
  /// Work on a tree of files begins and ends.
  virtual void begin_files() {}
  virtual void end_files() {}
  /// How far it is: "Copying \\FS1\\Users\\jo: 3 of 5 files, 1.2 MB of 2.0 MB", and from 0 to 100.
  virtual void files(std::string_view /*text*/, int /*percent*/) {}
  /// A turn for events; False when the run should end.
  virtual bool going_on() { return true; }
};

}  // namespace twk::session
