#pragma once

#include <initializer_list>
#include <string_view>

namespace twk::session {
struct Session;
}

/// What the editing windows tell a person. They stand in front of the status bar, so they tell by box.
namespace twk::editors {

/// A box with an exclamation mark.
void warn(session::Session& session, std::string_view text, std::string_view title);

/// True when one of the typed texts holds a control character; a box and the status name it.
bool refuses_typed(session::Session& session, std::initializer_list<std::string_view> texts,
                   std::string_view title);

}  // namespace twk::editors
