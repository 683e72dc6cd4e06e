#pragma once

#include <string>
#include <string_view>

namespace twk::session {
struct Session;
}

/// The tags of the name language in a text; `Filling` applies them in order.
namespace twk::format {

/// Each occurrence of a name's tag, upper case, replaced by the name, with the modifiers around the tag.
void expand_name(std::string& text, std::string_view tag, std::string_view name);

/// The tags of the serial number. Unless `SerialTokenUsed` is set, `SerialCounter` starts from the setting
/// `IncNumber`; a serial tag sets `SerialTokenUsed`.
void expand_serials(session::Session& session, std::string& text);

}  // namespace twk::format
