#include "live/files/owner_command.hpp"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string>
#include <string_view>
#include <vector>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "live/logon/logon_name.hpp"
#include "local/descriptor.hpp"
#include "platform/acl.hpp"

namespace twk::live {
namespace {

struct Outcome {
  bool started = false;
  bool succeeded = false;
  std::string output;  ///< of both streams
};

std::vector<char*> pointers_of(std::vector<std::string>& words) {
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words)
    pointers.push_back(word.data());
  pointers.push_back(nullptr);
  return pointers;
}

std::string read_to_end(const local::Descriptor& file) {
  std::string text;
  std::array<char, 4096> piece{};
  for (;;) {
    const ssize_t got = ::read(file.get(), piece.data(), piece.size());
    if (got > 0)
      text.append(piece.data(), static_cast<std::size_t>(got));
    else if (got == 0 || errno != EINTR)
      return text;
  }
}

Outcome run_program(std::vector<std::string> words, std::vector<std::string> variables) {
  int ends[2] = {-1, -1};
  if (pipe2(ends, O_CLOEXEC) != 0)
    return {};
  const local::Descriptor output(ends[0]);
  local::Descriptor input(ends[1]);
  posix_spawn_file_actions_t actions{};
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, input.get(), STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, input.get(), STDERR_FILENO);
  for (char** variable = environ; *variable != nullptr; ++variable)
    variables.emplace_back(*variable);
  const std::vector<char*> arguments = pointers_of(words);
  const std::vector<char*> environment = pointers_of(variables);
  pid_t process = 0;
  const int error =
      posix_spawnp(&process, arguments.front(), &actions, nullptr, arguments.data(), environment.data());
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0)
    return {};
  input = local::Descriptor();
  Outcome outcome{true, false, read_to_end(output)};
  int status = 0;
  while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
  }
  outcome.succeeded = WIFEXITED(status) && WEXITSTATUS(status) == 0;
  return outcome;
}

std::uint32_t number_of(std::string_view output) {
  if (output.find("NT_STATUS_INVALID_OWNER") != base::npos)
    return platform::security_error::kInvalidOwner;
  if (output.find("NT_STATUS_SHARING_VIOLATION") != base::npos)
    return platform::security_error::kSharingViolation;
  return platform::security_error::kAccessDenied;
}

}  // namespace

void write_owner_by_command(Credentials& credentials, const SmbPath& path, const platform::Sid& owner) {
  const LiveSettings& settings = credentials.settings();
  std::vector<std::string> words = {"smbcacls", "//" + path.server + "/" + path.share, "/" + path.path,
                                    "--chown=" + owner.text()};
  std::vector<std::string> variables;
  if (settings.user.empty()) {
    words.insert(words.end(), {"--use-kerberos=required", "--no-pass"});
  } else {
    // Passed in the environment, which other users of the machine cannot read.
    const std::string& name = credentials.kerberos_name();
    words.push_back("--user=" + (name.empty() ? windows_logon(settings).text() : name));
    variables.push_back("PASSWD=" + settings.password);
  }
  const Outcome outcome = run_program(std::move(words), std::move(variables));
  if (outcome.succeeded)
    return;
  const std::string reason =
      outcome.started ? std::string(base::trim(outcome.output)) : "the program smbcacls is not installed";
  base::raise(number_of(outcome.output), "cannot write the owner of " + path.text() + ": " + reason);
}

}  // namespace twk::live
