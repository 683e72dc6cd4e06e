#include "windows/create_user.hpp"

#include <algorithm>
#include <array>
#include <string_view>

#include "base/text.hpp"
#include "controls/tree_view.hpp"
#include "creation/create_user.hpp"
#include "creation/made_thing.hpp"
#include "creation/stored_request.hpp"
#include "directory/tree/tree_path.hpp"
#include "windows/account/details_tab.hpp"
#include "windows/account/unsaved.hpp"
#include "windows/mail/mail_tab.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/import_windows.hpp"
#include "windows/state/new_user.hpp"
#include "windows/tree/tree_popup.hpp"

namespace twk::windows {
namespace {

using creation::NewUserRequest;
using creation::Stage;
using creation::StageState;

controls::Label& light_of(Form1& form, Stage stage) {
  switch (stage) {
    case Stage::kAccount:
      return form.UserAccount;
    case Stage::kDirectories:
      return form.Createdirs;
    case Stage::kShares:
      return form.Sharedirs;
    case Stage::kPermissions:
      return form.Security;
    case Stage::kMailbox:
      return form.MailAccount;
    case Stage::kCommand:
      break;
  }
  return form.run;
}

}  // namespace

void NewUserView::status(std::string_view text) {
  form_.StatusBar1.panel1 = std::string(text);
}

void NewUserView::step(std::string_view caption) {
  form_.progress.caption = std::string(caption);
}

void NewUserView::progress(int percent) {
  form_.ProgressBar1.value = percent;
}

void NewUserView::begin() {
  hourglass_.reset();
  for (const Stage stage : {Stage::kDirectories, Stage::kShares, Stage::kPermissions, Stage::kAccount,
                            Stage::kMailbox, Stage::kCommand})
    light_of(form_, stage).caption = std::string();
}

void NewUserView::start_work() {
  hourglass_.emplace(form_);
}

void NewUserView::names(const NewUserRequest& request) {
  form_.strFirst.text = request.FirstName;
  form_.StrMiddle.text = request.MiddleName;
  form_.strLast.text = request.LastName;
  form_.UserID_Box.text = request.UserId;
}

void NewUserView::lock() {
  form_.enabled = false;
}

void NewUserView::unlock() {
  form_.enabled = !stays_locked_;
}

void NewUserView::stage(Stage stage, StageState state) {
  controls::Label& light = light_of(form_, stage);
  light.colour = state == StageState::kCompleted ? controls::kBlue
                 : state == StageState::kWarned  ? controls::kYellow
                                                 : controls::kRed;
  light.caption = std::string(state == StageState::kFailed ? "Error" : "Completed");
}

void NewUserView::counted(std::string_view text) {
  form_.Import_Text.caption = std::string(text);
}

void NewUserView::pace(std::string_view text) {
  form_.import_pace.caption = std::string(text);
}

NewUserRequest new_user_request(const Desktop& session) {
  const Form1& form = session.form1;
  NewUserRequest request;
  request.TemplateName = form.nutemplate.text;
  request.SiteName = form.NUsitename.text;
  request.FirstName = form.strFirst.text;
  request.MiddleName = form.StrMiddle.text;
  request.LastName = form.strLast.text;
  request.UserId = form.UserID_Box.text;
  request.Description = form.Description.text;
  request.Expiry = session.import_grps.Expiredate.text;
  request.CopyUser = form.Copy_User.on();
  creation::take_place(request, form.TreeView1.selected());
  request.stages = {form.Create_Dirs.on(),         form.Create_Shares.on(),       form.Dir_Security.on(),
                    form.Create_User_Account.on(), form.Create_Mail_Account.on(), form.Run_script.on()};
  request.formats = {form.setupid.text, form.ALTID.text, form.FN_Format.text};
  request.password = {form.defaultpassword.text, form.Formatted_Password.text, form.FmtPass.on()};
  request.flags = {form.Password_Change.on(), form.USR_Cant_Change.on(), form.PWD_NVR_EXPIRE.on(),
                   form.New_Disabled.on()};
  request.command = {form.Create_Script.text, form.Run_Hidden[0].on(), form.Wait_NEW[0].on()};
  request.mail_administrator = mail_administrator(form);
  request.named_by_logon = form.SamAccountName.value;
  request.tree_shows_full_name = form.DNName.value;
  request.skip_prompts = form.STOP_ON_RED[2].on();
  return request;
}

namespace {

std::array<std::string, 4> typed_names(const Form1& form) {
  return {form.strFirst.text, form.StrMiddle.text, form.strLast.text, form.UserID_Box.text};
}

void remember_names(Desktop& session, std::string made, std::string formed) {
  session.new_user.made_from = typed_names(session.form1);
  session.new_user.made = std::move(made);
  session.new_user.formed = std::move(formed);
}

/// The tab during the creation of one user. It keeps what was made, for the card.
class WitnessedView final : public NewUserView {
 public:
  using NewUserView::NewUserView;

