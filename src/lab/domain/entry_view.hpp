#pragma once

#include <forward_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "lab/domain/lab_domain.hpp"
#include "lab/store/entry_store.hpp"

/// Entries as callers see them, with the attributes that a directory computes.
namespace twk::lab {

/// The most special class: "user", "organizationalUnit" …
std::string entry_class(const Entry& entry);
bool has_class(const Entry& entry, std::string_view name);
/// A person's account: of class "user" and not a computer's.
bool is_user(const Entry& entry);

inline constexpr std::int64_t kFiletimeMinute = 600'000'000;

/// The names of the attributes that `read_attribute` computes, besides secret ones.
std::span<const std::string_view> computed_attributes();
/// True for an account that is locked at that moment: a lock ends with the policy's duration.
bool is_locked(const LabDomain& domain, const Entry& entry, std::int64_t now);

/// The raw values; computed ones ("distinguishedName", "name", "cn" and "ou" of the name itself,
/// "primaryGroupToken", the policy of "lab.conf" on the domain, what a lock's duration makes of it) are made
/// here. Stored password digests are never returned.
std::vector<std::string> read_attribute(const LabDomain& domain, const Entry& entry,
                                        std::string_view attribute);

/// The same as views, which are valid as long as this and the entry: what is stored is not copied.
class AttributeViews {
 public:
  AttributeViews(const LabDomain& domain, const Entry& entry) : domain_(domain), entry_(entry) {}

  std::vector<std::string_view> operator()(std::string_view attribute);

 private:
  const LabDomain& domain_;
  const Entry& entry_;
  std::forward_list<std::vector<std::string>> computed_;
};

/// The first value of an attribute as a number; `fallback` when it has none.
std::int64_t read_number(const Entry& entry, std::string_view attribute, std::int64_t fallback = 0);

/// The entry of that name. Raises kNoSuchObject.
const Entry& require_entry(const LabDomain& domain, std::string_view dn);
/// The account of that logon name, a user's or a group's. None when there is no such account.
const Entry* find_account(const LabDomain& domain, std::string_view name, bool user);

/// True for an entry of the configuration, which is a naming context of its own below the domain's name.
bool in_configuration(const LabDomain& domain, std::string_view dn);

}  // namespace twk::lab
