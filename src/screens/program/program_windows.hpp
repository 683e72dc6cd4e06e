#pragma once

#include <QString>
#include <QWidget>
#include <memory>

#include "windows/state/desktop.hpp"

/// Windows about the program itself.
namespace twk::screens {

/// `frmSplash`: visible while the session's start-up says so, with the current phase.
std::unique_ptr<QWidget> make_splash(windows::Desktop& session);

/// `frmTip`, "Did you know", over the parent until the person closes it. Does nothing without tips.
void show_tip(QWidget* parent, windows::Desktop& session);
/// The same, unless tips at the start are switched off.
void show_tip_at_start(QWidget* parent, windows::Desktop& session);

/// Name, version and what the program is.
void show_about(QWidget* parent);

/// The help window at a topic ("Main", "new-user", see help_topics.hpp); it stays open next to the
/// windows. The parent's existing help window is reused.
void show_help(QWidget* parent, const QString& topic);

}  // namespace twk::screens
