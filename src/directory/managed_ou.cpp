#include "directory/managed_ou.hpp"

#include "session/settings.hpp"

namespace twk::directory {
namespace {

using session::Session;

void store_limit(Session& session, std::uint32_t hive, std::string_view ou, std::string_view sub_ous) {
  session::write_setting(session, session::kSetup, "OU", ou, hive);
  session::write_setting(session, session::kSetup, "SUBOU", sub_ous, hive);
}

/// The limit may have been stored for the person, for the machine or for both.
void lift_stored_limit(Session& session) {
  if (!session::read_setting(session, session::kSetup, "OU").empty())
    store_limit(session, platform::kHiveLocalMachine, {}, "Yes");
  store_limit(session, platform::kHiveCurrentUser, {}, "Yes");
}

}  // namespace

void limit_to_ou(Session& session, const std::string& distinguished_name, bool sub_ous, std::uint32_t hive) {
  session.ManagedOU = distinguished_name;
  session.ManageSubOUs = sub_ous;
  store_limit(session, hive, distinguished_name, sub_ous ? "Yes" : "No");
}

void lift_limit(Session& session) {
  lift_stored_limit(session);
  session.ManagedOU.clear();
  session.ManageSubOUs = true;
}

}  // namespace twk::directory
