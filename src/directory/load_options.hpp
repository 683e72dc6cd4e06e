#pragma once

#include <cstdint>
#include <string>

#include "platform/query.hpp"

namespace twk::session {
struct Session;
}

namespace twk::directory {

/// How a directory is loaded: the settings under "ADO", read again by each load and each expansion of an OU.
struct LoadOptions {
  std::int32_t PageSize = 1000;
  std::int32_t UserLimit = 99999;  ///< users shown in one OU
  bool SkipUsers = false;
  bool SkipGroups = false;
  bool UseCacheFiles = true;
  std::string Search = "GC://";  ///< "GC://" or "LDAP://"
  bool Asynchronous = true;
  bool LoadAllUsers = false;
  bool TemplateGroupsOnly = false;
  bool Sort = true;
};

/// An absent value, or an invalid number, leaves the default.
LoadOptions read_load_options(session::Session& session);
/// `SkipUsers` alone.
bool skips_users(session::Session& session);

/// Whether the tree and the lists show users by their names, not by their display names.
bool shows_names(session::Session& session);

/// What is stored of them. An empty number means the default.
struct LoadOptionTexts {
  std::string PageSize;
  std::string UserLimit;
  bool SkipUsers = false;
  bool SkipGroups = false;
  bool LoadAllUsers = false;
  bool TemplateGroupsOnly = false;
  bool over_ldap = false;  ///< otherwise the global catalog
  bool Sort = true;
};

/// The options that the next load reads.
void store_load_options(session::Session& session, const LoadOptionTexts& options);

/// Command properties of the queries for OUs and groups.
platform::QueryOptions query_options(const LoadOptions& options);

}  // namespace twk::directory
