#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

/// Records of older generations, as bytes. Texts are code page 1252, left-aligned and padded with blanks, as
/// they are today, so a field moves byte by byte.
///
///     "Site.dat" 1.x, 102 bytes     Deleted 2, Exchange2000 2, Name 20, NTServer 20, ExchangeServer 20,
///                                   ExchangeOrg 20, ExchangeSite 18 (of 20: the record ends there)
///
///     "Template.dat"                1.x    2.0    2.1    2.2
///       Deleted, GroupCount           0      0      0      0      2 bytes each
///       Name                          4      4      4      4     25
///       ProfilePath … HomeDirPath    29     29     29     29      4 x 75
///       ProfileShare, HomeShare     329    329    329    329     20 each
///       LogonScript                 369    369    369    369     20
///       HomeDrive                   389    389    389    389      2
///       LogonHours                    -      -    391    391     21
///       PrimaryGroup                  -      -      -    412     21
///       Groups, 21 each             391x51 391x51 412x51 433x76
///       VariableNames, 15 each     1462x21 1462x51 1483x51 2029x51
///       VariableValues, 30 each    1777x21 2227x51 2248x51 2794x51
///       record                     2407   3757   3778   4324
///
///     "Permissions.dat", "SharePerm.dat" before 2.4, 64 bytes: NewSecurity 2, Account 50, Access 12
namespace twk::records {

enum class TemplateGeneration { k1, k20, k21, k22 };

inline constexpr std::size_t kOldSiteRecordSize = 102;
inline constexpr std::size_t kOldPermissionRecordSize = 64;
std::size_t old_template_record_size(TemplateGeneration generation);

/// Converts an old record to today's. What the old layout lacks is blank, except the logon hours (all) and
/// the primary group ("Domain Users"). The bytes must be exactly one old record.
std::string upgrade_site(std::string_view old_record);
std::string upgrade_template(std::string_view old_record, TemplateGeneration generation);
std::string upgrade_permission(std::string_view old_record);

}  // namespace twk::records
