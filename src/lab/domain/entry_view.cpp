#include "lab/domain/entry_view.hpp"

#include <algorithm>
#include <array>
#include <charconv>

#include "ads/dn.hpp"
#include "ads/sid.hpp"
#include "base/text.hpp"
#include "lab/store/errors.hpp"
#include "platform/adsi.hpp"

namespace twk::lab {
namespace {

bool is_secret(std::string_view attribute) {
  return base::equals_fold(attribute, "supplementalCredentials") ||
         base::equals_fold(attribute, "unicodePwd") || base::equals_fold(attribute, "userPassword");
}

std::vector<std::string> primary_group_token(const Entry& entry) {
  const auto sid = entry.value("objectSid");
  if (!sid || !has_class(entry, "group"))
    return {};
  const auto rid = ads::rid_of(*sid);
  // The token is sent as a signed 32-bit integer.
  return rid ? std::vector{base::to_text(static_cast<std::int32_t>(*rid))} : std::vector<std::string>{};
}

constexpr std::string_view kComputedFlags = "msDS-User-Account-Control-Computed";
constexpr std::array<std::string_view, 11> kComputed = {"distinguishedName",
                                                        "name",
                                                        "cn",
                                                        "ou",
                                                        "primaryGroupToken",
                                                        "nTMixedDomain",
                                                        kComputedFlags,
                                                        "maxPwdAge",
                                                        "lockoutDuration",
                                                        "lockOutObservationWindow",
                                                        "lockoutThreshold"};

/// True for what `read_attribute` may answer otherwise than it is stored.
bool is_computed(std::string_view attribute) {
  return is_secret(attribute) || std::any_of(kComputed.begin(), kComputed.end(), [&](std::string_view name) {
           return base::equals_fold(name, attribute);
         });
}

/// The lock among the account's flags, where the policy ends locks by itself.
std::vector<std::string> computed_flags(const LabDomain& domain, const Entry& entry) {
  if (domain.config.passwords.lockout_duration == 0 || read_number(entry, "lockoutTime") == 0)
    return {};
  const bool locked = is_locked(domain, entry, base::to_filetime(domain.clock.utc_now()));
  return {base::to_text(locked ? platform::kFlagLockedOut : 0)};
}

/// A rule of the domain from its configuration, where the entry itself has none.
std::vector<std::string> rule_of_domain(const LabDomain& domain, std::string_view attribute) {
  constexpr std::int64_t kMinutesOfDay = 1440;
  const PasswordPolicy& policy = domain.config.passwords;
  const auto steps = [](std::int64_t minutes) {
    return std::vector{base::to_text(-minutes * kFiletimeMinute)};
  };
  if (base::equals_fold(attribute, "nTMixedDomain"))
    return {domain.config.kind == DomainKind::kMixed ? "1" : "0"};
  if (base::equals_fold(attribute, "maxPwdAge"))
    return steps(policy.maximum_age * kMinutesOfDay);
  if (base::equals_fold(attribute, "lockoutDuration"))
    return steps(policy.lockout_duration);
  if (base::equals_fold(attribute, "lockOutObservationWindow"))
    return steps(policy.lockout_window);
  if (base::equals_fold(attribute, "lockoutThreshold"))
    return {base::to_text(policy.lockout_threshold)};
  return {};
}

}  // namespace

std::span<const std::string_view> computed_attributes() {
  return kComputed;
}

bool is_locked(const LabDomain& domain, const Entry& entry, std::int64_t now) {
  const std::int64_t since = read_number(entry, "lockoutTime");
  const std::int64_t duration = domain.config.passwords.lockout_duration * kFiletimeMinute;
  return since != 0 && (duration == 0 || since + duration > now);
}

std::string entry_class(const Entry& entry) {
  const std::vector<std::string> classes = entry.values("objectClass");
  return classes.empty() ? std::string("top") : classes.back();
}

bool has_class(const Entry& entry, std::string_view name) {
  return entry.any("objectClass", [&](std::string_view one) { return base::equals_fold(one, name); });
}

bool is_user(const Entry& entry) {
  return has_class(entry, "user") && !has_class(entry, "computer");
}

std::vector<std::string> read_attribute(const LabDomain& domain, const Entry& entry,
                                        std::string_view attribute) {
  if (base::equals_fold(attribute, "distinguishedName"))
    return {entry.dn()};
  if (base::equals_fold(attribute, "name"))
    return {ads::parse_rdn(ads::first_rdn(entry.dn())).value};
  if (base::equals_fold(attribute, "cn") || base::equals_fold(attribute, "ou")) {
    ads::Rdn rdn = ads::parse_rdn(ads::first_rdn(entry.dn()));
    if (base::equals_fold(rdn.type, attribute))
      return {std::move(rdn.value)};
  }
  if (base::equals_fold(attribute, "primaryGroupToken"))
    return primary_group_token(entry);
  if (is_secret(attribute))
    return {};
  if (base::equals_fold(attribute, kComputedFlags))
    return computed_flags(domain, entry);
  std::vector<std::string> values = entry.values(attribute);
  if (values.empty() && is_computed(attribute) && has_class(entry, "domainDNS"))
    return rule_of_domain(domain, attribute);
  return values;
}

std::vector<std::string_view> AttributeViews::operator()(std::string_view attribute) {
  if (!is_computed(attribute))
    return entry_.views(attribute);
  const std::vector<std::string>& values =
      computed_.emplace_front(read_attribute(domain_, entry_, attribute));
  return {values.begin(), values.end()};
}

std::int64_t read_number(const Entry& entry, std::string_view attribute, std::int64_t fallback) {
  const auto text = entry.value(attribute);
  if (!text)
    return fallback;
  std::int64_t number = 0;
  const auto result = std::from_chars(text->data(), text->data() + text->size(), number);
  return result.ec == std::errc{} ? number : fallback;
}

const Entry& require_entry(const LabDomain& domain, std::string_view dn) {
  const Entry* const entry = domain.store.find(dn);
  if (entry == nullptr)
    raise(ads_error::kNoSuchObject, "There is no such object: " + std::string(dn));
  return *entry;
}

const Entry* find_account(const LabDomain& domain, std::string_view name, bool user) {
  const Entry* const entry = domain.store.find_account(name);
  if (entry == nullptr || !(user ? is_user(*entry) : has_class(*entry, "group")))
    return nullptr;
  return entry;
}

bool in_configuration(const LabDomain& domain, std::string_view dn) {
  const std::string& top = domain.configuration_dn;
  if (dn.size() < top.size())
    return false;
  if (dn.size() > top.size() && dn[dn.size() - top.size() - 1] != ',')
    return false;
  return base::equals_fold(dn.substr(dn.size() - top.size()), top);
}

}  // namespace twk::lab
