#pragma once

#include <string>
#include <string_view>

/// Arithmetic on distinguished names and directory paths, as the tree and the lists use it. Keys of user and
/// group rows are LDAP paths "LDAP://<domain>/<dn>", keys of OU nodes bare distinguished names.
namespace twk::directory {

/// The text of the placeholder child of an OU node that has not been read yet.
inline constexpr std::string_view kDummyNode = "removedummykey";

/// "DC=twk,DC=test" of "twk.test".
std::string domain_distinguished_name(std::string_view domain_name);
/// "twk.test" of "DC=twk,DC=test".
std::string domain_dns_name(std::string_view distinguished_name);
/// The distinguished name of the OU or domain above an OU; empty when there is none.
std::string parent_of_ou(std::string_view distinguished_name);
/// The distinguished name of what is above a user, from the user's path; empty when there is none.
std::string parent_of_user(std::string_view ads_path);
/// The distinguished name of what is directly above; empty at the top. A comma after a backslash is part of
/// a name.
std::string_view name_above(std::string_view distinguished_name);
/// What is in front of that: "CN=Smith\, Jo" of "CN=Smith\, Jo,OU=Sales,DC=twk,DC=test".
std::string_view relative_name(std::string_view distinguished_name);
/// "CN=Jo,OU=Sales,DC=twk,DC=test" of "LDAP://twk.test/CN=Jo,OU=Sales,DC=twk,DC=test": from the "CN=" on.
std::string_view name_in_path(std::string_view ads_path);
/// A path found with the search prefix "GC://" as the LDAP path of the same object; any other is unchanged.
std::string rewrite_path(std::string_view search_prefix, std::string_view ads_path);
/// The key of the root of a WinNT domain's tree, and of a user below it: the account's name, for the account
/// "root" with a backslash, which no name contains, so that both can be in the tree.
inline constexpr std::string_view kNtRoot = "root";
std::string nt_user_key(std::string_view account);
/// "Sales" of "OU=Sales,DC=twk,DC=test".
std::string ou_name(std::string_view distinguished_name);

}  // namespace twk::directory
