#pragma once

#include <string>
#include <string_view>

#include "platform/security_descriptor.hpp"

/// Security descriptors in the words of the SMB library: "REVISION:1,OWNER:S-1-5-32-544,GROUP:…,
/// ACL:S-1-1-0:0/3/0x001f01ff", an entry being identifier, type, flags, access mask. The library prints masks
/// in hexadecimal digits and takes them as decimal ones.
namespace twk::live {

/// Raises kInvalidDescriptor for a text that is none. An empty list of entries is a list that gives nobody
/// anything.
platform::SecurityDescriptor parse_descriptor(std::string_view text);

/// Owner, group and entries that are there. Raises kInvalidAcl for an entry of another type than "allow" and
/// "deny", which the library cannot write.
std::string descriptor_text(const platform::SecurityDescriptor& descriptor);

}  // namespace twk::live
