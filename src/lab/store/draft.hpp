#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/text.hpp"
#include "lab/store/ldif.hpp"

namespace twk::lab {

/// The attributes of an object that is being made.
class Draft {
 public:
  void set(std::string_view name, std::string value) { set(name, std::vector{std::move(value)}); }
  void set(std::string_view name, std::vector<std::string> values) {
    const auto found = find(name);
    if (found != attributes_.end())
      attributes_.erase(found);
    if (!values.empty())
      attributes_.push_back({std::string(name), std::move(values)});
  }
  void set_default(std::string_view name, std::string value) {
    if (find(name) == attributes_.end())
      set(name, std::move(value));
  }
  void apply(const Modification& change) {
    if (change.kind == ModifyKind::kReplace) {
      set(change.attribute, change.values);
    } else if (change.kind == ModifyKind::kAdd) {
      std::vector<std::string> values = find(change.attribute) == attributes_.end()
                                            ? std::vector<std::string>{}
                                            : find(change.attribute)->values;
      values.insert(values.end(), change.values.begin(), change.values.end());
      set(change.attribute, std::move(values));
    }
  }
  [[nodiscard]] std::optional<std::string> value(std::string_view name) {
    const auto found = find(name);
    return found == attributes_.end() ? std::nullopt : std::optional(found->values.front());
  }
  [[nodiscard]] std::vector<LdifAttribute> take() { return std::move(attributes_); }

 private:
  std::vector<LdifAttribute>::iterator find(std::string_view name) {
    return std::find_if(attributes_.begin(), attributes_.end(),
                        [&](const LdifAttribute& one) { return base::equals_fold(one.name, name); });
  }

  std::vector<LdifAttribute> attributes_;
};

}  // namespace twk::lab
