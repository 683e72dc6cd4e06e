#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/platform.hpp"

namespace twk::lifecycle {

/// Services over those of a session that change nothing: reads are real, writes are reported instead, in the
/// order in which they would be done. Log and status files are not written either.
///
///     Rehearsal rehearsal(session.platform, [](const std::string& step) { … });
///     session::Session rehearsed(rehearsal.services(), …);
class Rehearsal {
 public:
  using Tell = std::function<void(const std::string&)>;
  /// What becomes of changes in the directory.
  enum class Changes {
    kReported,
    kTried  ///< made as well: the services' directory will forget them
  };

  Rehearsal(const platform::Platform& services, Tell tell, Changes changes = Changes::kReported);
  Rehearsal(const Rehearsal&) = delete;
  Rehearsal& operator=(const Rehearsal&) = delete;
  ~Rehearsal();

  [[nodiscard]] platform::Platform services();

 private:
  struct Services;
  std::unique_ptr<Services> rehearsed_;
};

}  // namespace twk::lifecycle
