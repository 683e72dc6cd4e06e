#pragma once

#include <QWidget>

#include "windows/state/desktop.hpp"

/// The tabs of the main window, a file each. The parent owns them.
namespace twk::screens {

QWidget* make_new_user_tab(windows::Desktop& session, QWidget* parent);
QWidget* make_details_tab(windows::Desktop& session, QWidget* parent);
QWidget* make_log_tab(windows::Desktop& session, QWidget* parent);
QWidget* make_site_tab(windows::Desktop& session, QWidget* parent);
QWidget* make_template_tab(windows::Desktop& session, QWidget* parent);
/// The tabs inside the set-up tab.
QWidget* make_setup_tab(windows::Desktop& session, QWidget* parent);
QWidget* make_preferences_tab(windows::Desktop& session, QWidget* parent);
QWidget* make_mail_tab(windows::Desktop& session, QWidget* parent);
QWidget* make_w2k_tab(windows::Desktop& session, QWidget* parent);
QWidget* make_wts_tab(windows::Desktop& session, QWidget* parent);

}  // namespace twk::screens
