#include "creation/stored_request.hpp"

#include "base/text.hpp"
#include "controls/tree_view.hpp"
#include "format/presets.hpp"
#include "session/settings.hpp"
#include "session/settings_schema.hpp"

namespace twk::creation {

NewUserRequest stored_request(session::Session& session) {
  const auto stage = [&](std::string_view name) { return session::read_switch(session, session::kUM, name); };
  const auto preferred = [&](std::string_view name) {
    return session::read_switch(session, session::kPreferences, name);
  };
  const auto set_up = [&](std::string_view name) {
    return session::read_setting(session, session::kSetup, name);
  };
  const session::Preferences preferences = session::read_preferences(session);
  const bool cannot_change = preferred("CantChangePWD");
  NewUserRequest request;
  request.Expiry = set_up("AccountExpire");
  request.stages = {stage("CreateDirs"),  stage("CreateShares"), stage("SetPermissions"),
                    stage("UserAccount"), stage("MailAccount"),  stage("RunCmd")};
  request.formats = {format::stored_account_format(session), set_up("AltSetupID"),
                     format::stored_full_name_format(session)};
  request.password = {preferences.default_password, std::string(base::trim(set_up("FormattedPassword"))),
                      preferred("UseFormattedPassword")};
  // A person cannot be required to change a password that may not be changed.
  request.flags = {preferred("ForcePasswdChange") && !cannot_change, cannot_change,
                   preferred("PasswdNVRExpire"), preferred("AccountDisabled")};
  request.command = {std::string(base::trim(set_up("BatchFileCreate"))),
                     session::read_switch(session, session::kSetup, "CreateHidden"),
                     session::read_switch(session, session::kSetup, "WaitNew")};
  request.mail_administrator = preferences.mail_administrator;
  request.named_by_logon = !preferences.named_by_full_name;
  request.tree_shows_full_name = !preferences.tree_shows_display_name;
  request.skip_prompts = preferred("SkipPrompt");
  return request;
}

void take_place(NewUserRequest& request, const controls::TreeNode* node) {
  if (node == nullptr)
    return;
  request.SelectedNodeKind = node->image;
  request.SelectedNodeKey = node->key;
  request.SelectedNodeText = node->text;
  if (node->parent != nullptr)
    request.ParentNodeKey = node->parent->key;
}

}  // namespace twk::creation
