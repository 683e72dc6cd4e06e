#include "directory/attribute_text.hpp"

#include <algorithm>
#include <array>
#include <limits>
#include <span>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/domain_search.hpp"
#include "platform/adsi.hpp"
#include "platform/attribute_listing.hpp"
#include "platform/sid.hpp"

namespace twk::directory {
namespace {

using platform::Value;

constexpr std::int64_t kNeverTime = std::numeric_limits<std::int64_t>::max();
/// More bytes than this are counted: a picture, an access list.
constexpr std::size_t kMostBytesShown = 64;

struct Word {
  std::int64_t value;
  std::string_view text;
};

/// "userAccountControl", [MS-ADTS] 2.2.16, and its computed companion.
constexpr std::array<Word, 20> kAccountFlags = {{{0x1, "logon script"},
                                                 {0x2, "disabled"},
                                                 {0x8, "home directory required"},
                                                 {0x10, "locked out"},
                                                 {0x20, "password not required"},
                                                 {0x40, "cannot change password"},
                                                 {0x80, "password stored reversibly"},
                                                 {0x100, "duplicate account"},
                                                 {0x200, "normal account"},
                                                 {0x800, "trust of a domain"},
                                                 {0x1000, "workstation"},
                                                 {0x2000, "domain controller"},
                                                 {0x10000, "password never expires"},
                                                 {0x40000, "smart card required"},
                                                 {0x80000, "trusted for delegation"},
                                                 {0x100000, "not delegated"},
                                                 {0x200000, "DES keys only"},
                                                 {0x400000, "no preauthentication"},
                                                 {0x800000, "password expired"},
                                                 {0x1000000, "trusted to authenticate for delegation"}}};
/// "groupType", [MS-ADTS] 2.2.12; the highest bit is the sign.
constexpr std::array<Word, 5> kGroupFlags = {{{0x1, "made by the system"},
                                              {0x2, "global"},
                                              {0x4, "domain local"},
                                              {0x8, "universal"},
                                              {0x80000000, "security"}}};
/// "instanceType", [MS-ADTS] 2.2.
constexpr std::array<Word, 3> kInstanceFlags = {
    {{0x1, "head of a naming context"}, {0x4, "writable"}, {0x8, "context above is held"}}};
/// "msDS-SupportedEncryptionTypes", [MS-KILE] 2.2.7.
constexpr std::array<Word, 5> kEncryptionFlags = {
    {{0x1, "DES-CRC"}, {0x2, "DES-MD5"}, {0x4, "RC4"}, {0x8, "AES128"}, {0x10, "AES256"}}};
/// "sAMAccountType", [MS-SAMR] 2.2.1.9: one of these.
constexpr std::array<Word, 6> kAccountTypes = {{{0x30000000, "user account"},
                                                {0x30000001, "computer account"},
                                                {0x30000002, "trust account"},
                                                {0x10000000, "group"},
                                                {0x10000001, "group without security"},
                                                {0x20000000, "local group"}}};

struct FlagWords {
  std::string_view attribute;
  std::span<const Word> words;
};
constexpr std::array<FlagWords, 6> kFlags = {{{"userAccountControl", kAccountFlags},
                                              {"UserFlags", kAccountFlags},
                                              {"msDS-User-Account-Control-Computed", kAccountFlags},
                                              {"groupType", kGroupFlags},
                                              {"instanceType", kInstanceFlags},
                                              {"msDS-SupportedEncryptionTypes", kEncryptionFlags}}};

/// Counts of 100-nanosecond steps since 1601, and what 0 means there.
struct Moment {
  std::string_view attribute;
  std::string_view zero = "never";
};
constexpr std::array<Moment, 9> kMoments = {{{"accountExpires"},
                                             {"badPasswordTime"},
                                             {"creationTime"},
                                             {"lastLogoff"},
                                             {"lastLogon"},
                                             {"lastLogonTimestamp"},
                                             {"LastLogin"},
                                             {"lockoutTime", "not locked out"},
                                             {"pwdLastSet", "must be changed at the next logon"}}};

constexpr std::array<std::string_view, 19> kWinntProperties = {
    "Name",           "FullName",    "Description",         "HomeDirectory",        "HomeDirDrive",
    "Profile",        "LoginScript", "LoginHours",          "LoginWorkstations",    "Parameters",
    "PrimaryGroupID", "LastLogin",   "BadPasswordAttempts", "LastLogoff",           "MaxStorage",
    "objectSID",      "UserFlags",   "PasswordExpired",     "AccountExpirationDate"};

template <typename Rows>
auto row_of(const Rows& rows, std::string_view attribute, auto name_of) {
  return std::find_if(rows.begin(), rows.end(),
                      [&](const auto& row) { return base::equals_fold(name_of(row), attribute); });
}

std::string flags_in_words(std::int64_t number, std::span<const Word> words) {
  const auto bits = static_cast<std::uint32_t>(number);
  std::uint32_t left = bits;
  std::string out;
  for (const Word& word : words) {
    const auto bit = static_cast<std::uint32_t>(word.value);
    if ((bits & bit) == 0)
      continue;
    out += (out.empty() ? "" : ", ") + std::string(word.text);
    left &= ~bit;
  }
  if (left != 0)
    out += (out.empty() ? "" : ", ") + base::to_hex(left);
  return (out.empty() ? "none" : out) + " (" + base::to_text(number) + ")";
}

std::string guid_text(const base::Bytes& bytes) {
  // The first three parts are little-endian, [MS-DTYP] 2.3.4.2.
  constexpr std::array<std::size_t, 16> kOrder = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
  std::string out;
  for (std::size_t i = 0; i < kOrder.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10)
      out += '-';
    out += base::lower(base::hex_byte(bytes[kOrder[i]]));
  }
  return out;
}

std::string hours_text(const base::Bytes& hours) {
  const auto is = [&](std::uint8_t byte) {
    return std::all_of(hours.begin(), hours.end(), [byte](std::uint8_t one) { return one == byte; });
  };
  if (is(0xFF))
    return "all hours";
  return is(0) ? "no hour" : Value(hours).text();
}

std::string bytes_text(std::string_view attribute, const base::Bytes& bytes) {
  constexpr std::size_t kGuidSize = 16;
  if (base::equals_fold(attribute, "logonHours") || base::equals_fold(attribute, "LoginHours"))
    return hours_text(bytes);
  if (bytes.size() == kGuidSize && base::find_fold(attribute, "guid") != base::npos)
    return guid_text(bytes);
  const auto sid = platform::Sid::decode(bytes);
  if (sid && sid->size() == bytes.size() && base::find_fold(attribute, "sid") != base::npos)
    return sid->text();
  if (bytes.size() > kMostBytesShown)
    return base::to_text(static_cast<std::int64_t>(bytes.size())) + " bytes";
  return Value(bytes).text();
}

std::string number_text(platform::Clock& clock, std::string_view attribute, const Value& value) {
  const auto* const moment = row_of(kMoments, attribute, [](const Moment& row) { return row.attribute; });
  const std::int64_t number = number_of(value);
  if (moment != kMoments.end()) {
    if (number == kNeverTime)
      return "never";
    return number == 0 ? std::string(moment->zero) : sortable_moment(clock, base::from_filetime(number));
  }
  const auto* const flags = row_of(kFlags, attribute, [](const FlagWords& row) { return row.attribute; });
  if (flags != kFlags.end())
    return flags_in_words(number, flags->words);
  if (base::equals_fold(attribute, "sAMAccountType")) {
    const auto* const type = std::ranges::find(kAccountTypes, number, &Word::value);
    if (type != kAccountTypes.end())
      return std::string(type->text) + " (" + base::to_text(number) + ")";
  }
  return value.text();
}

bool is_digits(const Value& value) {
  const auto* const text = std::get_if<std::string>(&value.data);
  if (text == nullptr)
    return std::holds_alternative<std::int32_t>(value.data);
  const std::string_view digits = std::string_view(*text).substr(text->starts_with('-') ? 1 : 0);
  return !digits.empty() && digits.find_first_not_of("0123456789") == base::npos;
}

}  // namespace

