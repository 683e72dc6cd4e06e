#pragma once

#include <string>
#include <utility>
#include <vector>

#include "ads/basic_object.hpp"

namespace twk::ads {

/// "LDAP:", "GC:" or "WinNT:", whose children are the domains that can be seen.
class NamespaceObject final : public BasicObject {
 public:
  /// `bind_domain` binds a child by its path.
  NamespaceObject(std::string name, std::string child_class, std::vector<std::string> children,
                  std::function<platform::ObjectPtr(const std::string&)> bind_domain);

  [[nodiscard]] std::string Name() const override { return name_; }
  [[nodiscard]] std::string Class() const override { return "Namespace"; }
  [[nodiscard]] std::string ADsPath() const override { return name_; }
  [[nodiscard]] std::string Parent() const override { return "ADs:"; }
  void enumerate(std::span<const std::string> classes,
                 const std::function<bool(const platform::ObjectPtr&)>& visit) override;

 private:
  std::string name_;
  std::string child_class_;
  std::vector<std::string> children_;
  std::function<platform::ObjectPtr(const std::string&)> bind_domain_;
};

}  // namespace twk::ads
