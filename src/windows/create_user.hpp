#pragma once

#include <optional>

#include "batch/import.hpp"
#include "session/creation_outcome.hpp"
#include "windows/state/hourglass.hpp"

/// What stands behind "Create User".
namespace twk::windows {

struct Desktop;

/// The New User tab and the status bar, painted as a creation or an import goes on. With `stays_locked` the
/// window can be used again only when its maker says so, as after the last line of an import.
class NewUserView : public batch::ImportView {
 public:
  explicit NewUserView(Form1& form, bool stays_locked = false) : form_(form), stays_locked_(stays_locked) {}

  void status(std::string_view text) override;
  void step(std::string_view caption) override;
  void progress(int percent) override;
  void begin() override;
  void start_work() override;
  void names(const creation::NewUserRequest& request) override;
  void lock() override;
  void unlock() override;
  void stage(creation::Stage stage, creation::StageState state) override;
  void counted(std::string_view text) override;
  void pace(std::string_view text) override;

 private:
  Form1& form_;
  bool stays_locked_;
  std::optional<Hourglass> hourglass_;
};

/// What the New User tab, the tree and the preferences ask for.
creation::NewUserRequest new_user_request(const Desktop& session);

/// A person edited a name: a User ID that was formed from the names of before goes.
void New_User_Name_Edited(Desktop& session);
/// Shows the account that was made in the tree and on the details tab.
void Show_Made_Click(Desktop& session);
/// Creates the user and shows what came of it. Without a selected node the first one is taken. When the
/// fields still hold what the last account was made from, it asks first.
session::CreationOutcome CreateUser_Click(Desktop& session);

}  // namespace twk::windows
