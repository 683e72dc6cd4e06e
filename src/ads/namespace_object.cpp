#include "ads/namespace_object.hpp"

namespace twk::ads {

using platform::ObjectPtr;

NamespaceObject::NamespaceObject(std::string name, std::string child_class, std::vector<std::string> children,
                                 std::function<ObjectPtr(const std::string&)> bind_domain)
    : name_(std::move(name)),
      child_class_(std::move(child_class)),
      children_(std::move(children)),
      bind_domain_(std::move(bind_domain)) {}

void NamespaceObject::enumerate(std::span<const std::string> classes,
                                const std::function<bool(const ObjectPtr&)>& visit) {
  if (!is_wanted(classes, child_class_))
    return;
  for (const std::string& child : children_) {
    if (!visit(bind_domain_(child)))
      return;
  }
}

}  // namespace twk::ads
