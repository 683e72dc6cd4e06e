#pragma once

#include <string>

namespace twk::session {
struct Session;
}

namespace twk::lifecycle {

/// Gives copies the owners of what they are copies of: what a program makes on a server belongs to whoever
/// runs it. Where the right to that is missing it is tried once and left. The privilege that it takes is on
/// for the life of the object.
class OwnerKeeper {
 public:
  explicit OwnerKeeper(session::Session& session);
  OwnerKeeper(const OwnerKeeper&) = delete;
  OwnerKeeper& operator=(const OwnerKeeper&) = delete;
  ~OwnerKeeper();

  void keep(const std::string& from, const std::string& to);
  /// Why owners were not kept, with the first file; empty when they were.
  [[nodiscard]] const std::string& refusal() const { return refusal_; }

 private:
  bool switch_privilege(bool on);

  session::Session& session_;
  bool switched_;
  std::string refusal_;
};

}  // namespace twk::lifecycle
