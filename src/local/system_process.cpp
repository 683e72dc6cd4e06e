#include "local/system_process.hpp"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <system_error>

#include "base/text.hpp"
#include "local/descriptor.hpp"

namespace twk::local {
namespace {

/// A process, or why there is none.
struct Start {
  pid_t process = 0;
  int error = 0;
};

/// What a program gets: its words, the environment without secrets, default signals, and no open file of
/// ours but standard error, which also receives standard output.
class SpawnPlan {
 public:
  SpawnPlan(const std::vector<std::string>& words, bool hidden) {
    for (const std::string& word : words)
      arguments_.push_back(const_cast<char*>(word.c_str()));
    arguments_.push_back(nullptr);
    for (char** variable = environ; *variable != nullptr; ++variable) {
      if (!is_secret_variable(*variable))
        variables_.push_back(*variable);
    }
    variables_.push_back(nullptr);
    plan_signals();
    plan_streams(hidden || fcntl(STDERR_FILENO, F_GETFD) < 0);
  }
  SpawnPlan(const SpawnPlan&) = delete;
  SpawnPlan& operator=(const SpawnPlan&) = delete;
  ~SpawnPlan() {
    posix_spawn_file_actions_destroy(&actions_);
    posix_spawnattr_destroy(&attributes_);
  }

  [[nodiscard]] Start start() const {
    Start result;
    result.error = posix_spawnp(&result.process, arguments_.front(), &actions_, &attributes_,
                                arguments_.data(), variables_.data());
    return result;
  }

 private:
  void plan_signals() {
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
  }
  void plan_streams(bool silent) {
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    if (silent)
      posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&actions_, STDERR_FILENO, STDOUT_FILENO);
    posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1);
  }

  std::vector<char*> arguments_;
  std::vector<char*> variables_;
  posix_spawnattr_t attributes_{};
  posix_spawn_file_actions_t actions_{};
};

/// The status of the process, which has ended.
int wait_for_end(pid_t process) {
  int status = 0;
  while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
  }
  return status;
}

std::string failure_of(int status) {
  if (WIFSIGNALED(status))
    return "it was ended by signal " + std::to_string(WTERMSIG(status));
  const int code = WEXITSTATUS(status);
  return code == 0 ? std::string() : "it ended with exit code " + std::to_string(code);
}

/// Starts the program from a process in between that ends at once: the system then cleans up after the
/// program.
Start start_on_its_own(const SpawnPlan& plan) {
  Start started{.process = 0, .error = EAGAIN};
  int ends[2] = {-1, -1};
  if (pipe2(ends, O_CLOEXEC) != 0)
    return started;
  const Descriptor result(ends[0]);
  Descriptor report(ends[1]);
  const pid_t between = fork();
  if (between < 0)
    return started;
  if (between == 0) {
    const Start outcome = plan.start();
    const bool reported = ::write(report.get(), &outcome, sizeof outcome) == sizeof outcome;
    _exit(reported ? 0 : 1);
  }
  report = Descriptor();
  Start told;
  ssize_t got = -1;
  do {
    got = ::read(result.get(), &told, sizeof told);
  } while (got < 0 && errno == EINTR);
  wait_for_end(between);
  return got == sizeof told ? told : started;
}

std::string words_of(int error) {
  return std::generic_category().message(error);
}

/// 0 for a file that may be executed.
int run_error(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0)
    return errno;
  if (!S_ISREG(status.st_mode))
    return EACCES;
  return access(path.c_str(), X_OK) == 0 ? 0 : errno;
}

/// The same for a program by its name, which is searched on PATH unless it includes a folder.
int find_error(const std::string& name) {
  if (name.find('/') != base::npos)
    return run_error(name);
  const char* const variable = std::getenv("PATH");  // NOLINT(concurrency-mt-unsafe): one thread
  std::string_view folders = variable == nullptr ? "/bin:/usr/bin" : variable;
  int result = ENOENT;
  for (bool last = false; !last;) {
    const std::size_t colon = folders.find(':');
    const std::string_view folder = folders.substr(0, colon);
    const int error = run_error((folder.empty() ? "." : std::string(folder)) + "/" + name);
    if (error == 0)
      return 0;
    if (error == EACCES)
      result = EACCES;
    last = colon == base::npos;
    if (!last)
      folders.remove_prefix(colon + 1);
  }
  return result;
}

bool holds_nul(const std::string& word) {
  return word.find('\0') != base::npos;
}

}  // namespace

bool is_secret_variable(std::string_view variable) {
  const std::size_t end = variable.find('=');
  const std::string name = base::upper(variable.substr(0, end));
  if (name == "USER" || name == "LOGNAME")
    return variable.find('%') != base::npos;
  constexpr std::array kWords = {"PASSWORD", "PASSWD", "PASSPHRASE", "SECRET", "TOKEN"};
  return std::any_of(kWords.begin(), kWords.end(),
                     [&](std::string_view word) { return name.find(word) != base::npos; });
}

std::string SystemProcess::cannot_start(const std::vector<std::string>& words) {
  std::string why;
  if (words.empty() || words.front().empty())
    why = "it has no name";
  else if (std::any_of(words.begin(), words.end(), holds_nul))
    why = "a word of it holds the character <U+0000>";
  else if (const int error = find_error(words.front()); error != 0)
    why = words_of(error);
  return why.empty() ? why : "it could not be started: " + why;
}

platform::ProgramResult SystemProcess::run(const std::vector<std::string>& words, bool wait,
                                           std::int16_t window_style) {
  if (const std::string refusal = cannot_start(words); !refusal.empty())
    return {0, refusal};
  const SpawnPlan plan(words, window_style == 0);
  const Start started = wait ? plan.start() : start_on_its_own(plan);
  if (started.error != 0)
    return {0, "it could not be started: " + words_of(started.error)};
  if (!wait)
    return {started.process, {}};
  return {1, failure_of(wait_for_end(started.process))};
}

}  // namespace twk::local
