#pragma once

#include <QWidget>

#include "session/session.hpp"

/// The tabs of the multi-user window, a file each. The parent owns them.
namespace twk::screens {

QWidget* make_multi_delete_tab(session::Session& session, QWidget* parent);
QWidget* make_multi_move_tab(session::Session& session, QWidget* parent);
QWidget* make_multi_accounts_tab(session::Session& session, QWidget* parent);
QWidget* make_multi_properties_tab(session::Session& session, QWidget* parent);

/// The lists of users, groups and units, the selection next to them, and the buttons that move rows between
/// them.
QWidget* make_multi_lists(session::Session& session, QWidget* parent);

}  // namespace twk::screens
