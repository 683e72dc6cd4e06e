#include "ads/schema_object.hpp"

#include <algorithm>
#include <array>

#include "ads/schema.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/adsi.hpp"

namespace twk::ads {
namespace {

using platform::ObjectPtr;
using platform::Value;

constexpr std::string_view kContainer = "LDAP://Schema";

/// What the directory requires of every object, and of every user.
constexpr std::array<std::string_view, 1> kOfEveryObject = {"objectClass"};
constexpr std::array<std::string_view, 4> kOfEveryUser = {"cn", "objectCategory", "objectClass",
                                                          "sAMAccountName"};

/// The well-known attributes of other objects: groups, computers, domains, partitions, units.
constexpr std::array<std::string_view, 18> kNotOfUsers = {"configurationNamingContext",
                                                          "creationTime",
                                                          "dNSHostName",
                                                          "dnsRoot",
                                                          "groupType",
                                                          "managedBy",
                                                          "member",
                                                          "nCName",
                                                          "nETBIOSName",
                                                          "nTMixedDomain",
                                                          "objectVersion",
                                                          "operatingSystem",
                                                          "operatingSystemVersion",
                                                          "primaryGroupToken",
                                                          "rIDNextRID",
                                                          "securityIdentifier",
                                                          "uPNSuffixes",
                                                          "wellKnownObjects"};

template <std::size_t N>
bool holds(const std::array<std::string_view, N>& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

std::string path_of(std::string_view name) {
  return std::string(kContainer) + "/" + std::string(name);
}

class PropertyObject final : public BasicObject {
 public:
  explicit PropertyObject(const AttributeSchema& attribute) : attribute_(attribute) {}

  [[nodiscard]] std::string Name() const override { return std::string(attribute_.name); }
  [[nodiscard]] std::string Class() const override { return "Property"; }
  [[nodiscard]] std::string ADsPath() const override { return path_of(attribute_.name); }
  [[nodiscard]] std::string Parent() const override { return std::string(kContainer); }
  std::string Syntax() override { return std::string(syntax_name(attribute_.syntax)); }
  bool MultiValued() override { return attribute_.multi_valued; }

 private:
  const AttributeSchema& attribute_;
};

class ClassObject final : public BasicObject {
 public:
  ClassObject(const ClassSchema& schema, FindProperties properties)
      : schema_(schema), properties_(std::move(properties)) {}

  [[nodiscard]] std::string Name() const override { return std::string(schema_.name); }
  [[nodiscard]] std::string Class() const override { return "Class"; }
  [[nodiscard]] std::string ADsPath() const override { return path_of(schema_.name); }
  [[nodiscard]] std::string Parent() const override { return std::string(kContainer); }

  Value Get(std::string_view attribute) override {
    const bool mandatory = base::equals_fold(attribute, "MandatoryProperties");
    if (!mandatory && !base::equals_fold(attribute, "OptionalProperties")) {
      base::raise(platform::ads_error::kPropertyNotFound,
                  "A class of the schema has no value for " + std::string(attribute));
    }
    const ClassProperties properties = properties_(schema_);
    platform::ValueList names;
    for (const std::string& name : mandatory ? properties.mandatory : properties.optional)
      names.emplace_back(name);
    return names;
  }

 private:
  const ClassSchema& schema_;
  FindProperties properties_;
};

/// What the schema can be asked for.
struct Lookups {
  FindAttribute find;
  FindProperties properties;
};

ObjectPtr find_item(const Lookups& lookups, std::string_view object_class, std::string_view name) {
  if (!base::equals_fold(object_class, "Property")) {
    if (const ClassSchema* const schema = find_class(name))
      return std::make_shared<ClassObject>(*schema, lookups.properties);
  }
  if (!base::equals_fold(object_class, "Class")) {
    if (const AttributeSchema* const attribute = lookups.find(platform::ldap_attribute(name))) {
      return std::make_shared<PropertyObject>(*attribute);
    }
  }
  base::raise(platform::ads_error::kNoSuchObject, "The schema has no " + std::string(name));
}

class SchemaContainer final : public BasicObject {
 public:
  explicit SchemaContainer(Lookups lookups) : lookups_(std::move(lookups)) {}

  [[nodiscard]] std::string Name() const override { return "Schema"; }
  [[nodiscard]] std::string Class() const override { return "Schema"; }
  [[nodiscard]] std::string ADsPath() const override { return std::string(kContainer); }
  [[nodiscard]] std::string Parent() const override { return "LDAP:"; }

  ObjectPtr GetObject(std::string_view object_class, std::string_view relative_name) override {
    return find_item(lookups_, object_class, relative_name);
  }

  void enumerate(std::span<const std::string> classes,
                 const std::function<bool(const ObjectPtr&)>& visit) override {
    if (!is_wanted(classes, "Property"))
      return;
    for (const AttributeSchema& attribute : all_attributes()) {
      if (!visit(std::make_shared<PropertyObject>(attribute)))
        return;
    }
  }

 private:
  Lookups lookups_;
};

}  // namespace

ClassProperties known_properties(const ClassSchema& schema) {
  const bool user = schema.chain.find("organizationalPerson user") != base::npos;
  ClassProperties properties;
  for (const AttributeSchema& attribute : all_attributes()) {
    if (user && holds(kNotOfUsers, attribute.name))
      continue;
    const bool mandatory = user ? holds(kOfEveryUser, attribute.name) : holds(kOfEveryObject, attribute.name);
    (mandatory ? properties.mandatory : properties.optional).emplace_back(attribute.name);
  }
  return properties;
}

ObjectPtr bind_schema(std::string_view name, FindAttribute find, FindProperties properties) {
  Lookups lookups{std::move(find), std::move(properties)};
  if (name.empty())
    return std::make_shared<SchemaContainer>(std::move(lookups));
  return find_item(lookups, {}, name);
}

}  // namespace twk::ads
