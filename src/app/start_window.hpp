#pragma once

#include <QDialog>
#include <QString>
#include <optional>

#include "platform/dialogs.hpp"

/// The window for a person who named neither a lab nor a domain.
namespace twk::app {

/// Where the person chose to work.
struct StartChoice {
  QString lab;  ///< its folder; empty: a real domain
};

/// Asks what to work in: a real domain, one of the labs opened before, another one, or a new sample. None
/// when the person quits. Boxes while a new lab is made go through `dialogs`.
std::optional<StartChoice> choose_start(platform::Dialogs& dialogs);

/// Asks for the folder of a lab; empty when the person cancelled.
QString choose_lab(QWidget* parent);

/// Folders of the labs that were opened, the last one first; missing ones are left out.
QStringList recent_labs();
/// Puts a folder first in that list.
void remember_lab(const QString& folder);

/// Asks for name, folder and kind, and makes a sample lab. Returns the folder, or none when the person
/// cancelled.
std::optional<QString> make_sample_lab(platform::Dialogs& dialogs, QWidget* parent);

}  // namespace twk::app
