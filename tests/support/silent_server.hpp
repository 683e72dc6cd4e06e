#pragma once

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <stdexcept>
#include <utility>

namespace twk::test {

/// A port of this machine that accepts connections but stays silent, until the end of the scope.
class SilentServer {
 public:
  SilentServer() : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    if (bind(socket_, reinterpret_cast<sockaddr*>(&address), size) != 0 || listen(socket_, 8) != 0 ||
        getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &size) != 0)
      throw std::runtime_error("no port to listen on");
    port_ = ntohs(address.sin_port);
  }
  SilentServer(const SilentServer&) = delete;
  SilentServer& operator=(const SilentServer&) = delete;
  ~SilentServer() { shut(); }

  void shut() {
    if (socket_ >= 0)
      close(std::exchange(socket_, -1));
  }
  [[nodiscard]] std::uint16_t port() const { return port_; }

 private:
  int socket_;
  std::uint16_t port_ = 0;
};

}  // namespace twk::test
