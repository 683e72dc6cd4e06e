#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/adsi.hpp"

namespace twk::controls {
struct ListRow;
struct TreeNode;
}  // namespace twk::controls
namespace twk::session {
struct Session;
}

/// The user details tab: one account with its groups, in both kinds of domain.
namespace twk::directory {

/// "De&tails" of the tree's menu and a double click: brings the tab to the front and fills it with the user
/// of the node. A node that is no user empties the tab. True when the user was read; what went wrong stands
/// in panel 1, and the tab is empty then.
bool show_user_details(session::Session& session, const controls::TreeNode& node);
/// A node of the tree was chosen: one that is no user empties the tab.
void node_chosen(session::Session& session, const controls::TreeNode& node);
/// Empties the tab; the groups that the account was in go back to the list of the others.
void Clear_UM(session::Session& session);

/// The tab's "Save". What is refused stands in panel 1. Does nothing while no account is shown.
void Userman_Save_Click(session::Session& session);
/// Put the account into the selected groups of `ListView3`, and out of those of `ListView4`. A group that
/// refuses keeps its place, and panel 1 tells why. Do nothing while no account is shown.
void UM_ADD_GROUP_Click(session::Session& session);
void UM_REMOVE_GROUP_Click(session::Session& session);
/// One of the two lists has the selection; its button is the one that can be pressed.
void ListView3_Click(session::Session& session);
void ListView4_Click(session::Session& session);
/// The button of the list.
void ListView3_DblClick(session::Session& session);
void ListView4_DblClick(session::Session& session);

// What the two kinds of domain share.

/// Sub-item 1 of the row of the primary group in `ListView4`.
inline constexpr std::string_view kPrimaryGroup = "Primary";

/// True for no drive and for a capital letter (or "@") with ":". Otherwise beeps and tells it in panel 1.
bool check_drive_letter(session::Session& session);
/// Stages the expiry that the tab has, unless it is what the account has already. Raises a type mismatch for
/// what cannot be taken.
void stage_typed_expiry(session::Session& session, platform::User& user);
/// The text of a property; empty when it has no value.
std::string text_or_empty(platform::DirectoryObject& object, std::string_view property);
/// Runs the saving of one kind of domain and releases `CurrentUser`; a failure stands in panel 1 and is
/// False.
bool save_shown_user(session::Session& session, bool (*save)(session::Session& session));
/// Ticks the box of a lock-out, which can be changed only while the account is locked.
void show_lock_out(session::Session& session, bool locked);
/// Adds a row to `ListView4`, once, and takes the group out of `ListView3`.
void show_membership(session::Session& session, const std::string& key, const std::string& name,
                     const std::string& icon, bool primary);

}  // namespace twk::directory
