#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "base/errors.hpp"
#include "lab/store/filter.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  // The text is also the value that it is matched against.
  const twk::lab::AttributeReader read = [&](std::string_view attribute) {
    if (attribute == "none")
      return std::vector<std::string_view>{};
    return std::vector<std::string_view>{"CN=Ann Smith,DC=twk,DC=test", "514", text};
  };
  try {
    const twk::lab::Filter filter = twk::lab::parse_filter(text);
    const twk::lab::Filter negation{.kind = twk::lab::Filter::Kind::kNot, .children = {filter}};
    if (twk::lab::matches(filter, read) && twk::lab::matches(negation, read))
      std::abort();
  } catch (const twk::base::RuntimeError& failure) {
    if (failure.number() != twk::lab::kInvalidFilter)
      std::abort();
  }
  return 0;
}
