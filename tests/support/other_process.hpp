#pragma once

#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <exception>
#include <stdexcept>

namespace twk::test {

/// Runs `work` in a forked process, parallel to this one; a failure makes its exit code 1.
class OtherProcess {
 public:
  template <typename Work>
  explicit OtherProcess(Work work) : number_(fork()) {
    if (number_ < 0)
      throw std::runtime_error("cannot fork");
    if (number_ > 0)
      return;
    int code = 0;
    try {
      code = work();
    } catch (const std::exception&) {
      code = 1;
    }
    _exit(code);
  }
  OtherProcess(const OtherProcess&) = delete;
  OtherProcess& operator=(const OtherProcess&) = delete;
  ~OtherProcess() {
    if (!waited_)
      waitpid(number_, nullptr, 0);
  }

  /// Waits for its end and returns its exit code; -1 when a signal ended it.
  int exit_code() {
    int status = 0;
    waitpid(number_, &status, 0);
    waited_ = true;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  pid_t number_;
  bool waited_ = false;
};

/// Permissions do not bind root, so a test that root runs becomes another user. Only for an `OtherProcess`.
inline void become_ordinary_user() {
  constexpr uid_t kNobody = 65534;
  if (geteuid() == 0 && (setgid(kNobody) != 0 || setuid(kNobody) != 0))
    throw std::runtime_error("cannot become another user");
}

/// Lets no file of this process grow beyond `bytes`, as if the disk were then full. Only for an
/// `OtherProcess`.
inline void limit_file_size(rlim_t bytes) {
  signal(SIGXFSZ, SIG_IGN);
  const rlimit limit{bytes, bytes};
  if (setrlimit(RLIMIT_FSIZE, &limit) != 0)
    throw std::runtime_error("cannot limit the size of files");
}

}  // namespace twk::test
