#include "lab/domain/passwords.hpp"

#include <algorithm>

#include "ads/password_rules.hpp"
#include "base/random.hpp"
#include "base/text.hpp"
#include "lab/domain/account_rules.hpp"
#include "lab/domain/entry_view.hpp"
#include "lab/store/errors.hpp"
#include "lab/store/sha256.hpp"

namespace twk::lab {
namespace {

constexpr std::string_view kVerifier = "supplementalCredentials";
constexpr std::size_t kSaltBytes = 16;

std::string make_verifier(std::string_view salt, std::string_view password) {
  const auto digest = sha256(std::string(salt).append(password));
  return std::string(salt).append(digest.begin(), digest.end());
}

bool verifies(std::string_view verifier, std::string_view password) {
  if (verifier.size() <= kSaltBytes)
    return false;
  const std::string expected = make_verifier(verifier.substr(0, kSaltBytes), password);
  unsigned difference = expected.size() == verifier.size() ? 0 : 1;
  for (std::size_t i = 0; i < std::min(expected.size(), verifier.size()); ++i) {
    difference |= static_cast<unsigned char>(expected[i]) ^ static_cast<unsigned char>(verifier[i]);
  }
  return difference == 0;
}

}  // namespace

void check_password(const LabDomain& domain, std::string_view password, std::string_view account_name) {
  const PasswordPolicy& policy = domain.config.passwords;
  const std::string why =
      ads::why_password_is_refused({policy.minimum_length, policy.complexity}, password, account_name);
  if (!why.empty())
    raise(ads_error::kPasswordPolicy, "The password " + why);
}

std::vector<Modification> password_changes(LabDomain& domain, std::string_view password,
                                           std::string_view account_name) {
  check_password(domain, password, account_name);
  const base::Bytes salt = base::random_bytes(kSaltBytes);
  return {{ModifyKind::kReplace,
           std::string(kVerifier),
           {make_verifier(std::string(salt.begin(), salt.end()), password)}},
          {ModifyKind::kReplace, "pwdLastSet", {filetime_now(domain)}}};
}

void set_password(LabDomain& domain, const std::string& dn, std::string_view password) {
  domain.store.refresh();
  const Entry& entry = require_entry(domain, dn);
  if (!has_class(entry, "user"))
    raise(ads_error::kUnwilling, dn + " has no password");
  domain.store.modify(dn, password_changes(domain, password, entry.value("sAMAccountName").value_or("")),
                      [] {});
}

bool is_password(const Entry& entry, std::string_view password) {
  return verifies(entry.value(kVerifier).value_or(""), password);
}

}  // namespace twk::lab
