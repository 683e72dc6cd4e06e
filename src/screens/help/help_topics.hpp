#pragma once

#include <QString>
#include <array>

#include "screens/main/main_window.hpp"

namespace twk::screens {

/// A page of the help: ":/help/NAME.html".
struct HelpTopic {
  const char* name;
  const char* title;
};

/// In the order of the contents.
inline constexpr std::array<HelpTopic, 22> kHelpTopics = {{{"main", "The main window"},
                                                           {"lab", "Labs and starting"},
                                                           {"tree", "The tree"},
                                                           {"new-user", "New User"},
                                                           {"user-details", "User Details"},
                                                           {"log", "Log"},
                                                           {"site", "Site"},
                                                           {"template", "Template"},
                                                           {"set-up", "Set-up"},
                                                           {"preferences", "Preferences"},
                                                           {"mail", "Mail"},
                                                           {"w2k", "W2K"},
                                                           {"wts", "WTS"},
                                                           {"names", "Name formats"},
                                                           {"variables", "Variables"},
                                                           {"passwords", "Passwords"},
                                                           {"import", "Importing users"},
                                                           {"multi-user", "Many users at once"},
                                                           {"find", "Finding a user"},
                                                           {"groups", "Groups"},
                                                           {"options", "AD options"},
                                                           {"settings", "Settings"}}};

/// The topic of a tab by its place in `SSTab1`, and in the set-up tab by its place in `SSTab2`.
QString help_topic(int tab, int setup_tab);
/// The topic of what a window shows: the current tab of the main window, or the topic of a dialog by its
/// name; "main" for any other.
QString help_topic_of(const QWidget* window);

/// Lets F1 open the topic of the active window, as long as the owner exists.
void open_help_with_f1(QObject& owner);

}  // namespace twk::screens
