#pragma once

#include <gmock/gmock.h>

#include <cstdint>
#include <memory>
#include <string>

#include "platform/adsi.hpp"
#include "platform/directory.hpp"
#include "platform/files.hpp"
#include "platform/network.hpp"
#include "platform/query.hpp"
#include "platform/security.hpp"
#include "support/access_list.hpp"
#include "support/number_of.hpp"
#include "support/store.hpp"

/// The contract suites run against any implementation of the seam: each asks a `World` for a domain.
namespace twk::contract {

/// A native-mode domain that a test may write to: what every domain has, one empty unit, and a file server
/// with a drive D that holds the folder "Users".
class World {
 public:
  virtual ~World() = default;
  virtual platform::DirectoryService& directory() = 0;
  virtual platform::QueryService& query() = 0;
  virtual platform::Files& files() = 0;
  virtual platform::Security& security() = 0;
  virtual platform::Network& network() = 0;
  [[nodiscard]] static std::string domain() { return "twk.test"; }
  [[nodiscard]] static std::string netbios() { return "TWK"; }
  [[nodiscard]] static std::string root() { return "DC=twk,DC=test"; }
  [[nodiscard]] virtual std::string unit() const = 0;         ///< DN of the empty unit
  [[nodiscard]] virtual std::string file_server() const = 0;  ///< "FS1"
  /// True if a server prevents a shared folder from being renamed and removed.
  [[nodiscard]] virtual bool server_guards_shared_folders() const { return true; }
  /// True if a server grants an administrator's privileges by itself, whatever the process switches on.
  [[nodiscard]] virtual bool server_holds_privileges() const { return false; }
  /// How the file server spells the path of a folder that it shares.
  [[nodiscard]] virtual std::string told_path(std::string path) const { return path; }
};

using MakeWorld = std::unique_ptr<World> (*)();

/// Each test of a contract has its own world.
class Contract : public testing::TestWithParam<MakeWorld> {
 protected:
  std::unique_ptr<World> world_ = GetParam()();
  World& w_ = *world_;
};

using test::number_of;
using test::store;

inline platform::ObjectPtr get_entry(World& world, const std::string& dn) {
  return world.directory().GetObject("LDAP://" + world.domain() + "/" + dn);
}

inline platform::ObjectPtr get_account(World& world, const std::string& name) {
  return world.directory().GetObject("WinNT://" + world.netbios() + "/" + name);
}

/// A stored user "CN=<cn>" of the unit.
inline platform::ObjectPtr make_user(World& world, const std::string& cn, const std::string& account) {
  return store(get_entry(world, world.unit())->Create("user", "cn=" + cn), {{"samAccountName", account}});
}

/// A stored global security group "CN=<name>" of the unit.
inline platform::ObjectPtr make_group(World& world, const std::string& name) {
  return store(get_entry(world, world.unit())->Create("group", "cn=" + name),
               {{"samAccountName", name}, {"groupType", static_cast<std::int32_t>(0x80000002U)}});
}

inline std::vector<std::string> names_of(const std::vector<platform::ObjectPtr>& objects) {
  std::vector<std::string> names;
  for (const platform::ObjectPtr& object : objects)
    names.push_back(object->Name());
  return names;
}

inline platform::ShareInfo502 share_of(std::string name, std::string path = "D:\\Users") {
  platform::ShareInfo502 info;
  info.shi502_netname = std::move(name);
  info.shi502_path = std::move(path);
  info.shi502_remark = "Users Home Share";
  return info;
}

/// What a container holds of these classes; of all classes when none is named.
inline std::vector<platform::ObjectPtr> children_of(const platform::ObjectPtr& container,
                                                    const std::vector<std::string>& classes = {}) {
  std::vector<platform::ObjectPtr> children;
  container->enumerate(classes, [&](const platform::ObjectPtr& child) {
    children.push_back(child);
    return true;
  });
  return children;
}

/// Field `index` of all rows that a query finds.
inline std::vector<std::string> column_of(World& world, const std::string& query, std::size_t index = 0,
                                          const platform::QueryOptions& options = {}) {
  std::vector<std::string> fields;
  const auto rows = world.query().execute(platform::parse_query_text(query), options);
  for (; !rows->at_eof(); rows->MoveNext())
    fields.push_back(rows->field(index).text());
  return fields;
}

}  // namespace twk::contract
