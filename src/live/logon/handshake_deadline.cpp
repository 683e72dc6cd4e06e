#include "live/logon/handshake_deadline.hpp"

#include <ldap.h>
#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <optional>

#include "base/errors.hpp"
#include "platform/directory.hpp"

namespace twk::live {
namespace {

using Clock = std::chrono::steady_clock;

/// Between the socket and TLS.
constexpr int kLevel = (LBER_SBIOD_LEVEL_PROVIDER + LBER_SBIOD_LEVEL_TRANSPORT) / 2;

}  // namespace

struct HandshakeDeadline::Hook {
  ldap_conncb callbacks{};
  Sockbuf_IO layer{};
  std::chrono::seconds patience{};
  std::optional<Clock::time_point> until;

  static Hook& of(Sockbuf_IO_Desc* place) { return *static_cast<Hook*>(place->sbiod_pvt); }

  static int set_up(Sockbuf_IO_Desc* place, void* hook) {
    place->sbiod_pvt = hook;
    return 0;
  }
  static int remove(Sockbuf_IO_Desc* /*place*/) { return 0; }
  static int control(Sockbuf_IO_Desc* place, int option, void* argument) {
    return LBER_SBIOD_CTRL_NEXT(place, option, argument);
  }

  /// True when there is something to read before the deadline.
  static bool wait(Sockbuf_IO_Desc* place, Clock::time_point until) {
    ber_socket_t socket = -1;
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(until - Clock::now()).count();
    if (left <= 0 || ber_sockbuf_ctrl(place->sbiod_sb, LBER_SB_OPT_GET_FD, &socket) != 1)
      return false;
    pollfd waited = {.fd = socket, .events = POLLIN, .revents = 0};
    return poll(&waited, 1, static_cast<int>(left)) > 0;
  }

  static ber_slen_t read(Sockbuf_IO_Desc* place, void* bytes, ber_len_t count) {
    const Hook& hook = of(place);
    for (;;) {
      const ber_slen_t got = LBER_SBIOD_READ_NEXT(place, bytes, count);
      if (got >= 0 || !hook.until || (errno != EAGAIN && errno != EWOULDBLOCK))
        return got;
      if (!wait(place, *hook.until)) {
        errno = ETIMEDOUT;
        return -1;
      }
    }
  }
  static ber_slen_t write(Sockbuf_IO_Desc* place, void* bytes, ber_len_t count) {
    return LBER_SBIOD_WRITE_NEXT(place, bytes, count);
  }

  static int on_connection(LDAP* /*connection*/, Sockbuf* buffer, LDAPURLDesc* /*server*/,
                           sockaddr* /*address*/, ldap_conncb* callbacks) {
    Hook& hook = *static_cast<Hook*>(callbacks->lc_arg);
    hook.until = Clock::now() + hook.patience;
    ber_sockbuf_add_io(buffer, &hook.layer, kLevel, &hook);
    return 0;
  }
  static void on_end(LDAP* /*connection*/, Sockbuf* /*buffer*/, ldap_conncb* /*callbacks*/) {}
};

HandshakeDeadline::HandshakeDeadline() : hook_(std::make_unique<Hook>()) {
  hook_->layer = {Hook::set_up, Hook::remove, Hook::control, Hook::read, Hook::write, nullptr};
  hook_->callbacks = {Hook::on_connection, Hook::on_end, hook_.get()};
}

HandshakeDeadline::~HandshakeDeadline() = default;

void HandshakeDeadline::watch(ldap* connection, std::chrono::seconds patience) {
  hook_->patience = patience;
  if (ldap_set_option(connection, LDAP_OPT_CONNECT_CB, &hook_->callbacks) != LDAP_OPT_SUCCESS)
    base::raise(platform::ads_error::kServerDown, "The LDAP library does not accept a time limit for TLS");
}

void HandshakeDeadline::end() {
  hook_->until.reset();
}

}  // namespace twk::live
