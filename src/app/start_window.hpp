#pragma once

#include <QDialog>
#include <QString>
#include <optional>

#include "platform/dialogs.hpp"

/// What a person sees who names neither a lab nor a domain.
namespace twk::app {

/// What the person chose to work in.
struct StartChoice {
  QString lab;  ///< its folder; empty: a real domain
};

/// Asks what to work in: a real domain, one of the labs opened before, another one, or a new sample. None
/// when the person quits. The boxes of a new lab's making go through `dialogs`.
std::optional<StartChoice> choose_start(platform::Dialogs& dialogs);

/// Folders of the labs that were opened, the last one first; those that went away are left out.
QStringList recent_labs();
/// Puts a folder in front of them.
void remember_lab(const QString& folder);

/// Asks for name, folder and kind, and makes a sample lab. The folder, or none when the person cancelled.
std::optional<QString> make_sample_lab(platform::Dialogs& dialogs, QWidget* parent);

}  // namespace twk::app
