#pragma once

#include <QDialog>
#include <memory>
#include <string_view>

#include "session/session.hpp"

/// The windows besides the main one, a file each. The routine that shows a window has filled its state; the
/// window calls the routine of the button that closes it.
namespace twk::screens {

/// The window of that name ("frmADOptions"); none for an unknown name.
std::unique_ptr<QDialog> make_window(std::string_view name, session::Session& session, QWidget* parent);

std::unique_ptr<QDialog> make_ad_options(session::Session& session, QWidget* parent);
std::unique_ptr<QDialog> make_copy_group(session::Session& session, QWidget* parent);
std::unique_ptr<QDialog> make_csv_import(session::Session& session, QWidget* parent);
std::unique_ptr<QDialog> make_custom(session::Session& session, QWidget* parent);
std::unique_ptr<QDialog> make_edit_properties(session::Session& session, QWidget* parent);
std::unique_ptr<QDialog> make_find_user(session::Session& session, QWidget* parent);
std::unique_ptr<QDialog> make_group_add(session::Session& session, QWidget* parent);
std::unique_ptr<QDialog> make_import_groups(session::Session& session, QWidget* parent);
std::unique_ptr<QDialog> make_logon_hours(session::Session& session, QWidget* parent);
std::unique_ptr<QDialog> make_multi_user(session::Session& session, QWidget* parent);
std::unique_ptr<QDialog> make_permissions(session::Session& session, QWidget* parent);
std::unique_ptr<QDialog> make_rename_nt(session::Session& session, QWidget* parent);
std::unique_ptr<QDialog> make_rename_user(session::Session& session, QWidget* parent);
std::unique_ptr<QDialog> make_search_mail(session::Session& session, QWidget* parent);
std::unique_ptr<QDialog> make_select_ou(session::Session& session, QWidget* parent);
std::unique_ptr<QDialog> make_share_points(session::Session& session, QWidget* parent);
std::unique_ptr<QDialog> make_variables(session::Session& session, QWidget* parent);
std::unique_ptr<QDialog> make_wks_profile(session::Session& session, QWidget* parent);
/// Stay open next to the main window during an import, or during work on a folder.
std::unique_ptr<QDialog> make_cancel_import(session::Session& session, QWidget* parent);
std::unique_ptr<QDialog> make_file_progress(session::Session& session, QWidget* parent);
/// `Groupsfrm`, which stays next to the main window and is hidden and shown again.
std::unique_ptr<QDialog> make_groups(session::Session& session, QWidget* parent);

}  // namespace twk::screens
