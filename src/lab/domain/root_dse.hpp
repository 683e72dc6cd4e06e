#pragma once

#include <string>
#include <utility>

#include "ads/basic_object.hpp"
#include "lab/domain/lab_domain.hpp"

namespace twk::lab {

/// What a server says about itself: the names of its naming contexts and its own, read only.
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