std::string sortable_moment(platform::Clock& clock, base::Date utc) {
  const base::Date local = clock.to_local(utc);
  const base::CivilTime t = base::civil_time(local);
  return base::to_text(t.year, 4) + "-" + base::to_text(t.month, 2) + "-" + base::to_text(t.day, 2) + " " +
         base::format_time(local);
}

std::string attribute_text(platform::Clock& clock, std::string_view attribute, const Value& value) {
  if (const auto* const bytes = std::get_if<base::Bytes>(&value.data))
    return bytes_text(attribute, *bytes);
  if (const auto* const date = std::get_if<base::Date>(&value.data))
    return sortable_moment(clock, *date);
  if (const auto* const flag = std::get_if<bool>(&value.data))
    return *flag ? "yes" : "no";
  return is_digits(value) ? number_text(clock, attribute, value) : value.text();
}

std::vector<std::string> attribute_texts(platform::Clock& clock, std::string_view attribute,
                                         const Value& values) {
  std::vector<std::string> out;
  for (const Value& value : values.list())
    out.push_back(attribute_text(clock, attribute, value));
  return out;
}

ReadAttribute read_attribute(const AccountDomain& domain, const platform::ObjectPtr& account,
                             const std::string& name) {
  return {name, attribute_texts(domain.services.clock, name, platform::value_or_empty(*account, name))};
}

std::vector<ReadAttribute> all_attributes(const AccountDomain& domain, const platform::ObjectPtr& account) {
  std::vector<std::string> names(kWinntProperties.begin(), kWinntProperties.end());
  if (auto* const listing = dynamic_cast<platform::AttributeListing*>(account.get()))
    names = listing->attribute_names();
  std::sort(names.begin(), names.end(),
            [](const std::string& a, const std::string& b) { return base::compare_fold(a, b) < 0; });
  names.erase(std::unique(names.begin(), names.end(),
                          [](const std::string& a, const std::string& b) { return base::equals_fold(a, b); }),
              names.end());
  std::vector<ReadAttribute> out;
  for (const std::string& name : names) {
    ReadAttribute read = read_attribute(domain, account, name);
    if (!read.values.empty())
      out.push_back(std::move(read));
  }
  return out;
}

std::string known_attribute(const AccountDomain& domain, std::string_view name) {
  const auto refuse = [name] {
    base::raise(platform::ads_error::kNoSuchAttribute,
                "The directory has no attribute \"" + std::string(name) + "\"");
  };
  if (!domain.active_directory) {
    const auto* const property = row_of(kWinntProperties, name, [](std::string_view one) { return one; });
    if (property == kWinntProperties.end())
      refuse();
    return std::string(*property);
  }
  constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-";
  if (name.empty() || name.find_first_not_of(kLetters) != base::npos)
    refuse();
  base::Trap trap;
  std::string spelled;
  trap([&] {
    const platform::ObjectPtr schema =
        domain.services.directory.GetObject("LDAP://Schema/" + std::string(name));
    static_cast<void>(schema->Syntax());
    spelled = schema->Name();
  });
  if (spelled.empty())
    refuse();
  return spelled;
}

}  // namespace twk::directory
