#include "ads/schema.hpp"

#include <algorithm>
#include <charconv>

#include "ads/dn.hpp"
#include "ads/schema_table.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/directory.hpp"
#include "platform/utf16.hpp"

namespace twk::ads {
namespace {

using platform::Value;

constexpr char small_letter(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

constexpr bool name_less(std::string_view a, std::string_view b) {
  return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                      [](char x, char y) { return small_letter(x) < small_letter(y); });
}

constexpr bool by_name(const AttributeSchema& a, const AttributeSchema& b) {
  return name_less(a.name, b.name);
}
static_assert(std::is_sorted(kAttributes.begin(), kAttributes.end(), by_name));

constexpr std::array<ClassSchema, 25> kClasses = {{
    {"user", "Person", "CN", "top person organizationalPerson user"},
    {"person", "Person", "CN", "top person"},
    {"inetOrgPerson", "Person", "CN", "top person organizationalPerson user inetOrgPerson"},
    {"contact", "Person", "CN", "top person organizationalPerson contact"},
    {"group", "Group", "CN", "top group"},
    {"computer", "Computer", "CN", "top person organizationalPerson user computer"},
    {"organizationalUnit", "Organizational-Unit", "OU", "top organizationalUnit"},
    {"domain", "Domain-DNS", "DC", "top domain"},
    {"domainDNS", "Domain-DNS", "DC", "top domain domainDNS"},
    {"container", "Container", "CN", "top container"},
    {"builtinDomain", "Builtin-Domain", "CN", "top builtinDomain"},
    {"configuration", "Configuration", "CN", "top configuration"},
    {"crossRef", "Cross-Ref", "CN", "top crossRef"},
    {"crossRefContainer", "Cross-Ref-Container", "CN", "top crossRefContainer"},
    {"dMD", "DMD", "CN", "top dMD"},
    {"msExchConfigurationContainer", "ms-Exch-Configuration-Container", "CN",
     "top container msExchConfigurationContainer"},
    {"msExchOrganizationContainer", "ms-Exch-Organization-Container", "CN",
     "top container msExchOrganizationContainer"},
    {"msExchAdminGroupContainer", "ms-Exch-Admin-Group-Container", "CN", "top msExchAdminGroupContainer"},
    {"msExchAdminGroup", "ms-Exch-Admin-Group", "CN", "top msExchAdminGroup"},
    {"msExchServersContainer", "ms-Exch-Servers-Container", "CN", "top msExchServersContainer"},
    {"msExchExchangeServer", "ms-Exch-Exchange-Server", "CN", "top msExchExchangeServer"},
    {"mTA", "MTA", "CN", "top mTA"},
    {"msExchInformationStore", "ms-Exch-Information-Store", "CN", "top msExchInformationStore"},
    {"msExchStorageGroup", "ms-Exch-Storage-Group", "CN", "top msExchStorageGroup"},
    {"msExchPrivateMDB", "ms-Exch-Private-MDB", "CN", "top msExchPrivateMDB"},
}};

[[noreturn]] void violates(const AttributeSchema& attribute, const std::string& what) {
  base::raise(platform::ads_error::kConstraint, "The value of " + std::string(attribute.name) + " " + what);
}

std::string bytes_to_text(const base::Bytes& bytes) {
  return {bytes.begin(), bytes.end()};
}

/// "20260131093000.0Z", generalized time of RFC 4517; None for anything else.
std::optional<base::Date> parse_generalized_time(std::string_view text) {
  if (text.size() < 15 || text.substr(0, 14).find_first_not_of("0123456789") != base::npos)
    return std::nullopt;
  const auto part = [&](std::size_t at, std::size_t count) { return base::val(text.substr(at, count)); };
  const base::CivilTime t{part(0, 4), part(4, 2), part(6, 2), part(8, 2), part(10, 2), part(12, 2)};
  const bool in_range = t.year >= 1601 && t.month >= 1 && t.month <= 12 && t.day >= 1 && t.day <= 31 &&
                        t.hour < 24 && t.minute < 60 && t.second <= 60;
  return in_range ? std::optional(base::make_date(t)) : std::nullopt;
}

std::string integer_text(const AttributeSchema& attribute, const Value& value) {
  if (const auto* flag = std::get_if<bool>(&value.data))
    return *flag ? "1" : "0";
  if (const auto* number = std::get_if<std::int32_t>(&value.data))
    return base::to_text(*number);
  const auto* text = std::get_if<std::string>(&value.data);
  const auto number = text == nullptr ? std::nullopt : base::to_number(*text);
  if (!number)
    violates(attribute, "is not a 32-bit integer");
  return base::to_text(*number);
}

std::string integer8_text(const AttributeSchema& attribute, const Value& value) {
  if (const auto* date = std::get_if<base::Date>(&value.data))
    return base::to_text(base::to_filetime(*date));
  const std::string text = std::holds_alternative<base::Bytes>(value.data) ? "" : value.text();
  std::int64_t number = 0;
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, number);
  if (text.empty() || result.ec != std::errc{} || result.ptr != end)
    violates(attribute, "is not a 64-bit integer");
  return base::to_text(number);
}

std::string boolean_text(const AttributeSchema& attribute, const Value& value) {
  const auto* text = std::get_if<std::string>(&value.data);
  if (text != nullptr && !base::equals_fold(*text, "TRUE") && !base::equals_fold(*text, "FALSE")) {
    violates(attribute, "is neither TRUE nor FALSE");
  }
  return value.boolean() ? "TRUE" : "FALSE";
}

std::string time_text(const AttributeSchema& attribute, const Value& value) {
  if (const auto* date = std::get_if<base::Date>(&value.data)) {
    const base::CivilTime t = base::civil_time(*date);
    return base::to_text(t.year, 4) + base::to_text(t.month, 2) + base::to_text(t.day, 2) +
           base::to_text(t.hour, 2) + base::to_text(t.minute, 2) + base::to_text(t.second, 2) + ".0Z";
  }
  std::string text = value.text();
  if (!parse_generalized_time(text))
    violates(attribute, "is not a time");
  return text;
}

std::string string_text(const AttributeSchema& attribute, const Value& value) {
  if (std::holds_alternative<base::Bytes>(value.data))
    violates(attribute, "is bytes and not text");
  std::string text = value.text();
  if (!base::is_valid_utf8(text))
    violates(attribute, "is not UTF-8");
  if (attribute.longest != 0 && platform::utf16_length(text) > attribute.longest) {
    violates(attribute, "is longer than " + base::to_text(attribute.longest) + " characters");
  }
  return text;
}

std::string dn_text(const AttributeSchema& attribute, const Value& value) {
  std::string text = value.text();
  base::Trap trap;
  if (!trap([&] { static_cast<void>(normalize_dn(text)); }))
    violates(attribute, "is not a distinguished name");
  return text;
}

std::string octets(const AttributeSchema& attribute, const Value& value) {
  const auto* bytes = std::get_if<base::Bytes>(&value.data);
  if (bytes == nullptr)
    violates(attribute, "is not bytes");
  if (attribute.longest != 0 && bytes->size() > attribute.longest) {
    violates(attribute, "is longer than " + base::to_text(attribute.longest) + " bytes");
  }
  return bytes_to_text(*bytes);
}

std::string encode(const AttributeSchema& attribute, const Value& value) {
  switch (attribute.syntax) {
    case Syntax::kString:
      return string_text(attribute, value);
    case Syntax::kInteger:
      return integer_text(attribute, value);
    case Syntax::kInteger8:
      return integer8_text(attribute, value);
    case Syntax::kBoolean:
      return boolean_text(attribute, value);
    case Syntax::kTime:
      return time_text(attribute, value);
    case Syntax::kDn:
      return dn_text(attribute, value);
    case Syntax::kOctetString:
    case Syntax::kSid:
      return octets(attribute, value);
  }
  violates(attribute, "has no known syntax");
}

}  // namespace

