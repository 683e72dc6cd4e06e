#pragma once

#include <QWidget>

#include "session/session.hpp"

/// The tabs of the main window, a file each. The parent owns them.
namespace twk::screens {

QWidget* make_new_user_tab(session::Session& session, QWidget* parent);
QWidget* make_details_tab(session::Session& session, QWidget* parent);
QWidget* make_log_tab(session::Session& session, QWidget* parent);
QWidget* make_site_tab(session::Session& session, QWidget* parent);
QWidget* make_template_tab(session::Session& session, QWidget* parent);
/// The tabs inside the set-up tab.
QWidget* make_setup_tab(session::Session& session, QWidget* parent);
QWidget* make_preferences_tab(session::Session& session, QWidget* parent);
QWidget* make_mail_tab(session::Session& session, QWidget* parent);
QWidget* make_w2k_tab(session::Session& session, QWidget* parent);
QWidget* make_wts_tab(session::Session& session, QWidget* parent);

}  // namespace twk::screens
