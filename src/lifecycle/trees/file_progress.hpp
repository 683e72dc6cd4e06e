#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "lifecycle/trees/tree_copy.hpp"

namespace twk::session {
struct Session;
}

/// Shows a person the progress of work on a folder.
namespace twk::lifecycle {

/// "1.4 GB"; from 1024 on with one digit after the point.
std::string size_text(std::uint64_t bytes);
/// "3 files, 1.4 GB".
std::string contents_text(const Tree& tree);

/// Shows the window with the Cancel button for a scope, unless a run has its own window.
class ShownProgress {
 public:
  explicit ShownProgress(session::Session& session);
  ShownProgress(const ShownProgress&) = delete;
  ShownProgress& operator=(const ShownProgress&) = delete;
  ~ShownProgress();

 private:
  session::Session& session_;
  bool shows_;
  bool was_enabled_;
};

/// Shows every few files how far the work is, and lets Cancel be pressed; False after that.
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
