#pragma once

#include <initializer_list>
#include <string_view>
#include <utility>

#include "platform/directory.hpp"

namespace twk::test {

/// Gives an object values and writes it.
inline platform::ObjectPtr store(platform::ObjectPtr object,
                                 std::initializer_list<std::pair<std::string_view, platform::Value>> values) {
  for (const auto& [attribute, value] : values)
    object->Put(attribute, value);
  object->SetInfo();
  return object;
}

}  // namespace twk::test
