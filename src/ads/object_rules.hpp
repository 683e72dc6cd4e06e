#pragma once

#include <string>
#include <string_view>

/// Rules that a directory of this kind has for names and values, so that every implementation refuses the
/// same things with the same numbers, including names that a server would accept but no tool can handle
/// afterwards.
namespace twk::ads {

/// Raises kInvalidAccountName for a name that is empty, too long (20 characters for a user, 256 for a group),
/// is not UTF-8, holds a control character or one of "/\[]:;|=,+*?<>", ends in a dot, or consists of blanks
/// and dots. [MS-SAMR] 3.1.1.6; a "$" at the end and a "%" are accepted, as servers do.
void check_account_name(std::string_view name, bool user);

/// The name of a new object below `parent_dn`. Raises kInvalidDn for a relative name that is not one part,
/// not of the type that the class is named by, empty, longer than 64 characters, not UTF-8, or holds a
/// control character.
std::string child_dn(std::string_view object_class, std::string_view relative_name,
                     std::string_view parent_dn);

/// Rules of single attributes beyond their syntax: "sAMAccountName" is an account name, "logonHours" has 21
/// bytes, "pwdLastSet" takes 0 (must change) and -1 (now), "lockoutTime" 0. Raises kConstraint,
/// kInvalidAccountName, kUnwilling.
void check_value(std::string_view attribute, std::string_view raw, bool user);

}  // namespace twk::ads
