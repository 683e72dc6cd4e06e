#pragma once

#include "creation/creation_run.hpp"

namespace twk::creation {

inline constexpr std::size_t kLongestUserId = 20;

/// The account name that a format makes of the names of the request, in the letters that it asks for. Raises
/// 126 where there are no tables of plain letters.
std::string form_user_id(session::Session& session, const NewUserRequest& request, std::string_view format);

/// Checks the request before anything is done, loads template and site, forms the account name and opens
/// "Log.txt". A refusal shows its reason in a box, the status bar or the log, and ends the run.
Step ValidateRequest(CreationRun& run);

/// Checks whether the account name is taken, and what to do then: another format, the next serial number, or
/// the end. Locks the main window when the run goes on.
Step ResolveCollision(CreationRun& run);

/// The format of the next name to try when one is taken, with the next serial number in the session; none
/// when there is no other.
const std::string* next_format(session::Session& session, const NameFormats& formats);
/// The run ends because its name is taken.
void refuse_for_taken_name(CreationRun& run);

/// In Active Directory, when common name and account name may differ: takes the account name from the
/// directory rows. Refuses a name that no domain accepts before anything is made for it.
Step ResolveSamName(CreationRun& run);

/// All of these in their order, with the question whether the person has an account, up to the first that
/// does not let the run go on.
Step SettleName(CreationRun& run);

}  // namespace twk::creation
