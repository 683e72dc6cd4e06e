#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "lifecycle/trees/tree_copy.hpp"
#include "session/run_view.hpp"

namespace twk::session {
struct Session;
}

/// The progress of work on a folder, as a run reports it.
namespace twk::lifecycle {

/// "1.4 GB"; from 1024 on with one digit after the point.
std::string size_text(std::uint64_t bytes);
/// "3 files, 1.4 GB".
std::string contents_text(const Tree& tree);

/// Lets the run's view show work on files for a scope.
class ShownProgress {
 public:
  explicit ShownProgress(session::RunView& view) : view_(view) { view_.begin_files(); }
  ShownProgress(const ShownProgress&) = delete;
  ShownProgress& operator=(const ShownProgress&) = delete;
  ~ShownProgress() { view_.end_files(); }

 private:
  session::RunView& view_;
};

/// Reports every few files how far the work is; False once the run should end.
class Turns {
 public:
  Turns(session::Session& session, const Tree& tree, std::string_view verb)
      : session_(session), tree_(tree), verb_(verb) {}

  bool operator()(const TreeProgress& done);

 private:
  session::Session& session_;
  const Tree& tree_;
  std::string verb_;
  TreeProgress told_;
};

}  // namespace twk::lifecycle
