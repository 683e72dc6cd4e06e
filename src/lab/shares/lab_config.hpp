#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>

/// "lab.conf": the configuration of a lab, as lines "name = value"; a line that begins with "#" is a comment.
///
///     domain = twk.test                  DNS name; absent in a lab of kind nt
///     netbios = TWK                      the pre-2000 name
///     kind = native                      native, mixed or nt
///     controller = DC1                   name of the domain controller
///     password.minimum_length = 7
///     password.complexity = on           on or off
///     password.maximum_age = 0           days after which a password expires; 0 for never
///     lockout.threshold = 0              wrong passwords before an account is locked; 0 never locks
///     lockout.duration = 0               minutes until a lock is over; 0 until an administrator unlocks
///     lockout.window = 0                 minutes after which a wrong password no longer counts; 0 for never
///     logon = Administrator              account that the program acts as; absent: the built-in administrator
///     privileges = SeRestorePrivilege    what the program's token holds, separated by blanks; absent: all
///                                        that administrators have
///     answer = none                      answer to questions when nobody is there: yes, no, none
namespace twk::lab {

enum class DomainKind { kNative, kMixed, kNt };
enum class DefaultAnswer { kNone, kYes, kNo };

struct PasswordPolicy {
  int minimum_length = 7;  ///< in characters
  bool complexity = true;  ///< three of capitals, small letters, digits, others; not the account's name
  int lockout_threshold = 0;
  int lockout_duration = 0;  ///< in minutes, like the next
  int lockout_window = 0;
  int maximum_age = 0;  ///< in days

  friend bool operator==(const PasswordPolicy&, const PasswordPolicy&) = default;
};

struct LabConfig {
  std::string domain;
  std::string netbios;
  DomainKind kind = DomainKind::kNative;
  std::string controller = "DC1";
  PasswordPolicy passwords;
  std::string logon;
  std::optional<std::string> privileges;
  DefaultAnswer default_answer = DefaultAnswer::kNone;

  friend bool operator==(const LabConfig&, const LabConfig&) = default;
};

/// Names of all privileges that the lab knows; a privilege's number is its place, counted from 2.
std::span<const std::string_view> known_privileges();

/// The name that people use for the domain: the DNS name, in a lab of kind nt the NetBIOS name.
const std::string& domain_name(const LabConfig& config);

/// Raises a runtime error "<file>:<line>: …" for a name that is unknown, appears twice or has an unusable
/// value, 53 or 76 when there is no such file. An absent "netbios" is the first label of "domain" in
/// capitals.
LabConfig read_lab_config(const std::filesystem::path& file);
/// Raises 5 for a configuration that `read_lab_config` would refuse.
void check_lab_config(const LabConfig& config);
/// Replaces the file as a whole; a reader sees the old one or the new one. Raises the runtime's file numbers,
/// and 5 for a configuration that `read_lab_config` would refuse.
void write_lab_config(const std::filesystem::path& file, const LabConfig& config);

}  // namespace twk::lab