  void made(const creation::MadeThing& thing) override {
    using Kind = creation::MadeThing::Kind;
    switch (thing.kind) {
      case Kind::kAccount:
        account_ = thing.path;
        break;
      case Kind::kFolder:
        lines_ += "\nFolder " + thing.path;
        break;
      case Kind::kShare:
        lines_ += "\nShare \\\\" + thing.server + "\\" + thing.share + " of " + thing.path;
        break;
      case Kind::kGroup:
        lines_ += "\nMember of " + shown_path(thing.path);
        break;
      case Kind::kMailbox:
        lines_ += "\nMailbox " + shown_path(thing.path);
        break;
    }
  }
  void stage(Stage stage, StageState state) override {
    NewUserView::stage(stage, state);
    if (state == StageState::kCompleted)
      return;
    constexpr std::array<std::string_view, 6> kNames = {"Directories",  "Shares",       "Directory security",
                                                        "User account", "Mail account", "Run command"};
    constexpr std::array kStages = {Stage::kDirectories, Stage::kShares,  Stage::kPermissions,
                                    Stage::kAccount,     Stage::kMailbox, Stage::kCommand};
    const auto place = std::find(kStages.begin(), kStages.end(), stage) - kStages.begin();
    warned_ += (warned_.empty() ? "" : ", ") + std::string(kNames.at(static_cast<std::size_t>(place)));
  }

  [[nodiscard]] const std::string& account() const { return account_; }
  [[nodiscard]] const std::string& lines() const { return lines_; }
  [[nodiscard]] const std::string& warned() const { return warned_; }

 private:
  std::string account_;
  std::string lines_;
  std::string warned_;
};

/// A creation that was refused before it began has told so in a box: no card.
void show_card(Desktop& session, const WitnessedView& view) {
  NewUser& tab = session.new_user;
  const session::CreationOutcome& outcome = session.LastCreation;
  tab.card_key = view.account();
  tab.Show_Made.enabled = !view.account().empty();
  tab.card_visible = !outcome.light.empty();
  const bool made = outcome.light == session::kGreen || outcome.light == session::kYellow;
  std::string text = made ? outcome.user + " was created" : "The creation ended with a failure";
  if (!view.account().empty())
    text += (made ? ": " : ". The account exists: ") + shown_path(view.account());
  text += view.lines();
  if (!view.warned().empty())
    text += (made ? "\nNot without faults: " : "\nEnded in: ") + view.warned();
  for (const std::string& warning : outcome.warnings)
    text += "\n- " + warning;
  tab.card.caption = text;
}

/// A second click, or Enter held down, would make a second account of the same person.
bool is_wanted(Desktop& session) {
  const NewUser& last = session.new_user;
  return last.made.empty() || last.made_from != typed_names(session.form1) ||
         session.platform.dialogs.MsgBox(
             "\"" + last.made +
                 "\" was just made with these names.\r\nMake another account with the same names?",
             platform::Buttons::kYesNo, platform::Icon::kQuestion, "Create User") == platform::Answer::kYes;
}

}  // namespace

void New_User_Name_Edited(Desktop& session) {
  Form1& form = session.form1;
  if (!session.new_user.formed.empty() && form.UserID_Box.text == session.new_user.formed)
    form.UserID_Box.text = std::string();
  session.new_user.formed.clear();
}

void Show_Made_Click(Desktop& session) {
  controls::TreeNode* const node = directory::reach_user(session, session.new_user.card_key);
  if (node == nullptr) {
    session.status.panel1 = "The account is not in the tree: " + session.new_user.card_key;
    return;
  }
  session.form1.TreeView1.select(node);
  session.form1.TreeView1.ensure_visible(*node);
  if (may_leave_details(session))
    show_user_details(session, *node);
}

session::CreationOutcome CreateUser_Click(Desktop& session) {
  Form1& form = session.form1;
  if (!is_wanted(session))
    return {};
  if (form.TreeView1.selected() == nullptr)
    form.TreeView1.select(form.TreeView1.first());
  session.LastCreation = {};
  const bool is_formed =
      base::trim(form.UserID_Box.text.get()).empty() || form.UserID_Box.text == session.new_user.formed;
  remember_names(session, {}, {});
  {
    WitnessedView view(form);
    session.LastCreation = creation::create_user(session, new_user_request(session), view);
    show_card(session, view);
  }
  const std::string& light = session.LastCreation.light;
  if (light == session::kGreen || light == session::kYellow) {
    form.UserID_Box.text = std::string();
    remember_names(session, session.LastCreation.user, {});
  } else if (is_formed) {
    session.new_user.formed = form.UserID_Box.text;
  }
  return session.LastCreation;
}

}  // namespace twk::windows
