#include "local/system_process.hpp"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <limits>

#include "base/text.hpp"
#include "local/descriptor.hpp"

namespace twk::local {
namespace {

/// How a program starts: with default signals, and where it is hidden with nothing on its three streams.
class SpawnPlan {
 public:
  SpawnPlan(const std::vector<std::string>& words, bool hidden) {
    for (const std::string& word : words)
      arguments_.push_back(const_cast<char*>(word.c_str()));
    arguments_.push_back(nullptr);
    sigset_t none;
    sigemptyset(&none);
    sigset_t restored;
    sigemptyset(&restored);
    for (const int signal : {SIGPIPE, SIGXFSZ})
      sigaddset(&restored, signal);
    posix_spawnattr_init(&attributes_);
    posix_spawnattr_setsigmask(&attributes_, &none);
    posix_spawnattr_setsigdefault(&attributes_, &restored);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    posix_spawn_file_actions_init(&actions_);
    if (hidden) {
      for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        posix_spawn_file_actions_addopen(&actions_, stream, "/dev/null", O_RDWR, 0);
      }
    }
  }
  SpawnPlan(const SpawnPlan&) = delete;
  SpawnPlan& operator=(const SpawnPlan&) = delete;
  ~SpawnPlan() {
    posix_spawn_file_actions_destroy(&actions_);
    posix_spawnattr_destroy(&attributes_);
  }

  /// The process number; 0 when it could not be started.
  [[nodiscard]] pid_t start() const {
    pid_t process = 0;
    const int error =
        posix_spawnp(&process, arguments_.front(), &actions_, &attributes_, arguments_.data(), environ);
    return error == 0 ? process : 0;
  }

 private:
  std::vector<char*> arguments_;
  posix_spawnattr_t attributes_{};
  posix_spawn_file_actions_t actions_{};
};

void wait_for_end(pid_t process) {
  while (waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
  }
}

/// Starts the program from a process in between that ends at once: the program is then the system's to clear
/// away.
pid_t start_on_its_own(const SpawnPlan& plan) {
  int ends[2] = {-1, -1};
  if (pipe2(ends, O_CLOEXEC) != 0)
    return 0;
  const Descriptor result(ends[0]);
  Descriptor report(ends[1]);
  const pid_t between = fork();
  if (between < 0)
    return 0;
  if (between == 0) {
    const pid_t started = plan.start();
    const bool reported = ::write(report.get(), &started, sizeof started) == sizeof started;
    _exit(reported ? 0 : 1);
  }
  report = Descriptor();
  pid_t started = 0;
  ssize_t got = -1;
  do {
    got = ::read(result.get(), &started, sizeof started);
  } while (got < 0 && errno == EINTR);
  wait_for_end(between);
  return got == sizeof started ? started : 0;
}

}  // namespace

std::vector<std::string> split_command_line(std::string_view command_line) {
  std::vector<std::string> words;
  bool in_word = false;
  bool quoted = false;
  for (const char c : command_line) {
    if (!quoted && (c == ' ' || c == '\t')) {
      in_word = false;
      continue;
    }
    if (!in_word)
      words.emplace_back();
    in_word = true;
    if (c == '"') {
      quoted = !quoted;
    } else {
      words.back().push_back(c);
    }
  }
  return words;
}

std::int32_t SystemProcess::run(std::string_view command_line, bool wait, std::int16_t window_style) {
  if (command_line.find('\0') != base::npos)
    return 0;
  const std::vector<std::string> words = split_command_line(command_line);
  if (words.empty() || words.front().empty())
    return 0;
  const SpawnPlan plan(words, window_style == 0);
  if (!wait)
    return start_on_its_own(plan);
  const pid_t process = plan.start();
  if (process == 0)
    return 0;
  wait_for_end(process);
  return 1;
}

}  // namespace twk::local
