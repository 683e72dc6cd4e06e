#pragma once

#include <chrono>
#include <memory>

struct ldap;

namespace twk::live {

/// Ends a TLS handshake with a server that accepts the connection and stays silent: the library itself would
/// wait forever, at full speed. It watches what the library reads below TLS until `end` is called.
class HandshakeDeadline {
 public:
  HandshakeDeadline();
  HandshakeDeadline(const HandshakeDeadline&) = delete;
  HandshakeDeadline& operator=(const HandshakeDeadline&) = delete;
  ~HandshakeDeadline();

  /// Call before the connection is made; this object must outlive it.
  void watch(ldap* connection, std::chrono::seconds patience);
  void end();

 private:
  struct Hook;
  std::unique_ptr<Hook> hook_;
};

}  // namespace twk::live
