#pragma once

#include <QComboBox>
#include <QWidget>

#include "windows/state/desktop.hpp"

/// The tabs of the multi-user window, a file each. The parent owns them.
namespace twk::screens {

QWidget* make_multi_delete_tab(windows::Desktop& session, QWidget* parent);
QWidget* make_multi_move_tab(windows::Desktop& session, QWidget* parent);
QWidget* make_multi_accounts_tab(windows::Desktop& session, QWidget* parent);
QWidget* make_multi_properties_tab(windows::Desktop& session, QWidget* parent);
QWidget* make_multi_groups_tab(windows::Desktop& session, QWidget* parent);
/// There may be hundreds of names: typed text is searched anywhere in them.
void offer_matches(QComboBox& box);

/// The lists of users, groups and units, the selection next to them, and the buttons that move rows between
/// them.
QWidget* make_multi_lists(windows::Desktop& session, QWidget* parent);

}  // namespace twk::screens
