#include "ads/ads_path.hpp"

#include <vector>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/directory.hpp"

namespace twk::ads {
namespace {

using Kind = AdsPath::Kind;

[[noreturn]] void bad_path(std::string_view path) {
  base::raise(platform::ads_error::kBadPathname, "Not a path of a directory: " + std::string(path));
}

AdsPath parse_ldap(Provider provider, std::string_view rest, std::string_view whole) {
  AdsPath path{.provider = provider, .kind = Kind::kEntry, .server = {}, .name = {}, .account_class = {}};
  const std::size_t slash = rest.find('/');
  const std::string_view first = rest.substr(0, slash);
  if (first.empty())
    bad_path(whole);
  if (base::equals_fold(first, "Schema") && provider == Provider::kLdap) {
    path.kind = Kind::kSchema;
    if (slash != base::npos)
      path.name = rest.substr(slash + 1);
    return path;
  }
  if (base::equals_fold(rest, "RootDSE")) {
    path.kind = Kind::kRootDse;
    return path;
  }
  if (first.find('=') != base::npos) {
    path.name = rest;
    return path;
  }
  path.server = first;
  if (slash == base::npos)
    return path;
  path.name = rest.substr(slash + 1);
  if (base::equals_fold(path.name, "RootDSE")) {
    path.kind = Kind::kRootDse;
    path.name.clear();
  } else if (path.name.find('=') == base::npos) {
    bad_path(whole);
  }
  return path;
}

AdsPath parse_winnt(std::string_view rest, std::string_view whole) {
  AdsPath path{
      .provider = Provider::kWinnt, .kind = Kind::kDomain, .server = {}, .name = {}, .account_class = {}};
  const std::vector<std::string> parts = base::split(rest, '/');
  if (parts.empty() || parts.size() > 3)
    bad_path(whole);
  for (const std::string& part : parts) {
    if (part.empty())
      bad_path(whole);
  }
  path.server = parts[0];
  const std::size_t server_class = path.server.find(',');
  if (server_class != base::npos)
    path.server.resize(server_class);
  if (parts.size() == 1)
    return path;
  if (base::equals_fold(parts[1], "lanmanserver")) {
    path.kind = parts.size() == 2 ? Kind::kFileServer : Kind::kFileShare;
    if (parts.size() == 3)
      path.name = parts[2];
    return path;
  }
  if (parts.size() == 3)
    bad_path(whole);
  path.kind = Kind::kAccount;
  const std::size_t comma = parts[1].find(',');
  path.name = parts[1].substr(0, comma);
  if (comma != base::npos)
    path.account_class = base::trim(std::string_view(parts[1]).substr(comma + 1));
  if (path.name.empty())
    bad_path(whole);
  return path;
}

}  // namespace

AdsPath parse_ads_path(std::string_view path) {
  const std::size_t colon = path.find(':');
  if (colon == base::npos)
    bad_path(path);
  const std::string_view word = path.substr(0, colon);
  std::string_view rest = path.substr(colon + 1);
  Provider provider = Provider::kLdap;
  if (base::equals_fold(word, "GC")) {
    provider = Provider::kGc;
  } else if (base::equals_fold(word, "WinNT")) {
    provider = Provider::kWinnt;
  } else if (!base::equals_fold(word, "LDAP")) {
    bad_path(path);
  }
  if (rest.empty() || rest == "//") {
    return {.provider = provider, .kind = Kind::kNamespace, .server = {}, .name = {}, .account_class = {}};
  }
  if (!rest.starts_with("//"))
    bad_path(path);
  rest.remove_prefix(2);
  return provider == Provider::kWinnt ? parse_winnt(rest, path) : parse_ldap(provider, rest, path);
}

std::string path_prefix(Provider provider, std::string_view server) {
  std::string prefix = provider == Provider::kGc     ? "GC://"
                       : provider == Provider::kLdap ? "LDAP://"
                                                     : "WinNT://";
  if (!server.empty())
    prefix.append(server).push_back('/');
  return prefix;
}

}  // namespace twk::ads
