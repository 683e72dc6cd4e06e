#pragma once

#include <QDialog>
#include <memory>
#include <string_view>

#include "windows/state/desktop.hpp"

/// The windows besides the main one, a file each. The routine that shows a window has filled its state; the
/// window calls the routine of the button that closes it.
namespace twk::screens {

/// The window of that name ("frmADOptions"); none for an unknown name.
std::unique_ptr<QDialog> make_window(std::string_view name, windows::Desktop& session, QWidget* parent);

std::unique_ptr<QDialog> make_ad_options(windows::Desktop& session, QWidget* parent);
std::unique_ptr<QDialog> make_copy_group(windows::Desktop& session, QWidget* parent);
std::unique_ptr<QDialog> make_choose_ou(windows::Desktop& session, QWidget* parent);
std::unique_ptr<QDialog> make_csv_import(windows::Desktop& session, QWidget* parent);
std::unique_ptr<QDialog> make_custom(windows::Desktop& session, QWidget* parent);
std::unique_ptr<QDialog> make_edit_properties(windows::Desktop& session, QWidget* parent);
std::unique_ptr<QDialog> make_find_user(windows::Desktop& session, QWidget* parent);
std::unique_ptr<QDialog> make_group_add(windows::Desktop& session, QWidget* parent);
std::unique_ptr<QDialog> make_import_groups(windows::Desktop& session, QWidget* parent);
std::unique_ptr<QDialog> make_leaving(windows::Desktop& session, QWidget* parent);
std::unique_ptr<QDialog> make_log_window(windows::Desktop& session, QWidget* parent);
std::unique_ptr<QDialog> make_logon_hours(windows::Desktop& session, QWidget* parent);
std::unique_ptr<QDialog> make_multi_user(windows::Desktop& session, QWidget* parent);
std::unique_ptr<QDialog> make_permissions(windows::Desktop& session, QWidget* parent);
std::unique_ptr<QDialog> make_rename_nt(windows::Desktop& session, QWidget* parent);
std::unique_ptr<QDialog> make_rename_user(windows::Desktop& session, QWidget* parent);
std::unique_ptr<QDialog> make_run_preview(windows::Desktop& session, QWidget* parent);
std::unique_ptr<QDialog> make_search_mail(windows::Desktop& session, QWidget* parent);
std::unique_ptr<QDialog> make_select_ou(windows::Desktop& session, QWidget* parent);
std::unique_ptr<QDialog> make_share_points(windows::Desktop& session, QWidget* parent);
std::unique_ptr<QDialog> make_variables(windows::Desktop& session, QWidget* parent);
std::unique_ptr<QDialog> make_wks_profile(windows::Desktop& session, QWidget* parent);
/// Stay open next to the main window during an import, or during work on a folder.
std::unique_ptr<QDialog> make_cancel_import(windows::Desktop& session, QWidget* parent);
std::unique_ptr<QDialog> make_file_progress(windows::Desktop& session, QWidget* parent);
/// `Groupsfrm`, which stays next to the main window and is hidden and shown again.
std::unique_ptr<QDialog> make_groups(windows::Desktop& session, QWidget* parent);

}  // namespace twk::screens
