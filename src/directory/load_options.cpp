#include "directory/load_options.hpp"

#include "base/text.hpp"
#include "session/session.hpp"
#include "session/settings.hpp"
#include "session/settings_schema.hpp"

namespace twk::directory {
namespace {

std::string setting(session::Session& session, std::string_view name) {
  return base::upper(base::trim(session::read_setting(session, session::kADO, name)));
}

bool is_true(session::Session& session, std::string_view name) {
  return setting(session, name) == "TRUE";
}

void read_number(session::Session& session, std::string_view name, std::int32_t& number) {
  const auto value = base::to_number(setting(session, name));
  if (value && *value > 0)
    number = *value;
}

}  // namespace

LoadOptions read_load_options(session::Session& session) {
  LoadOptions options;
  read_number(session, "PageSize", options.PageSize);
  read_number(session, "UserLimit", options.UserLimit);
  options.SkipUsers = skips_users(session);
  options.SkipGroups = is_true(session, "SkipGroups");
  options.LoadAllUsers = is_true(session, "LoadAllUsers");
  options.TemplateGroupsOnly = is_true(session, "TemplateGroupsOnly");
  options.Asynchronous = setting(session, "Asynchronous") != "FALSE";
  if (setting(session, "Search") == "LDAP://")
    options.Search = "LDAP://";
  const std::string sort = setting(session, "Sort");
  options.Sort = sort.empty() || sort == "TRUE";
  const std::string cache = setting(session, "UseCacheFiles");
  options.UseCacheFiles = cache.empty() || cache == "TRUE";
  return options;
}

bool skips_users(session::Session& session) {
  return is_true(session, "SkipUsers");
}

bool shows_names(session::Session& session) {
  return !session::read_switch(session, session::kPreferences, "DisplayName");
}

void store_load_options(session::Session& session, const LoadOptionTexts& options) {
  const auto write = [&](std::string_view name, std::string_view value) {
    session::write_setting(session, session::kADO, name, value);
  };
  const auto write_switch = [&](std::string_view name, bool value) { write(name, value ? "True" : "False"); };
  write("PageSize", options.PageSize);
  write("UserLimit", options.UserLimit);
  write_switch("SkipUsers", options.SkipUsers);
  write_switch("SkipGroups", options.SkipGroups);
  write_switch("LoadAllUsers", options.LoadAllUsers);
  write_switch("TemplateGroupsOnly", options.TemplateGroupsOnly);
  write("Search", options.over_ldap ? "LDAP://" : "GC://");
  write_switch("Sort", options.Sort);
}

platform::QueryOptions query_options(const LoadOptions& options) {
  platform::QueryOptions properties;
  properties.cache_results = false;
  properties.asynchronous = options.Asynchronous;
  properties.page_size = options.PageSize;
  if (options.Sort)
    properties.sort_on = "name";
  return properties;
}

}  // namespace twk::directory
