#pragma once

#include <string>

namespace twk::session {
struct Session;
}

namespace twk::lifecycle {

/// Gives copies the owners of their originals: what a program makes on a server belongs to the person running
/// it. Without the right to do that, one attempt is made. The necessary privilege is on while the object
/// exists.
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
