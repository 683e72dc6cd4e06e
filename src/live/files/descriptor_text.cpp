#include "live/files/descriptor_text.hpp"

#include <charconv>

#include "base/errors.hpp"
#include "base/text.hpp"

namespace twk::live {
namespace {

using platform::Ace;
using platform::Acl;
using platform::SecurityDescriptor;
using platform::Sid;
namespace security_error = platform::security_error;

constexpr std::size_t kListSize = 0xFFF8;  // the most that the size field of a list can hold, in whole words

[[noreturn]] void raise_bad(std::string_view part) {
  base::raise(security_error::kInvalidDescriptor,
              "The server sent a security descriptor that cannot be read: " + std::string(part));
}

/// "0x001f01ff" or "2032127".
std::uint32_t parse_number(std::string_view text, std::string_view part) {
  const bool hexadecimal = base::starts_with_fold(text, "0x");
  const std::string_view digits = hexadecimal ? text.substr(2) : text;
  std::uint32_t number = 0;
  const auto end =
      std::from_chars(digits.data(), digits.data() + digits.size(), number, hexadecimal ? 16 : 10);
  if (digits.empty() || end.ec != std::errc() || end.ptr != digits.data() + digits.size())
    raise_bad(part);
  return number;
}

Sid parse_sid(std::string_view text, std::string_view part) {
  const auto sid = Sid::parse(text);
  if (!sid)
    raise_bad(part);
  return *sid;
}

/// "S-1-1-0:0/3/0x001f01ff".
Ace parse_entry(std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon == base::npos)
    raise_bad(text);
  const std::vector<std::string> numbers = base::split(text.substr(colon + 1), '/');
  if (numbers.size() != 3)
    raise_bad(text);
  const std::uint32_t type = parse_number(numbers[0], text);
  const std::uint32_t flags = parse_number(numbers[1], text);
  if (type > 0xFF || flags > 0xFF)
    raise_bad(text);
  return {static_cast<std::uint8_t>(type), static_cast<std::uint8_t>(flags), parse_number(numbers[2], text),
          parse_sid(text.substr(0, colon), text)};
}

std::string entry_text(const Ace& ace) {
  const auto sid = ace.sid();
  const bool plain = ace.type() == platform::ace_type::kAllow || ace.type() == platform::ace_type::kDeny;
  if (!plain || !sid) {
    base::raise(security_error::kInvalidAcl, "An entry of type " + base::to_text(ace.type()) +
                                                 " cannot be written over the file protocol");
  }
  return "ACL:" + sid->text() + ":" + base::to_text(ace.type()) + "/" + base::to_text(ace.flags()) + "/" +
         base::to_text(static_cast<std::int64_t>(ace.mask()));
}

}  // namespace

SecurityDescriptor parse_descriptor(std::string_view text) {
  SecurityDescriptor descriptor;
  Acl list(kListSize);
  for (const std::string& part : base::split(text, ',')) {
    const std::size_t colon = part.find(':');
    const std::string word = part.substr(0, colon);
    const std::string value = colon == base::npos ? std::string() : part.substr(colon + 1);
    if (word == "OWNER")
      descriptor.owner = parse_sid(value, part);
    else if (word == "GROUP")
      descriptor.group = parse_sid(value, part);
    else if (word == "ACL")
      list.add(Acl::kAtEnd, parse_entry(value));
    else if (word != "REVISION")
      raise_bad(part);
  }
  descriptor.set_dacl(list.trimmed());
  return descriptor;
}

std::string descriptor_text(const SecurityDescriptor& descriptor) {
  std::string text = "REVISION:1";
  if (descriptor.owner)
    text += ",OWNER:" + descriptor.owner->text();
  if (descriptor.group)
    text += ",GROUP:" + descriptor.group->text();
  if (descriptor.dacl_present) {
    if (!descriptor.dacl || descriptor.dacl->entries().empty())
      base::raise(security_error::kInvalidAcl,
                  "A list without entries cannot be written over the file protocol");
    for (const Ace& ace : descriptor.dacl->entries())
      text += "," + entry_text(ace);
  }
  return text;
}

}  // namespace twk::live
