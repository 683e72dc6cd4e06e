#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

/// Messages of the editing windows. They cover the status bar, so they use boxes.
namespace twk::windows {

struct Desktop;

/// A box with an exclamation mark.
void warn(Desktop& session, std::string_view text, std::string_view title);

/// True when `refusal_of` refuses one of the typed texts (see `stores/typed_text.hpp`); a box and the status
/// say why.
bool refuses_typed(Desktop& session, std::initializer_list<std::string_view> texts, std::string_view title,
                   std::string (*refusal_of)(std::string_view));

}  // namespace twk::windows
