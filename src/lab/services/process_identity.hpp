#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "lab/domain/lab_domain.hpp"
#include "platform/sid.hpp"

namespace twk::lab {

/// Who the program is in the lab: the account that "lab.conf" names, or the domain's built-in administrator,
/// with the groups that it had when the lab was first asked, and the privileges of the process.
class ProcessIdentity {
 public:
  explicit ProcessIdentity(LabDomain& domain) : domain_(domain) {}
  ProcessIdentity(const ProcessIdentity&) = delete;
  ProcessIdentity& operator=(const ProcessIdentity&) = delete;

  /// All identifiers that count in an access list. Raises kNoneMapped when "lab.conf" names an account that
  /// does not exist.
  const std::vector<platform::Sid>& identifiers();
  /// The account's own identifier.
  platform::Sid account();
  [[nodiscard]] bool is_administrator();
  /// The owner of what the program creates.
  platform::Sid default_owner();

  [[nodiscard]] bool holds(std::string_view privilege) const;
  [[nodiscard]] bool is_enabled(std::string_view privilege) const;
  void enable(std::string_view privilege, bool on);

  /// What the program may do with a file or folder that has this descriptor, its privileges included.
  std::uint32_t rights(const platform::SecurityDescriptor& descriptor);

 private:
  [[nodiscard]] std::string domain_sid() const;

  LabDomain& domain_;
  std::vector<platform::Sid> identifiers_;
  std::set<std::string, std::less<>> enabled_;
};

}  // namespace twk::lab
