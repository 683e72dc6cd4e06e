#pragma once

#include <optional>

#include "platform/environment.hpp"

namespace twk::local {

/// The variables of this process. "USERNAME" falls back to "USER", then "LOGNAME", then the account that the
/// process runs under. Bytes that are not UTF-8 become U+FFFD.
class SystemEnvironment final : public platform::Environment {
 public:
  std::string variable(std::string_view name) override;
  /// By the tables of ICU. Raises 126 when they cannot be loaded.
  std::string plain_letters(std::string_view text) override;

 private:
  std::optional<std::string> account_;  ///< the process's, once it was asked for
};

}  // namespace twk::local
