#include "ads/basic_object.hpp"

#include <algorithm>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/directory.hpp"

namespace twk::ads {

using platform::ObjectPtr;
using platform::Value;

void BasicObject::not_implemented(std::string_view operation) const {
  base::raise(platform::ads_error::kNotImplementedByProvider,
              ADsPath() + " has no operation " + std::string(operation));
}

Value BasicObject::Get(std::string_view /*attribute*/) {
  not_implemented("Get");
}
void BasicObject::Put(std::string_view /*attribute*/, const Value& /*value*/) {
  not_implemented("Put");
}
void BasicObject::PutEx(int /*control*/, std::string_view /*attribute*/, const Value& /*value*/) {
  not_implemented("PutEx");
}
void BasicObject::SetInfo() {
  not_implemented("SetInfo");
}
void BasicObject::SetPassword(std::string_view /*password*/) {
  not_implemented("SetPassword");
}
void BasicObject::enumerate(std::span<const std::string> /*classes*/,
                            const std::function<bool(const ObjectPtr&)>& /*visit*/) {
  not_implemented("enumeration");
}
ObjectPtr BasicObject::GetObject(std::string_view /*object_class*/, std::string_view /*relative_name*/) {
  not_implemented("GetObject");
}
ObjectPtr BasicObject::Create(std::string_view /*object_class*/, std::string_view /*relative_name*/) {
  not_implemented("Create");
}
void BasicObject::Delete(std::string_view /*object_class*/, std::string_view /*relative_name*/) {
  not_implemented("Delete");
}
ObjectPtr BasicObject::MoveHere(std::string_view /*source_path*/,
                                const std::optional<std::string>& /*new_name*/) {
  not_implemented("MoveHere");
}
void BasicObject::Add(std::string_view /*path*/) {
  not_implemented("Add");
}
void BasicObject::Remove(std::string_view /*path*/) {
  not_implemented("Remove");
}
bool BasicObject::IsMember(std::string_view /*path*/) {
  not_implemented("IsMember");
}
std::vector<ObjectPtr> BasicObject::Members() {
  not_implemented("Members");
}
std::vector<ObjectPtr> BasicObject::Groups() {
  not_implemented("Groups");
}
std::string BasicObject::Syntax() {
  not_implemented("Syntax");
}
bool BasicObject::MultiValued() {
  not_implemented("MultiValued");
}

bool is_wanted(std::span<const std::string> classes, std::string_view object_class) {
  return classes.empty() || std::any_of(classes.begin(), classes.end(), [&](const std::string& one) {
           return base::equals_fold(one, object_class);
         });
}

}  // namespace twk::ads
