#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/bytes.hpp"
#include "platform/directory.hpp"

/// The values of an attribute as a person writes them in an order, from which they can be written again.
namespace twk::batch {

/// "1,2,255" as three bytes. Raises a type mismatch, with the part that is no byte.
base::Bytes parse_bytes(std::string_view text);

/// All values of an attribute, bytes in that form; none for one without a value.
std::vector<std::string> read_values(const platform::ObjectPtr& object, std::string_view attribute);
/// Replaces all values by these; none clears the attribute. Nothing is written before `SetInfo`.
void stage_values(const platform::ObjectPtr& object, std::string_view attribute,
                  const std::vector<std::string>& values, bool takes_bytes);

}  // namespace twk::batch
