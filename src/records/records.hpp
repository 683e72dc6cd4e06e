#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/bytes.hpp"
#include "platform/logon_hours.hpp"

/// The fixed-length records of the database directory. On disk every text is code page 1252, left-aligned,
/// padded with blanks to its length and cut when longer; Booleans are 16-bit, little-endian, 0 or -1.
namespace twk::records {

inline constexpr std::size_t kSiteRecordSize = 154;
inline constexpr std::size_t kTemplateRecordSize = 4524;
inline constexpr std::size_t kPermissionRecordSize = 114;
inline constexpr std::size_t kGroupSlots = 76;
inline constexpr std::size_t kMostGroups = 75;
inline constexpr std::size_t kVariableSlots = 51;

/// Lengths of the names, in characters of the code page.
inline constexpr std::size_t kSiteNameLength = 20;
inline constexpr std::size_t kTemplateNameLength = 25;

/// A record of "Site.dat". Texts are UTF-8 without padding, except what a caller left in.
///
///     offset  length  field
///          0       2  Deleted
///          2       2  Exchange2000
///          4      20  Name
///         24      20  NTServer
///         44      20  ExchangeServer
///         64      30  ExchangeOrg
///         94      30  ExchangeSite     site, or storage group of an Exchange 2000 site
///        124      30  MailStore
struct SiteRecord {
  bool Deleted = false;
  bool Exchange2000 = false;
  std::string Name;
  std::string NTServer;
  std::string ExchangeServer;
  std::string ExchangeOrg;
  std::string ExchangeSite;
  std::string MailStore;

  friend bool operator==(const SiteRecord&, const SiteRecord&) = default;
};

/// A record of "Template.dat".
///
///     offset  length  field
///          0       2  Deleted
///          2       2  GroupCount            used slots of Groups
///          4      25  Name
///         29      75  ProfilePath
///        104      75  HomeDir
///        179      75  ProfileDirPath
///        254      75  HomeDirPath
///        329      20  ProfileShare
///        349      20  HomeShare
///        369     100  HomeSharePoint
///        469     100  ProfileSharePoint
///        569      20  LogonScript
///        589       2  HomeDrive
///        591      21  LogonHours            168 bits
///        612      21  PrimaryGroup
///        633   76x21  Groups
///       2229   51x15  VariableNames         slot 0 stays blank
///       2994   51x30  VariableValues
struct TemplateRecord {
  bool Deleted = false;
  std::int16_t GroupCount = 0;
  std::string Name;
  std::string ProfilePath;
  std::string HomeDir;
  std::string ProfileDirPath;
  std::string HomeDirPath;
  std::string ProfileShare;
  std::string HomeShare;
  std::string HomeSharePoint;
  std::string ProfileSharePoint;
  std::string LogonScript;
  std::string HomeDrive;
  base::Bytes LogonHours = base::Bytes(platform::kLogonHoursSize, 255);
  std::string PrimaryGroup;
  std::array<std::string, kGroupSlots> Groups;
  std::array<std::string, kVariableSlots> VariableNames;
  std::array<std::string, kVariableSlots> VariableValues;

  friend bool operator==(const TemplateRecord&, const TemplateRecord&) = default;
};

/// A record of "Permissions.dat" or "SharePerm.dat".
///
///     offset  length  field
///          0       2  NewSecurity
///          2      50  Account
///         52      12  Access                "Full Control" …
///         64      50  Owner
struct PermissionRecord {
  bool NewSecurity = false;
  std::string Account;
  std::string Access;
  std::string Owner;

  friend bool operator==(const PermissionRecord&, const PermissionRecord&) = default;
};

/// Why no record can hold a text: "… cannot be stored: code page 1252 has no place for Ł (U+0141)". Empty
/// when one can.
std::string code_page_refusal(std::string_view text);

/// The bytes of a record, exactly as long as its size says. Raises 13 with the refusal of a text that code
/// page 1252 has no place for.
std::string encode_site(const SiteRecord& record);
std::string encode_template(const TemplateRecord& record);
std::string encode_permission(const PermissionRecord& record);

/// A record from its bytes, texts without their padding. Raises a runtime error when there are
/// fewer bytes than the size says. A GroupCount outside 0 to 75 reads as the nearest of the two.
SiteRecord decode_site(std::string_view bytes);
TemplateRecord decode_template(std::string_view bytes);
PermissionRecord decode_permission(std::string_view bytes);

/// A template's name as the lists hold it: padded with blanks to 25 characters.
std::string padded_template_name(std::string_view name);

/// What a search compares, straight from the bytes of a site or template record: its deletion mark, and a
/// template's name as the lists hold it.
bool is_deleted(std::string_view bytes);
std::string listed_template_name(std::string_view bytes);
/// Sets the deletion mark and leaves all else as it is.
void mark_deleted(std::string& bytes);

}  // namespace twk::records
