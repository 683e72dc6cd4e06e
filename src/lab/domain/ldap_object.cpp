#include "lab/domain/ldap_object.hpp"

#include "ads/dn.hpp"
#include "ads/object_rules.hpp"
#include "base/text.hpp"
#include "lab/domain/account_path.hpp"
#include "lab/domain/domain_rules.hpp"
#include "lab/domain/entry_view.hpp"
#include "lab/domain/membership.hpp"
#include "lab/domain/passwords.hpp"
#include "lab/store/errors.hpp"

namespace twk::lab {

using platform::ObjectPtr;

LdapObject::LdapObject(StagedEntry entry, ads::Provider provider, std::string server, std::string whole_path)
    : EntryObject(std::move(whole_path)),
      entry_(std::move(entry)),
      provider_(provider),
      server_(std::move(server)) {}

ObjectPtr LdapObject::bind(std::string_view dn) const {
  return std::make_shared<LdapObject>(StagedEntry(domain(), provider_, dn), provider_, server_);
}

std::vector<ObjectPtr> LdapObject::bind_all(const std::vector<std::string>& dns) const {
  std::vector<ObjectPtr> objects;
  objects.reserve(dns.size());
  for (const std::string& dn : dns)
    objects.push_back(bind(dn));
  return objects;
}

void LdapObject::SetInfo() {
  require_writable();
  entry_.commit();
}

void LdapObject::SetPassword(std::string_view password) {
  require_writable();
  set_password(domain(), entry_.dn(), password);
}

bool LdapObject::SetInfoWithPassword(std::string_view password) {
  require_writable();
  base::Trap refused;
  return refused([&] { entry_.add_with_password(password); });
}

void LdapObject::foresee_write() {
  require_writable();
  entry_.foresee();
}

void LdapObject::foresee_password(std::string_view password) {
  require_writable();
  check_password(domain(), password, entry_.get("sAMAccountName").text());
}

void LdapObject::enumerate(std::span<const std::string> classes,
                           const std::function<bool(const ObjectPtr&)>& visit) {
  domain().store.refresh();
  std::vector<std::string> names;
  domain().store.children(require_entry(domain(), entry_.dn()), [&](const Entry& child) {
    const bool other_context = base::equals_fold(child.dn(), domain().configuration_dn);
    if (!other_context && ads::is_wanted(classes, entry_class(child)))
      names.push_back(child.dn());
    return true;
  });
  for (const std::string& name : names) {
    // What was visited before may have deleted this one.
    if (domain().store.find(name) != nullptr && !visit(bind(name)))
      return;
  }
}

std::string LdapObject::existing_child(std::string_view object_class, std::string_view relative_name) const {
  domain().store.refresh();
  static_cast<void>(ads::split_dn(relative_name));
  const Entry& child = require_entry(domain(), std::string(relative_name) + "," + entry_.dn());
  if (!object_class.empty() && !has_class(child, object_class)) {
    raise(ads_error::kNoSuchObject, child.dn() + " is not of class " + std::string(object_class));
  }
  return child.dn();
}

ObjectPtr LdapObject::GetObject(std::string_view object_class, std::string_view relative_name) {
  return bind(existing_child(object_class, relative_name));
}

ObjectPtr LdapObject::Create(std::string_view object_class, std::string_view relative_name) {
  require_writable();
  std::string dn = ads::child_dn(object_class, relative_name, entry_.dn());
  StagedEntry entry(domain(), provider_, std::move(dn), std::string(object_class));
  return std::make_shared<LdapObject>(std::move(entry), provider_, server_);
}

void LdapObject::Delete(std::string_view object_class, std::string_view relative_name) {
  require_writable();
  delete_object(domain(), existing_child(object_class, relative_name));
}

ObjectPtr LdapObject::MoveHere(std::string_view source_path, const std::optional<std::string>& new_name) {
  require_writable();
  domain().store.refresh();
  const std::string source = resolve_entry(domain(), source_path);
  const std::string name = new_name ? *new_name : std::string(ads::first_rdn(source));
  const std::string target = ads::child_dn(entry_class(require_entry(domain(), source)), name, entry_.dn());
  move_object(domain(), source, target);
  return bind(target);
}

std::vector<std::string> LdapObject::resolve_all(std::span<const std::string> paths) const {
  domain().store.refresh();
  std::vector<std::string> dns;
  dns.reserve(paths.size());
  for (const std::string& path : paths)
    dns.push_back(resolve_entry(domain(), path));
  return dns;
}

void LdapObject::Add(std::string_view path) {
  require_writable();
  domain().store.refresh();
  add_members(domain(), entry_.dn(), {resolve_entry(domain(), path)});
}

bool LdapObject::AddTogether(std::span<const std::string> paths) {
  require_writable();
  base::Trap refused;
  return refused([&] { add_members(domain(), entry_.dn(), resolve_all(paths)); });
}

void LdapObject::Remove(std::string_view path) {
  require_writable();
  domain().store.refresh();
  remove_members(domain(), entry_.dn(), {resolve_entry(domain(), path)});
}

bool LdapObject::RemoveTogether(std::span<const std::string> paths) {
  require_writable();
  base::Trap refused;
  return refused([&] { remove_members(domain(), entry_.dn(), resolve_all(paths)); });
}

bool LdapObject::IsMember(std::string_view path) {
  domain().store.refresh();
  return is_member(domain(), entry_.dn(), resolve_entry(domain(), path));
}

std::vector<ObjectPtr> LdapObject::Members() {
  domain().store.refresh();
  return bind_all(require_entry(domain(), entry_.dn()).values("member"));
}

std::vector<ObjectPtr> LdapObject::Groups() {
  domain().store.refresh();
  return bind_all(require_entry(domain(), entry_.dn()).values("memberOf"));
}

}  // namespace twk::lab
