#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ads/ads_path.hpp"
#include "lab/domain/account_rules.hpp"
#include "lab/domain/lab_domain.hpp"

/// What the directory does by itself, and what it refuses, when objects are made, changed, moved and deleted.
///
/// A new user is an enabled account (userAccountControl 512) in the primary group Domain Users, without a
/// password and with "must change password" set, as an account tool expects to find it: it can be disabled,
/// never needs to be enabled. Today's domains set 546 and wait for a password first.
namespace twk::lab {

/// Makes a user, group, contact or organizational unit with its identifiers and defaults. Raises
/// kObjectExists for a name or account name in use (through WinNT kUserExists or kGroupExists), kNoSuchObject
/// without its parent, kUnwilling for a class or a place that is not allowed, and what `to_modifications`
/// raises. `own` is what the directory writes to it first, in stored form.
void add_object(LabDomain& domain, ads::Provider provider, std::string_view object_class,
                const std::string& dn, const std::vector<ads::StagedChange>& values,
                const std::vector<Modification>& own = {});
/// Raises what `add_object` would raise, and makes nothing.
void check_new_object(LabDomain& domain, ads::Provider provider, std::string_view object_class,
                      const std::string& dn, const std::vector<ads::StagedChange>& values);
/// All changes or none. An account name in use is refused as above; "primaryGroupID" follows
/// `PrimaryGroupChange`.
void modify_object(LabDomain& domain, ads::Provider provider, const std::string& dn,
                   const std::vector<ads::StagedChange>& changes);
/// Raises what `modify_object` would raise, and changes nothing.
void check_changes(LabDomain& domain, ads::Provider provider, const std::string& dn,
                   const std::vector<ads::StagedChange>& changes);
/// Raises kNotOnNonLeaf for an object with children, kUnwilling for one that the domain needs and for a group
/// that is anyone's primary group.
void delete_object(LabDomain& domain, const std::string& dn);
/// To a new name, a new parent or both. Raises kObjectExists when that name is in use, kUnwilling for an
/// object that the domain needs, a place that is not allowed or one below itself.
void move_object(LabDomain& domain, const std::string& dn, const std::string& new_dn);

}  // namespace twk::lab
