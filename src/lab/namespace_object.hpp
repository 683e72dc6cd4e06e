#pragma once

#include <string>
#include <utility>
#include <vector>

#include "ads/basic_object.hpp"
#include "lab/lab_domain.hpp"

namespace twk::lab {

/// "LDAP:", "GC:" or "WinNT:", whose children are the domains that can be seen. In a lab of kind nt the first
/// two have none.
class NamespaceObject final : public ads::BasicObject {
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

/// What a server tells of itself: the names of its naming contexts and its own, read only.
class RootDse final : public ads::BasicObject {
 public:
  RootDse(const LabDomain& domain, std::string path) : domain_(domain), path_(std::move(path)) {}

  [[nodiscard]] std::string Name() const override { return "RootDSE"; }
  [[nodiscard]] std::string Class() const override { return "RootDSE"; }
  [[nodiscard]] std::string ADsPath() const override { return path_; }
  [[nodiscard]] std::string Parent() const override { return "LDAP:"; }
  platform::Value Get(std::string_view attribute) override;

 private:
  const LabDomain& domain_;
  std::string path_;
};

}  // namespace twk::lab
