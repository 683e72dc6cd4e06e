#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

/// How a command ends early. All of these, and whatever else is thrown, arrive in `report_failure`.
namespace twk::cli {

/// The command line does not say what to do; exit code 64.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// A file, or what came on standard input, is not what it should be; exit code 65.
struct BadInput : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The system refuses the request; exit code 2, as for a RED light.
struct Refused : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Reports the current exception on standard error and returns the exit code: 77 for a platform call that the
/// caller is not permitted to make, 65 for a missing or unreadable file, 70 for anything unexpected. Only for
/// use inside a handler.
int report_failure();

/// One line on standard error that begins with "twk: ", control characters made visible.
void complain(std::string_view text);

}  // namespace twk::cli
