#include "lab/domain/passwords.hpp"

#include <algorithm>

#include "base/random.hpp"
#include "base/text.hpp"
#include "lab/domain/account_rules.hpp"
#include "lab/domain/entry_view.hpp"
#include "lab/store/errors.hpp"
#include "lab/store/sha256.hpp"
#include "platform/adsi.hpp"

namespace twk::lab {
namespace {

constexpr std::string_view kVerifier = "supplementalCredentials";
constexpr std::size_t kSaltBytes = 16;
constexpr std::size_t kShortestNameThatCounts = 3;

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

bool is_complex(std::string_view password) {
  bool capital = false;
  bool small = false;
  bool digit = false;
  bool other = false;
  for (const char32_t code : base::to_utf32(password)) {
    const std::string letter = base::to_utf8(std::u32string(1, code));
    if (code >= U'0' && code <= U'9') {
      digit = true;
    } else if (base::lower(letter) != letter) {
      capital = true;
    } else if (base::upper(letter) != letter) {
      small = true;
    } else {
      other = true;
    }
  }
  return static_cast<int>(capital) + static_cast<int>(small) + static_cast<int>(digit) +
             static_cast<int>(other) >=
         3;
}

void check_policy(const PasswordPolicy& policy, std::string_view password, std::string_view account_name) {
  const auto refuse = [](const std::string& why) {
    raise(ads_error::kPasswordPolicy, "The password " + why);
  };
  if (base::length(password) < static_cast<std::size_t>(policy.minimum_length)) {
    refuse("has fewer than " + base::to_text(policy.minimum_length) + " characters");
  }
  if (!policy.complexity || password.empty())
    return;
  if (!is_complex(password))
    refuse("does not mix capitals, small letters, digits and other characters");
  if (base::length(account_name) >= kShortestNameThatCounts &&
      base::find_fold(password, account_name) != base::npos) {
    refuse("holds the account's name");
  }
}

const Entry* find_logon(const LabDomain& domain, std::string_view user) {
  const std::size_t backslash = user.find('\\');
  if (backslash != base::npos && user.find('=') == base::npos) {
    if (!is_domain_name(domain, user.substr(0, backslash)))
      return nullptr;
    return domain.store.find_account(user.substr(backslash + 1));
  }
  if (const Entry* const entry = domain.store.find_account(user))
    return entry;
  if (const Entry* const entry = domain.store.find_principal(user))
    return entry;
  const Entry* entry = nullptr;
  base::Trap no_name;
  no_name([&] { entry = domain.store.find(user); });
  return entry;
}

[[noreturn]] void refuse_logon(std::string_view user) {
  raise(ads_error::kLogonFailure, "Unknown user name or bad password: " + base::to_valid_utf8(user));
}

bool is_usable(const LabDomain& domain, const Entry& entry) {
  if ((read_number(entry, "userAccountControl") & platform::kFlagAccountDisabled) != 0)
    return false;
  if (read_number(entry, "lockoutTime") != 0)
    return false;
  const std::int64_t expires = read_number(entry, "accountExpires");
  return expires == 0 || expires > base::to_filetime(domain.clock.utc_now());
}

void count_wrong_password(LabDomain& domain, const Entry& entry) {
  const std::int64_t count = read_number(entry, "badPwdCount") + 1;
  std::vector<Modification> changes = {{ModifyKind::kReplace, "badPwdCount", {base::to_text(count)}}};
  const int threshold = domain.config.passwords.lockout_threshold;
  if (threshold > 0 && count >= threshold) {
    changes.push_back({ModifyKind::kReplace, "lockoutTime", {filetime_now(domain)}});
  }
  domain.store.modify(std::string(entry.dn()), changes, [] {});
}

}  // namespace

void check_password(const LabDomain& domain, std::string_view password, std::string_view account_name) {
  check_policy(domain.config.passwords, password, account_name);
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

void check_logon(LabDomain& domain, std::string_view user, std::string_view password) {
  domain.store.refresh();
  const Entry* const entry = find_logon(domain, user);
  if (entry == nullptr || !is_user(*entry) || !is_usable(domain, *entry))
    refuse_logon(user);
  if (!verifies(entry->value(kVerifier).value_or(""), password)) {
    count_wrong_password(domain, *entry);
    refuse_logon(user);
  }
  if (read_number(*entry, "badPwdCount") != 0) {
    domain.store.modify(std::string(entry->dn()), {{ModifyKind::kReplace, "badPwdCount", {"0"}}}, [] {});
  }
}

}  // namespace twk::lab
