#pragma once

#include <string>
#include <string_view>

namespace twk::ads {

enum class Provider { kLdap, kGc, kWinnt };

/// An ADsPath taken apart.
struct AdsPath {
  enum class Kind {
    kNamespace,   ///< "LDAP:", "GC:", "WinNT:"
    kRootDse,     ///< "LDAP://[server/]RootDSE"
    kSchema,      ///< "LDAP://Schema" or, with `name`, "LDAP://Schema/User"
    kEntry,       ///< "LDAP://[server/]<dn>"; `name` is the DN, empty for "LDAP://<dns domain>"
    kDomain,      ///< "WinNT://TWK"
    kAccount,     ///< "WinNT://TWK/jo[,user]"
    kFileServer,  ///< "WinNT://FS1/lanmanserver"
    kFileShare    ///< "WinNT://FS1/lanmanserver/Users"
  };

  Provider provider = Provider::kLdap;
  Kind kind = Kind::kNamespace;
  std::string server;  ///< as written; empty when left out
  std::string name;
  std::string account_class;  ///< after the comma of a WinNT account; may be empty
};

/// Raises kBadPathname for text of no known form. Provider names and fixed words fold case; a DN keeps its
/// escapes and its slashes, whether written "\/" or bare.
AdsPath parse_ads_path(std::string_view path);

/// "LDAP://twk.test/", "GC://": what precedes the DN in paths of this provider and server.
std::string path_prefix(Provider provider, std::string_view server);

}  // namespace twk::ads
