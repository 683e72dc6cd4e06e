#include "ads/entry_object.hpp"

#include "ads/dn.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/adsi.hpp"

namespace twk::ads {
namespace {

constexpr int kReplace = 2;  // a control code of `PutEx`

}  // namespace

std::string EntryObject::Name() const {
  return object_name(dn());
}

std::string EntryObject::ADsPath() const {
  return whole_path_.empty() ? path_prefix(provider(), server()) + dn() : whole_path_;
}

std::string EntryObject::Parent() const {
  if (base::equals_fold(dn(), root_dn()))
    return provider() == Provider::kGc ? "GC:" : "LDAP:";
  return path_prefix(provider(), server()) + std::string(parent_dn(dn()));
}

platform::Value EntryObject::Get(std::string_view attribute) {
  platform::Value value = attributes().get(attribute_name(attribute));
  if (value.is_empty())
    base::raise(platform::ads_error::kPropertyNotFound, dn() + " has no value for " + std::string(attribute));
  return value;
}

void EntryObject::Put(std::string_view attribute, const platform::Value& value) {
  attributes().stage(kReplace, attribute_name(attribute), value);
}

void EntryObject::PutEx(int control, std::string_view attribute, const platform::Value& value) {
  attributes().stage(control, attribute_name(attribute), value);
}

void EntryObject::require_writable() const {
  if (provider() == Provider::kGc)
    base::raise(platform::ads_error::kUnwilling, "The global catalogue is read-only");
}

std::string_view EntryObject::attribute_name(std::string_view name) const {
  return platform::ldap_attribute(name);
}

}  // namespace twk::ads
