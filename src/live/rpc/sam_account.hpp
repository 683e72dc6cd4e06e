#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/bytes.hpp"

namespace twk::live {

/// An account as a controller's account service knows it.
struct SamAccount {
  enum class Kind { kUser, kGlobalGroup, kLocalGroup };

  std::string name;
  Kind kind = Kind::kUser;
  bool builtin = false;  ///< of the domain "Builtin", that every server has
  std::uint32_t rid = 0;
};

/// What is stored for a user. Times are in 100 ns since 1601; texts are empty when there is none.
struct SamUser {
  std::string name;
  std::string full_name;
  std::string description;
  std::string home_directory;
  std::string home_drive;
  std::string logon_script;
  std::string profile_path;
  std::string workstations;
  base::Bytes parameters;   ///< "userParameters" as bytes
  base::Bytes logon_hours;  ///< 21 bytes, or none
  std::uint32_t flags = 0;  ///< USER_ACCOUNT codes, [MS-SAMR] 2.2.1.12
  std::uint32_t primary_group = 0;
  std::uint16_t bad_passwords = 0;
  bool password_expired = false;
  std::uint64_t last_logon = 0;
  std::uint64_t last_logoff = 0;
  std::uint64_t expires = 0;
};

/// What is written for a user: the parts that are present.
struct SamUserChange {
  std::optional<std::string> name;
  std::optional<std::string> full_name;
  std::optional<std::string> description;
  std::optional<std::string> home_directory;
  std::optional<std::string> home_drive;
  std::optional<std::string> logon_script;
  std::optional<std::string> profile_path;
  std::optional<std::string> workstations;
  std::optional<base::Bytes> parameters;
  std::optional<base::Bytes> logon_hours;
  std::optional<std::uint32_t> flags;
  std::optional<std::uint32_t> primary_group;
  std::optional<bool> password_expired;
  std::optional<std::uint64_t> expires;
};

}  // namespace twk::live
