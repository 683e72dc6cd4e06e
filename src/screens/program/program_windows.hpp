#pragma once

#include <QString>
#include <QWidget>
#include <memory>

#include "session/session.hpp"

/// Windows about the program itself.
namespace twk::screens {

/// `frmSplash`: shows itself while the session's start-up says so, with the phase under way.
std::unique_ptr<QWidget> make_splash(session::Session& session);

/// `frmTip`, "Did you know", over the parent until the person closes it. Nothing when there are no tips.
void show_tip(QWidget* parent, session::Session& session);
/// The same, unless the person does not want tips at the start.
void show_tip_at_start(QWidget* parent, session::Session& session);

/// Name, version and what the program is.
void show_about(QWidget* parent);

/// The help window at a topic ("Main", "new-user", see help_topics.hpp); it stays beside the windows. The
/// parent's own help window is used again.
void show_help(QWidget* parent, const QString& topic);

}  // namespace twk::screens
