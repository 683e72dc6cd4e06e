#include "lab/exchange/exchange_object.hpp"

#include <algorithm>

#include "ads/ads_path.hpp"
#include "ads/dn.hpp"
#include "ads/object_rules.hpp"
#include "base/text.hpp"
#include "lab/domain/domain_rules.hpp"
#include "lab/domain/entry_view.hpp"
#include "lab/exchange/exchange_rules.hpp"
#include "lab/making/exchange_schema.hpp"
#include "lab/store/errors.hpp"

namespace twk::lab {

using platform::ObjectPtr;
using platform::Value;
using platform::ValueList;

namespace {

/// Without the port, which says nothing about an object's place.
std::string_view host_of(std::string_view server) {
  return server.substr(0, server.find(':'));
}

}  // namespace

ObjectPtr bind_exchange_object(EntryStore& store, const std::string& server, std::string_view name) {
  if (!name.empty())
    return std::make_shared<ExchangeObject>(store, server, ads::from_top_down(name));
  const std::vector<const Entry*> roots = store.roots();
  if (roots.empty())
    raise(ads_error::kNoSuchObject, server + " has no organisation");
  return std::make_shared<ExchangeObject>(store, server, roots.front()->dn());
}

ExchangeObject::ExchangeObject(EntryStore& store, std::string server, std::string_view dn)
    : store_(store), server_(std::move(server)) {
  const Entry& entry = require_exchange_entry(store, dn);
  dn_ = entry.dn();
  object_class_ = entry_class(entry);
}

ExchangeObject::ExchangeObject(New, EntryStore& store, std::string server, std::string dn,
                               std::string object_class)
    : store_(store),
      server_(std::move(server)),
      dn_(std::move(dn)),
      object_class_(std::move(object_class)),
      new_(true) {}

std::string ExchangeObject::Name() const {
  return ads::object_name(dn_);
}

std::string ExchangeObject::ADsPath() const {
  return ads::path_prefix(ads::Provider::kLdap, server_) + dn_;
}

std::string ExchangeObject::Parent() const {
  const std::string_view parent = ads::parent_dn(dn_);
  return parent.empty() ? "LDAP:" : ads::path_prefix(ads::Provider::kLdap, server_) + std::string(parent);
}

ObjectPtr ExchangeObject::bind(std::string_view dn) const {
  return std::make_shared<ExchangeObject>(store_, server_, dn);
}

ValueList ExchangeObject::stored(std::string_view attribute) {
  if (new_)
    return {};
  store_.refresh();
  const Entry& entry = require_exchange_entry(store_, dn_);
  return ads::to_value(find_exchange_attribute(attribute), entry.values(attribute)).list();
}

Value ExchangeObject::Get(std::string_view attribute) {
  Value value = staged_.hides_stored(attribute) ? staged_.over(attribute, {})
                                                : staged_.over(attribute, stored(attribute));
  if (value.is_empty())
    raise(ads_error::kPropertyNotFound, dn_ + " has no value for " + std::string(attribute));
  return value;
}

void ExchangeObject::Put(std::string_view attribute, const Value& value) {
  staged_.stage(2, attribute, value);
}

void ExchangeObject::PutEx(int control, std::string_view attribute, const Value& value) {
  staged_.stage(control, attribute, value);
}

void ExchangeObject::SetInfo() {
  if (new_) {
    add_exchange_object(store_, object_class_, dn_, staged_.changes());
    new_ = false;
  } else {
    modify_exchange_object(store_, dn_, staged_.changes());
  }
  staged_.clear();
}

void ExchangeObject::foresee_write() {
  if (new_)
    check_exchange_object(store_, object_class_, dn_, staged_.changes());
  else
    check_exchange_changes(store_, dn_, staged_.changes());
}

void ExchangeObject::foresee_password(std::string_view password) {
  SetPassword(password);  // always refused: only accounts have one
}

void ExchangeObject::enumerate(std::span<const std::string> classes,
                               const std::function<bool(const ObjectPtr&)>& visit) {
  store_.refresh();
  std::vector<std::string> names;
  store_.children(require_exchange_entry(store_, dn_), [&](const Entry& child) {
    if (ads::is_wanted(classes, entry_class(child)))
      names.push_back(child.dn());
    return true;
  });
  for (const std::string& name : names) {
    // What was visited before may have deleted this one.
    if (store_.find(name) != nullptr && !visit(bind(name)))
      return;
  }
}

std::string ExchangeObject::existing_child(std::string_view object_class,
                                           std::string_view relative_name) const {
  store_.refresh();
  const Entry& child = require_exchange_entry(store_, std::string(relative_name) + "," + dn_);
  if (!object_class.empty() && !has_class(child, object_class))
    raise(ads_error::kNoSuchObject, child.dn() + " is not of class " + std::string(object_class));
  return child.dn();
}

ObjectPtr ExchangeObject::GetObject(std::string_view object_class, std::string_view relative_name) {
  return bind(existing_child(object_class, relative_name));
}

ObjectPtr ExchangeObject::Create(std::string_view object_class, std::string_view relative_name) {
  if (!base::starts_with_fold(relative_name, "CN="))
    raise(ads_error::kInvalidDn, "The name \"" + std::string(relative_name) + "\" must begin with CN=");
  return ObjectPtr(new ExchangeObject(New{}, store_, server_, ads::child_dn(object_class, relative_name, dn_),
                                      std::string(object_class)));
}

void ExchangeObject::Delete(std::string_view object_class, std::string_view relative_name) {
  delete_exchange_object(store_, existing_child(object_class, relative_name));
}

std::string ExchangeObject::member_dn(std::string_view path) const {
  const ads::AdsPath parsed = ads::parse_ads_path(path);
  if (parsed.kind != ads::AdsPath::Kind::kEntry ||
      !base::equals_fold(host_of(parsed.server), host_of(server_)))
    raise(ads_error::kNoSuchObject, "Not an object of this directory: " + std::string(path));
  store_.refresh();
  return require_exchange_entry(store_, ads::from_top_down(parsed.name)).dn();
}

void ExchangeObject::Add(std::string_view path) {
  store_.modify(dn_, {{ModifyKind::kAdd, "member", {member_dn(path)}}}, {});
}

void ExchangeObject::Remove(std::string_view path) {
  store_.modify(dn_, {{ModifyKind::kDelete, "member", {member_dn(path)}}}, {});
}

bool ExchangeObject::IsMember(std::string_view path) {
  const std::string member = member_dn(path);
  return store_.is_member(require_exchange_entry(store_, dn_), require_exchange_entry(store_, member));
}

std::vector<ObjectPtr> ExchangeObject::bind_all(std::string_view attribute) {
  store_.refresh();
  std::vector<ObjectPtr> objects;
  for (const std::string& dn : require_exchange_entry(store_, dn_).values(attribute)) {
    if (store_.find(dn) != nullptr)
      objects.push_back(bind(dn));
  }
  return objects;
}

std::vector<ObjectPtr> ExchangeObject::Members() {
  return bind_all("member");
}

std::vector<ObjectPtr> ExchangeObject::Groups() {
  return bind_all("memberOf");
}

}  // namespace twk::lab
