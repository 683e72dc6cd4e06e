#include "ads/schema_object.hpp"

#include "ads/schema.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/adsi.hpp"

namespace twk::ads {
namespace {

using platform::ObjectPtr;
using platform::Value;

constexpr std::string_view kContainer = "LDAP://Schema";

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
  explicit ClassObject(const ClassSchema& schema) : schema_(schema) {}

  [[nodiscard]] std::string Name() const override { return std::string(schema_.name); }
  [[nodiscard]] std::string Class() const override { return "Class"; }
  [[nodiscard]] std::string ADsPath() const override { return path_of(schema_.name); }
  [[nodiscard]] std::string Parent() const override { return std::string(kContainer); }

  Value Get(std::string_view attribute) override {
    if (base::equals_fold(attribute, "MandatoryProperties"))
      return platform::ValueList{"objectClass"};
    if (!base::equals_fold(attribute, "OptionalProperties")) {
      base::raise(platform::ads_error::kPropertyNotFound,
                  "A class of the schema has no value for " + std::string(attribute));
    }
    platform::ValueList names;
    for (const AttributeSchema& one : all_attributes()) {
      if (one.name != "objectClass")
        names.emplace_back(one.name);
    }
    return names;
  }

 private:
  const ClassSchema& schema_;
};

ObjectPtr find_item(const FindAttribute& find, std::string_view object_class, std::string_view name) {
  if (!base::equals_fold(object_class, "Property")) {
    if (const ClassSchema* const schema = find_class(name))
      return std::make_shared<ClassObject>(*schema);
  }
  if (!base::equals_fold(object_class, "Class")) {
    if (const AttributeSchema* const attribute = find(platform::ldap_attribute(name))) {
      return std::make_shared<PropertyObject>(*attribute);
    }
  }
  base::raise(platform::ads_error::kNoSuchObject, "The schema has no " + std::string(name));
}

class SchemaContainer final : public BasicObject {
 public:
  explicit SchemaContainer(FindAttribute find) : find_(std::move(find)) {}

  [[nodiscard]] std::string Name() const override { return "Schema"; }
  [[nodiscard]] std::string Class() const override { return "Schema"; }
  [[nodiscard]] std::string ADsPath() const override { return std::string(kContainer); }
  [[nodiscard]] std::string Parent() const override { return "LDAP:"; }

  ObjectPtr GetObject(std::string_view object_class, std::string_view relative_name) override {
    return find_item(find_, object_class, relative_name);
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
  FindAttribute find_;
};

}  // namespace

ObjectPtr bind_schema(std::string_view name, FindAttribute find) {
  if (name.empty())
    return std::make_shared<SchemaContainer>(std::move(find));
  return find_item(find, {}, name);
}

}  // namespace twk::ads
