#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace twk::session {
struct Session;
}

namespace twk::stores {

/// True when one of the typed texts holds a control character; the status then names it. Such a text would
/// break the lines of logs and tables, and cannot be seen in a list.
bool refuses_control_characters(session::Session& session, std::initializer_list<std::string_view> texts);

/// A text as a record file can hold it: what has no place in code page 1252 is "?".
std::string storable(std::string_view text);

/// A name as it is compared: trimmed and in upper case.
std::string folded_name(std::string_view name);

}  // namespace twk::stores
