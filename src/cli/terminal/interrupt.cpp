#include "cli/terminal/interrupt.hpp"

#include <unistd.h>

#include <csignal>

namespace twk::cli {
namespace {

// A signal handler can only use a global variable.
volatile std::sig_atomic_t was_interrupted = 0;

extern "C" void on_interrupt(int) {
  if (was_interrupted != 0)
    _exit(130);
  was_interrupted = 1;
}

}  // namespace

void catch_interrupts() {
  struct sigaction action = {};
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  action.sa_handler = on_interrupt;
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
}

bool interrupted() {
  return was_interrupted != 0;
}

}  // namespace twk::cli