const AttributeSchema* find_attribute(std::string_view name) {
  const auto* const found =
      std::lower_bound(kAttributes.begin(), kAttributes.end(), name,
                       [](const AttributeSchema& a, std::string_view b) { return name_less(a.name, b); });
  return found != kAttributes.end() && !name_less(name, found->name) ? found : nullptr;
}

std::span<const AttributeSchema> all_attributes() {
  return kAttributes;
}

std::string_view syntax_name(Syntax syntax) {
  switch (syntax) {
    case Syntax::kInteger:
      return "Integer";
    case Syntax::kBoolean:
      return "Boolean";
    case Syntax::kInteger8:
      return "INTEGER8";
    case Syntax::kOctetString:
    case Syntax::kSid:
      return "OctetString";
    case Syntax::kDn:
      return "DN";
    case Syntax::kTime:
      return "UTCTime";
    case Syntax::kString:
      break;
  }
  return "String";
}

const ClassSchema* find_class(std::string_view name) {
  const auto* const found = std::find_if(kClasses.begin(), kClasses.end(), [&](const ClassSchema& one) {
    return base::equals_fold(one.name, name);
  });
  return found == kClasses.end() ? nullptr : found;
}

Value to_value(const AttributeSchema* attribute, const std::string& raw) {
  const Syntax syntax = attribute == nullptr ? Syntax::kString : attribute->syntax;
  if (syntax == Syntax::kOctetString || syntax == Syntax::kSid || !base::is_valid_utf8(raw)) {
    return base::Bytes(raw.begin(), raw.end());
  }
  if (syntax == Syntax::kBoolean)
    return base::equals_fold(raw, "TRUE");
  if (syntax == Syntax::kInteger) {
    if (const auto number = base::to_number(raw))
      return *number;
  }
  if (syntax == Syntax::kTime) {
    if (const auto date = parse_generalized_time(raw))
      return *date;
  }
  return raw;
}

Value to_value(const AttributeSchema* attribute, const std::vector<std::string>& raw) {
  if (raw.empty())
    return {};
  if (raw.size() == 1)
    return to_value(attribute, raw.front());
  platform::ValueList list;
  list.reserve(raw.size());
  for (const std::string& one : raw)
    list.push_back(to_value(attribute, one));
  return list;
}

std::string to_raw(const AttributeSchema& attribute, const Value& value) {
  std::string raw = encode(attribute, value);
  if (raw.empty())
    violates(attribute, "is empty");
  return raw;
}

}  // namespace twk::ads
