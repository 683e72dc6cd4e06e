#pragma once

/// The window `Custom`: which four custom attributes the user details tab shows. Settings hold a
/// display name `Custom1` to `Custom4` and an attribute `Property1` to `Property4`. A field whose display
/// name is absent or empty is hidden, and so is not read or written: emptying a row removes the field.
namespace twk::windows {

struct Desktop;

/// The entry of the options menu: fills the window and shows it.
void show_custom(Desktop& session);

/// Four rows from the settings.
void Custom_Load(Desktop& session);
/// Stores the rows and shows the fields on the details tab. False leaves the window open, after a message: a
/// display name without an attribute, or settings that cannot be written.
bool Custom_OK(Desktop& session);
void Custom_Cancel(Desktop& session);

}  // namespace twk::windows
