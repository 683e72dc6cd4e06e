#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace twk::session {
struct Session;
}

/// The properties that the tab "AD Properties" offers, and what the directory's schema says about each.
namespace twk::batch {

/// Makes `AD_Properties` ready for the session's domain: filled once for a directory, empty in a WinNT
/// domain. A schema that cannot be read is reported in a box, and what was read stays.
void prepare_properties(session::Session& session);
/// Fills `AD_Properties`: the thirteen terminal-server settings, then the mandatory and the optional
/// properties of the schema's class "User". None is chosen, and a value would be appended. Raises what the
/// directory raises.
void fill_properties(session::Session& session);

/// A property was chosen: shows its syntax and opens or closes the frame "Multi Value". A property that the
/// schema does not know has no syntax, and `Label3` says why.
void AD_Properties_Click(session::Session& session);
/// The text of `AD_Properties` changed, perhaps while a name is being typed: only an offered name is looked
/// up.
void AD_Properties_Change(session::Session& session);
/// The field was left: what was typed is looked up.
void AD_Properties_Leave(session::Session& session);

/// The number of a terminal-server setting, counted from 1, by its name in `AD_Properties` or in the table of
/// settings; none for any other property. Folds case.
std::optional<std::int16_t> terminal_server_number(std::string_view property);

/// What is wrong with a value for the chosen terminal-server setting: a time that is not one of the words,
/// or neither yes nor no. Empty when it is fine, and for any other property, whose values the directory
/// checks.
std::string value_fault(const session::Session& session, std::string_view value);

/// True when the values of the property that was looked up are bytes.
bool takes_bytes(const session::Session& session);

}  // namespace twk::batch
