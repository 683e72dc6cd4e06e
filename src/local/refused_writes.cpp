#include "local/refused_writes.hpp"

#include <csignal>

namespace twk::local {
namespace {

extern "C" void on_refused_write(int) {}

}  // namespace

void outlive_refused_writes() {
  struct sigaction action = {};
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  // A handler and not SIG_IGN, which programs that are started here would inherit.
  action.sa_handler = on_refused_write;
  sigaction(SIGPIPE, &action, nullptr);
  sigaction(SIGXFSZ, &action, nullptr);
}

}  // namespace twk::local
