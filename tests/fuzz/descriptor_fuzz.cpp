#include <cstdint>
#include <cstdlib>
#include <span>
#include <string_view>

#include "base/errors.hpp"
#include "platform/access_check.hpp"
#include "platform/security_descriptor.hpp"

namespace {

using namespace twk::platform;

void check_identifier(std::string_view text) {
  const auto sid = Sid::parse(text);
  if (sid && (Sid::parse(sid->text()) != sid || Sid::decode(sid->bytes()) != sid))
    std::abort();
}

bool is_expected(std::uint32_t number) {
  return number == security_error::kInvalidAcl || number == security_error::kInvalidSid ||
         number == security_error::kInvalidDescriptor;
}

/// An inherited list is of the same kind as the one it comes from, and grants nobody more rights than
/// exist.
void check_use(const SecurityDescriptor& descriptor) {
  const Sid somebody = descriptor.owner.value_or(well_known::everyone());
  if ((granted_access(descriptor, std::span(&somebody, 1)) & access::kGenericAll) != 0)
    std::abort();
  for (const bool is_folder : {false, true}) {
    const auto list = inherited_list(descriptor, is_folder, somebody);
    if (list && Acl::decode(list->encode()) != *list)
      std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  check_identifier({reinterpret_cast<const char*>(data), size});
  try {
    const SecurityDescriptor descriptor = SecurityDescriptor::decode(std::span(data, size));
    if (SecurityDescriptor::decode(descriptor.encode()) != descriptor)
      std::abort();
    check_use(descriptor);
  } catch (const twk::base::RuntimeError& failure) {
    if (!is_expected(failure.number()))
      std::abort();
  }
  return 0;
}
