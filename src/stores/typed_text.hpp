#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace twk::session {
struct Session;
}

namespace twk::stores {

/// Why a text cannot be in a list or a line: it contains a control character. Empty when it can.
std::string control_refusal(std::string_view text);
/// Why a name is unsuitable: it contains an invisible character.
std::string name_refusal(std::string_view name);
/// Why a record file cannot hold a text: a control character, or one with no place in code page 1252.
std::string record_refusal(std::string_view text);
/// Why no record can have a name, for either reason.
std::string record_name_refusal(std::string_view name);

/// The first refusal among the texts; empty when there is none.
std::string first_refusal(std::string (*refusal_of)(std::string_view),
                          std::initializer_list<std::string_view> texts);
/// Beeps and shows the first refusal among the texts in the status. False when there is none.
bool refuses(session::Session& session, std::string (*refusal_of)(std::string_view),
             std::initializer_list<std::string_view> texts);

/// A name in the form for comparing: trimmed and in upper case.
std::string folded_name(std::string_view name);

}  // namespace twk::stores
