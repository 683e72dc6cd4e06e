#include "creation/create_user.hpp"

#include "base/error_words.hpp"
#include "base/text.hpp"
#include "controls/basic.hpp"
#include "creation/account_stage.hpp"
#include "creation/account_texts.hpp"
#include "creation/creation_run.hpp"
#include "creation/mailbox_stage.hpp"
#include "creation/paths.hpp"
#include "creation/resource_stages.hpp"
#include "creation/validate_request.hpp"
#include "directory/operations.hpp"
#include "session/form1.hpp"
#include "session/log_tab.hpp"
#include "session/session.hpp"
#include "session/windows.hpp"
#include "stores/site_store.hpp"
#include "stores/template_store.hpp"
#include "stores/template_tab.hpp"

namespace twk::creation {
namespace {

using session::Form1;
using session::Session;

void LocatePdc(CreationRun& run) {
  Session& session = run.session;
  std::string name;
  base::Trap trap;
  trap([&] { name = session.platform.network.NetGetDCName("", session.DomainName); });
  if (trap.number() != 0 || name.size() < 3) {
    run.PdcName = base::trim(session.form1.NTSERVER.text.get());
    log(run, "PDC not found");
    log(run, "Will use Server: " + session.form1.NTSERVER.text.get() + " to lookup accounts.");
    return;
  }
  run.PdcName = name.substr(2);
  log(run, "Locate PDC: " + run.PdcName);
  if (session::is_active_directory(session))
    run.PdcName.clear();
}

void end_quietly(Session& session, const char* caption) {
  session.form1.ProgressBar1.value = 0;
  session.form1.progress.caption = caption;
  session.form1.StatusBar1.panel1 = "Ready.";
  session.form1.enabled = !session.import.Importing;
  session.log.close();
}

void begin_account(CreationRun& run) {
  PrepareAccountTexts(run);
  run.stage = CreationStage::kAccount;
  run.session.Error_Status_Text = "Error Creating Users Account...";
  run.session.Error_Log_Text = "Error Creating Users Account: " + run.UserId;
}

void create_account(CreationRun& run) {
  Session& session = run.session;
  show_step(run, "Create User Account");
  begin_account(run);
  platform::WriteBatch batch(session.platform.directory);
  if (session::is_active_directory(session)) {
    CreateAdAccount(run);
    ApplyGroups(run);
    ApplyW2kProperties(run);
  } else {
    CreateNtAccount(run);
    ApplyGroups(run);
  }
  SetPrimaryGroup(run);
  batch.commit();
  run.traps_off = session::is_debug(session);
  set_progress(run, 45);
  complete(session.form1.UserAccount);
}

bool wants_terminal_settings(const controls::ListView& variables) {
  for (const controls::ListRow* row : variables.find_text("WTS")) {
    if (!row->sub_items.empty() && base::equals_fold(row->sub_items.front(), "ENABLED"))
      return true;
  }
  return false;
}

bool wants_mailbox(const Form1& form) {
  return form.Create_Mail_Account.on() && !form.EXSERVER.text.get().empty() &&
         !form.EXSite.text.get().empty() && !form.EXorg.text.get().empty();
}

void create_mailbox(CreationRun& run) {
  set_progress(run, 75);
  show_step(run, "Creating Mail Account...");
  controls::Label& light = run.session.form1.MailAccount;
  const Mailbox mailbox = CreateMailbox(run);
  if (mailbox == Mailbox::kFailed) {
    log(run, "Failed to create Mail Account");
    run.RunWarning = 2;
    return paint(light, controls::kRed, "Error");
  }
  log(run, "Created Mail Account");
  if (mailbox == Mailbox::kCreatedWithWarnings)
    run.RunWarning = 2;
  paint(light, mailbox == Mailbox::kCreated ? controls::kBlue : controls::kYellow, "Completed");
}

Step make_directories(CreationRun& run) {
  if (!run.session.form1.Create_Dirs.on())
    return Step::kGoOn;
  show_step(run, "Create Directories...");
  if (CreateDirectories(run) == Step::kEnd) {
    run.session.LastCreation.message = "The directory exists already";
    end_quietly(run.session, "Progress");
    return Step::kEnd;
  }
  complete(run.session.form1.Createdirs);
  return Step::kGoOn;
}

/// What the stages up to the account would encounter, for a session whose services change nothing. Raises
/// what would stop the run.
Step rehearse(CreationRun& run) {
  ResolvePaths(run);
  if (make_directories(run) == Step::kEnd)
    return Step::kEnd;
  if (run.session.form1.Create_User_Account.on()) {
    begin_account(run);
    ForeseeAccount(run);
    AddUserToViews(run);
  }
  return Step::kGoOn;
}

/// The stages in their order. Raises what stops the run.
Step work(CreationRun& run) {
  Form1& form = run.session.form1;
  ResolvePaths(run);
  set_progress(run, 10);
  LocatePdc(run);
  if (make_directories(run) == Step::kEnd)
    return Step::kEnd;
  set_progress(run, 25);
  if (form.Create_User_Account.on())
    create_account(run);
  if (form.Create_Shares.on()) {
    show_step(run, "Create Shares...");
    CreateUserShares(run);
  }
  if (wants_terminal_settings(run.session.variables.ListView1))
    ApplyTerminalSettings(run);
  if (form.Dir_Security.on()) {
    show_step(run, "Set Dir Permissions...");
    ApplyDirPermissions(run);
  }
  if (wants_mailbox(form))
    create_mailbox(run);
  set_progress(run, 90);
  if (form.Create_User_Account.on())
    AddUserToViews(run);
  if (form.Run_script.on() && !form.Create_Script.text.get().empty()) {
    set_progress(run, 95);
    show_step(run, "Running Command");
    RunCreateCommand(run);
  }
  return Step::kGoOn;
}

void write_summary(CreationRun& run, bool warned) {
  session::ImportState& state = run.session.import;
  if (!state.Importing)
    return;
  session::write_run_file(run.session, state.summary_file, run.SummaryRow + (warned ? "Yes" : "No"));
}

void tell(Session& session, const std::string& user, std::string_view light, const std::string& message) {
  std::vector<std::string> warnings = session.log.reasons();
  session.LastCreation = {user, std::string(light), session::LOG_TAB(session, light, message),
                          std::move(warnings)};
}

void finish(CreationRun& run) {
  Session& session = run.session;
  run.CurrentUserObject.reset();
  run.AdContainer.reset();
  set_progress(run, 100);
  show_step(run, "Finished");
  session.form1.StatusBar1.panel1 = "User Created.";
  log(run, "User Created.");
  session.form1.enabled = !session.import.Importing;
  if (!session.import.Importing) {
    stores::Template_Group_Sort(session);
    stores::Clear_TT(session);
    stores::Clear_Site(session);
    session.form1.UserID_Box.text = std::string();
  }
  session.log.close();
  const bool warned = run.RunWarning != 1;
  tell(session, run.UserId, warned ? session::kYellow : session::kGreen,
       session.import.rehearsed ? "Would be created" : run.UserId + " Created User ");
  if (warned && session.form1.STOP_ON_RED[1].on())
    session.import.ImportHalt = true;
  write_summary(run, warned);
}

void fail(CreationRun& run, const base::RuntimeError& failure) {
  Session& session = run.session;
  Form1& form = session.form1;
  if (run.stage == CreationStage::kAccount)
    paint(form.UserAccount, controls::kRed, "Error");
  if (run.stage == CreationStage::kProfileDirectory)
    paint(form.Createdirs, controls::kRed, "Error");
  if (run.stage == CreationStage::kCommand)
    paint(form.run, controls::kRed, "Error");
  form.StatusBar1.panel1 = session.Error_Status_Text;
  log(run, session.Error_Log_Text);
  log(run, "Error Number: " + base::to_text(failure.number()));
  session.log.reason(base::in_words(failure));
  session.log.close();
  tell(session, run.UserId, session::kRed, session.Error_Status_Text + " ");
  show_step(run, "Error");
  form.enabled = !session.import.Importing;
  if (form.STOP_ON_RED[0].on())
    session.import.ImportHalt = true;
  stores::Clear_TT(session);
  stores::Clear_Site(session);
}

/// One run; a taken name calls for another one.
Step run_once(Session& session) {
  CreationRun run(session);
  session.LastCreation = {};
  session.Error_Status_Text = "Error Creating User...";
  session.Error_Log_Text = "Error Creating User: " + run.request.UserId;
  try {
    Step step = ValidateRequest(run);
    if (step == Step::kGoOn)
      step = ResolveCollision(run);
    if (step == Step::kGoOn)
      step = ResolveSamName(run);
    if (step == Step::kGoOn)
      step = session.import.rehearsed ? rehearse(run) : work(run);
    if (step == Step::kGoOn)
      finish(run);
    if (session.LastCreation.user.empty())
      session.LastCreation.user = run.UserId;
    return step;
  } catch (const base::RuntimeError& failure) {
    if (run.traps_off)
      throw;
    fail(run, failure);
    return Step::kEnd;
  }
}

/// What the search for one user's free name remembers must not affect the next user, however it ended.
void forget_name_search(Session& session) {
  session.AltIdTried = false;
  session.SerialTokenUsed = false;
}

}  // namespace

void CreateUser_Click(Session& session) {
  forget_name_search(session);
  while (run_once(session) == Step::kAgain) {
  }
  forget_name_search(session);
}

}  // namespace twk::creation
