#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <span>

#include "base/errors.hpp"
#include "platform/user_parameters.hpp"

namespace {

using namespace twk::platform;

/// The result of a step; empty when it refuses its input for an allowed reason.
template <typename Step>
auto attempt(Step step) -> std::optional<decltype(step())> {
  try {
    return step();
  } catch (const twk::base::RuntimeError& failure) {
    if (failure.number() != user_parameters_error::kInvalidData &&
        failure.number() != user_parameters_error::kInvalidParameter)
      std::abort();
    return std::nullopt;
  }
}

void change(const UserParameters& before, WtsConfigClass setting, const WtsConfigValue& value) {
  UserParameters after = before;
  const auto changed = attempt([&] {
    set_wts_setting(after, setting, value);
    return UserParameters::decode(after.encode());
  });
  if (changed && (*changed != after || wts_setting(*changed, setting) != value))
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::span bytes(data, size);
  if (const auto text = attempt([&] { return user_parameters_text(bytes); })) {
    const auto again = user_parameters_bytes(*text);
    // Text that has the signature where the bytes have it, and not where a text has it, is taken for bytes.
    const bool is_taken_for_bytes =
        std::equal(again.begin(), again.end(), text->begin(), text->end(),
                   [](auto a, char b) { return a == static_cast<std::uint8_t>(b); });
    if (!is_taken_for_bytes && !std::equal(again.begin(), again.end(), bytes.begin(), bytes.end()))
      std::abort();
  }
  const auto parameters = attempt([&] { return UserParameters::decode(bytes); });
  if (!parameters)
    return 0;
  const auto written = attempt([&] { return parameters->encode(); });
  if (written && UserParameters::decode(*written) != *parameters)
    std::abort();
  for (std::int32_t i = -1; i <= 19; ++i) {
    const auto setting = static_cast<WtsConfigClass>(i);
    static_cast<void>(attempt([&] { return wts_setting(*parameters, setting); }));
    change(*parameters, setting, std::string("W:"));
    change(*parameters, setting, 1U);
  }
  return 0;
}
