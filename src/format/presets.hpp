#pragma once

#include <string>
#include <string_view>

namespace twk::session {
struct Session;
}

/// The formats of names that a person chooses from, and the one that the settings ask for.
namespace twk::format {

/// Entries of each choice, the last of which is the person's own format.
inline constexpr int kAccountFormats = 5;
inline constexpr int kFullNameFormats = 4;

/// The format of an entry, counted from 0; empty for the person's own and for any other number.
std::string_view account_preset(int entry);
std::string_view full_name_preset(int entry);

/// The chosen entry, counted from 0: the stored one, or what a fresh installation has.
int stored_account_entry(session::Session& session);
int stored_full_name_entry(session::Session& session);

/// The format that is used: the preset of a stored choice, otherwise the stored text, or the preset while
/// there is none.
std::string stored_account_format(session::Session& session);
std::string stored_full_name_format(session::Session& session);

}  // namespace twk::format
