#pragma once

#include <string>
#include <string_view>

#include "ads/ads_path.hpp"
#include "ads/basic_object.hpp"
#include "ads/staged_values.hpp"

namespace twk::ads {

/// An entry bound through LDAP or the global catalogue, whatever stores it: its names, and its attributes
/// with the changes staged on them. The catalogue is read-only.
class EntryObject : public BasicObject {
 public:
  /// `whole_path` is the own path of an object bound as "LDAP://twk.test"; empty for one that ends in the DN.
  explicit EntryObject(std::string whole_path) : whole_path_(std::move(whole_path)) {}

  [[nodiscard]] std::string Name() const override;
  [[nodiscard]] std::string ADsPath() const override;
  [[nodiscard]] std::string Parent() const override;

  platform::Value Get(std::string_view attribute) override;
  void Put(std::string_view attribute, const platform::Value& value) override;
  void PutEx(int control, std::string_view attribute, const platform::Value& value) override;

 protected:
  /// Raises kUnwilling for an object of the global catalogue.
  void require_writable() const;

 private:
  [[nodiscard]] virtual const std::string& dn() const = 0;
  [[nodiscard]] virtual Provider provider() const = 0;
  /// As written in the path; empty when left out.
  [[nodiscard]] virtual const std::string& server() const = 0;
  /// Of the domain, which has no entry above it.
  [[nodiscard]] virtual const std::string& root_dn() const = 0;
  virtual AttributeAccess& attributes() = 0;
  /// The attribute that a caller's name means there.
  [[nodiscard]] virtual std::string_view attribute_name(std::string_view name) const;

  std::string whole_path_;
};

}  // namespace twk::ads
