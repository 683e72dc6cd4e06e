#pragma once

#include <memory>

#include "lifecycle/rehearsal/rehearsal.hpp"
#include "session/session.hpp"

namespace twk::batch {

/// A session with a copy of what another one has loaded, over services that change nothing. Questions are
/// told as steps and answered with Yes, or with an empty value; its log tab is not the other's.
class RehearsedSession {
 public:
  /// `tell` gets each step that would be done. The other session must outlive this one.
  RehearsedSession(session::Session& real, const lifecycle::Rehearsal::Tell& tell);
  RehearsedSession(const RehearsedSession&) = delete;
  RehearsedSession& operator=(const RehearsedSession&) = delete;
  ~RehearsedSession();

  [[nodiscard]] session::Session& session();

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace twk::batch
