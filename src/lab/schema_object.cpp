#include "lab/schema_object.hpp"

#include "ads/schema.hpp"
#include "base/text.hpp"
#include "lab/errors.hpp"
#include "platform/adsi.hpp"

namespace twk::lab {
namespace {

using platform::ObjectPtr;
using platform::Value;

constexpr std::string_view kContainer = "LDAP://Schema";

std::string path_of(std::string_view name) {
  return std::string(kContainer) + "/" + std::string(name);
}

class PropertyObject final : public ads::BasicObject {
 public:
  explicit PropertyObject(const ads::AttributeSchema& attribute) : attribute_(attribute) {}

  [[nodiscard]] std::string Name() const override { return std::string(attribute_.name); }
  [[nodiscard]] std::string Class() const override { return "Property"; }
  [[nodiscard]] std::string ADsPath() const override { return path_of(attribute_.name); }
  [[nodiscard]] std::string Parent() const override { return std::string(kContainer); }
  std::string Syntax() override { return std::string(ads::syntax_name(attribute_.syntax)); }
  bool MultiValued() override { return attribute_.multi_valued; }

 private:
  const ads::AttributeSchema& attribute_;
};

class ClassObject final : public ads::BasicObject {
 public:
  explicit ClassObject(const ads::ClassSchema& schema) : schema_(schema) {}

  [[nodiscard]] std::string Name() const override { return std::string(schema_.name); }
  [[nodiscard]] std::string Class() const override { return "Class"; }
  [[nodiscard]] std::string ADsPath() const override { return path_of(schema_.name); }
  [[nodiscard]] std::string Parent() const override { return std::string(kContainer); }

  Value Get(std::string_view attribute) override {
    if (base::equals_fold(attribute, "MandatoryProperties"))
      return platform::ValueList{"objectClass"};
    if (!base::equals_fold(attribute, "OptionalProperties")) {
      raise(ads_error::kPropertyNotFound, "A class of the schema has no value for " + std::string(attribute));
    }
    platform::ValueList names;
    for (const ads::AttributeSchema& one : ads::all_attributes()) {
      if (one.name != "objectClass")
        names.emplace_back(one.name);
    }
    return names;
  }

 private:
  const ads::ClassSchema& schema_;
};

ObjectPtr find_item(std::string_view object_class, std::string_view name) {
  if (!base::equals_fold(object_class, "Property")) {
    if (const ads::ClassSchema* const schema = ads::find_class(name))
      return std::make_shared<ClassObject>(*schema);
  }
  if (!base::equals_fold(object_class, "Class")) {
    if (const ads::AttributeSchema* const attribute = ads::find_attribute(platform::ldap_attribute(name))) {
      return std::make_shared<PropertyObject>(*attribute);
    }
  }
  raise(ads_error::kNoSuchObject, "The schema has no " + std::string(name));
}

class SchemaContainer final : public ads::BasicObject {
 public:
  [[nodiscard]] std::string Name() const override { return "Schema"; }
  [[nodiscard]] std::string Class() const override { return "Schema"; }
  [[nodiscard]] std::string ADsPath() const override { return std::string(kContainer); }
  [[nodiscard]] std::string Parent() const override { return "LDAP:"; }

  ObjectPtr GetObject(std::string_view object_class, std::string_view relative_name) override {
    return find_item(object_class, relative_name);
  }

  void enumerate(std::span<const std::string> classes,
                 const std::function<bool(const ObjectPtr&)>& visit) override {
    if (!ads::is_wanted(classes, "Property"))
      return;
    for (const ads::AttributeSchema& attribute : ads::all_attributes()) {
      if (!visit(std::make_shared<PropertyObject>(attribute)))
        return;
    }
  }
};

}  // namespace

ObjectPtr bind_schema(std::string_view name) {
  if (name.empty())
    return std::make_shared<SchemaContainer>();
  return find_item({}, name);
}

}  // namespace twk::lab
