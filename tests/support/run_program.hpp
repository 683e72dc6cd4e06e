#pragma once

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace twk::test {

struct ProgramRun {
  std::vector<std::string> arguments;  ///< the program first
  std::string input;  ///< its standard input; with a terminal, what is typed once it has written something
  std::vector<std::pair<std::string, std::string>> environment;
  bool terminal = false;     ///< standard input, output and error are one terminal; all output is in `out`
  std::string awaited = {};  ///< what it must have written before somebody types; anything if empty
};

struct ProgramResult {
  int exit_code = -1;  ///< 128 and the signal's number for a program that a signal ended
  std::string out;
  std::string err;
};

namespace detail {

/// Replaces the standard descriptors and becomes the program.
[[noreturn]] inline void become(const ProgramRun& run, const std::array<int, 3>& streams) {
  for (int i = 0; i < 3; ++i)
    dup2(streams[static_cast<std::size_t>(i)], i);
  for (const auto& [name, value] : run.environment)
    setenv(name.c_str(), value.c_str(), 1);
  std::vector<char*> arguments;
  for (const std::string& argument : run.arguments)
    arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  execv(arguments.front(), arguments.data());
  _exit(127);
}

/// Appends what can be read; false at the end.
inline bool drain(int descriptor, std::string& into) {
  std::array<char, 4096> piece{};
  const ssize_t count = read(descriptor, piece.data(), piece.size());
  if (count > 0)
    into.append(piece.data(), static_cast<std::size_t>(count));
  return count > 0;
}

inline int exit_code_of(pid_t child) {
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

inline ProgramResult run_on_terminal(const ProgramRun& run) {
  int master = -1;
  int slave = -1;
  if (openpty(&master, &slave, nullptr, nullptr, nullptr) != 0)
    throw std::runtime_error("no terminal");
  fcntl(master, F_SETFD, FD_CLOEXEC);
  fcntl(slave, F_SETFD, FD_CLOEXEC);
  const pid_t child = fork();
  if (child == 0) {
    setsid();
    ioctl(slave, TIOCSCTTY, 0);
    become(run, {slave, slave, slave});
  }
  close(slave);
  ProgramResult result;
  bool written = drain(master, result.out);
  while (written && result.out.find(run.awaited) == std::string::npos)
    written = drain(master, result.out);
  if (written && write(master, run.input.data(), run.input.size()) < 0)
    throw std::runtime_error("cannot type");
  while (written && drain(master, result.out)) {
  }
  close(master);
  result.exit_code = exit_code_of(child);
  return result;
}

}  // namespace detail

/// Runs a program to its end.
inline ProgramResult run_program(const ProgramRun& run) {
  if (run.terminal)
    return detail::run_on_terminal(run);
  std::array<std::array<int, 2>, 3> pipes{};
  for (auto& ends : pipes) {
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
      throw std::runtime_error("no pipe");
  }
  const pid_t child = fork();
  if (child == 0)
    detail::become(run, {pipes[0][0], pipes[1][1], pipes[2][1]});
  close(pipes[1][1]);
  close(pipes[2][1]);
  ProgramResult result;
  // The inputs of these tests fit into a pipe. Our own end to read from stays open meanwhile, because the
  // program may end without reading its input.
  const bool written = run.input.empty() || write(pipes[0][1], run.input.data(), run.input.size()) >= 0;
  close(pipes[0][0]);
  close(pipes[0][1]);
  std::array<pollfd, 2> streams = {pollfd{pipes[1][0], POLLIN, 0}, pollfd{pipes[2][0], POLLIN, 0}};
  const std::array<std::string*, 2> texts = {&result.out, &result.err};
  while (streams[0].fd >= 0 || streams[1].fd >= 0) {
    if (poll(streams.data(), streams.size(), -1) < 0)
      break;
    for (std::size_t i = 0; i < streams.size(); ++i) {
      if (streams[i].revents != 0 && !detail::drain(streams[i].fd, *texts[i]))
        streams[i].fd = -1;
    }
  }
  close(pipes[1][0]);
  close(pipes[2][0]);
  result.exit_code = detail::exit_code_of(child);
  if (!written)
    throw std::runtime_error("cannot write to the program");
  return result;
}

}  // namespace twk::test
