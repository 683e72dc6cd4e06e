#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "lab/domain/lab_domain.hpp"

/// Passwords. Only a random salt and the SHA-256 digest of salt and password, 16 and 32
/// bytes, are kept.
namespace twk::lab {

/// The changes to an account that a new password makes. Raises kPasswordPolicy for one that the policy of
/// "lab.conf" refuses.
std::vector<Modification> password_changes(LabDomain& domain, std::string_view password,
                                           std::string_view account_name);

/// Raises kPasswordPolicy as `set_password` would.
void check_password(const LabDomain& domain, std::string_view password, std::string_view account_name);

/// Takes effect at once and counts as changed now. Raises kPasswordPolicy for a password that the policy of
/// "lab.conf" refuses, kNoSuchObject, kUnwilling for an object that is not a user.
void set_password(LabDomain& domain, const std::string& dn, std::string_view password);

/// True for the account's own one; nothing is the password of an account without one.
bool is_password(const Entry& entry, std::string_view password);

}  // namespace twk::lab
