#pragma once

#include <string_view>

#include "creation/made_thing.hpp"
#include "creation/new_user_request.hpp"
#include "session/run_view.hpp"

namespace twk::creation {

enum class Stage { kAccount, kDirectories, kShares, kPermissions, kMailbox, kCommand };
enum class StageState { kCompleted, kWarned, kFailed };

/// What a creation reports while it works.
class CreationView : public session::RunView {
 public:
  /// A run begins: no stage has a state.
  virtual void begin() = 0;
  /// The request will do, and the work on it begins; it ends with the view.
  virtual void start_work() = 0;
  /// The names as they are used from here on.
  virtual void names(const NewUserRequest& request) = 0;
  /// From here on the account is being made, so nothing else may be started; and the end of that.
  virtual void lock() = 0;
  virtual void unlock() = 0;
  virtual void stage(Stage stage, StageState state) = 0;

  // What is made, for a record from which it can be taken back. A group is one that the account is put into.

  /// Before the account of that name and path in the directory is made.
  virtual void makes_account(std::string_view /*account*/, std::string_view /*path*/) {}
  /// Before something is made that is not there yet.
  virtual void makes(const MadeThing& /*thing*/) {}
  /// At once after something was made.
  virtual void made(const MadeThing& /*thing*/) {}
  /// The account has this password.
  virtual void password_set(std::string_view /*account*/, std::string_view /*password*/) {}
};

}  // namespace twk::creation
