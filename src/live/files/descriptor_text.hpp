#pragma once

#include <string>
#include <string_view>

#include "platform/security_descriptor.hpp"

/// Security descriptors in the text form of the SMB library: "REVISION:1,OWNER:S-1-5-32-544,GROUP:…,
/// ACL:S-1-1-0:0/3/0x001f01ff", an entry being identifier, type, flags, access mask. The library prints masks
/// in hexadecimal and reads them in decimal.
namespace twk::live {

/// Raises kInvalidDescriptor for an invalid text. A list without entries grants nothing to
/// anyone.
platform::SecurityDescriptor parse_descriptor(std::string_view text);

/// The owner, group and entries that are present. Raises kInvalidAcl for an entry of another type than
/// "allow" and "deny", which the library cannot write.
std::string descriptor_text(const platform::SecurityDescriptor& descriptor);

}  // namespace twk::live
