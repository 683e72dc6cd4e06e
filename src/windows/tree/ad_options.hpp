#pragma once

#include <string_view>

/// The window `frmADOptions`: how a directory is loaded. A change takes effect at the next load.
namespace twk::windows {

struct Desktop;

/// Shows what is stored, or the defaults.
void frmADOptions_Load(Desktop& session);
/// Stores all eight values. A number below 1 is refused like a text, and nothing is stored; an empty number
/// means the load's default. True when they were stored.
bool btnApply_Click(Desktop& session);

/// What was typed is not a number: a box says so, and the field gets a valid one.
void PageSize_Change(Desktop& session);
void UserLimit_Change(Desktop& session);

/// Describes the option of that control, if there is a text for it.
void show_option_help(Desktop& session, std::string_view control);

}  // namespace twk::windows
