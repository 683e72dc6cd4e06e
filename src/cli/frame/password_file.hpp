#pragma once

#include <string>
#include <string_view>

#include "local/descriptor.hpp"

namespace twk::cli {

/// A new file with the passwords of a run, mode 0600: a heading line and a line for each account, "account"
/// and "password", quoted as RFC 4180 describes, in UTF-8. Each line is written as the account gets its
/// password.
class PasswordFile {
 public:
  /// Raises `BadInput` for a file that exists, and what the system raises.
  explicit PasswordFile(std::string path);
  /// Raises when the line cannot be written.
  void add(std::string_view account, std::string_view password);

 private:
  std::string path_;
  local::Descriptor file_;
};

}  // namespace twk::cli
