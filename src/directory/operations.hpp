#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/query.hpp"

namespace twk::session {
struct Session;
}

/// The directory routines that several others call.
namespace twk::directory {

/// Determines the mode of a domain: 2 for a name without a dot, otherwise 0 or 1 as the domain reports. Sets
/// `NTDomainName` and `DnsServerName`. Raises what the directory raises.
std::int32_t Determine_Mode(session::Session& session, std::string_view domain);

/// The names of the domains that can be reached. A failed search of the forest shows a box with the number;
/// with "/DEBUG" it raises.
std::vector<std::string> Load_Domain_List(session::Session& session);

/// Sets a password and asks for a new one at the next logon; "PROMPT" in any case asks for it in a box first.
/// True when the password was set; failing to lift a lock-out afterwards does not count. `reason` says why it
/// was not.
bool Reset_AD_Password(session::Session& session, std::string_view password, std::string_view path,
                       std::string* reason = nullptr);
bool Reset_NT_Password(session::Session& session, std::string_view password, std::string_view name,
                       std::string* reason = nullptr);

/// The relative identifier of a group: from a row's key in an Active Directory domain, from a name in a WinNT
/// domain. Raises what the directory raises.
std::int32_t Group_RID(session::Session& session, std::string_view group);
/// The same by the group's name through the WinNT provider, in every mode.
std::int32_t Group_RID_by_name(session::Session& session, std::string_view name);

/// The path of the forest's global catalogue; empty when none is known.
std::string forest_path(session::Session& session);
/// True when a user with that principal name exists anywhere in the forest; a failure counts as False.
bool Is_Name_Used_In_Forest(session::Session& session, std::string_view user_principal_name);

/// The name used in WinNT paths: the pre-2000 name of an Active Directory domain.
const std::string& winnt_domain(const session::Session& session);
/// "WinNT://<domain>" and "WinNT://<domain>/<name>" by that name.
std::string winnt_path(const session::Session& session);
std::string winnt_path(const session::Session& session, std::string_view name);

/// Runs a query given as its four-part text.
std::unique_ptr<platform::Recordset> run_query(session::Session& session, std::string_view text,
                                               const platform::QueryOptions& options = {});

}  // namespace twk::directory
