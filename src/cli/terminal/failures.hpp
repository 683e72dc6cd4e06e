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

/// The system does not do what was asked; exit code 2, as a RED light.
struct Refused : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Says on standard error what the exception in flight is about, and gives the exit code. A failed platform
/// call that the caller is not permitted to make gives 77, a file that is not there or does not read gives
/// 65, anything not foreseen 70. Only for use inside a handler.
int report_failure();

/// One line on standard error, "twk: " in front, control characters made visible.
void complain(std::string_view text);

}  // namespace twk::cli
