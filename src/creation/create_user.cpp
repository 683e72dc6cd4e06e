#include "creation/create_user.hpp"

#include <algorithm>
#include <optional>
#include <utility>

#include "base/error_words.hpp"
#include "base/text.hpp"
#include "creation/account_stage.hpp"
#include "creation/account_texts.hpp"
#include "creation/creation_run.hpp"
#include "creation/known_person.hpp"
#include "creation/mailbox_stage.hpp"
#include "creation/outcome_of.hpp"
#include "creation/paths.hpp"
#include "creation/resource_stages.hpp"
#include "creation/share_rights.hpp"
#include "creation/validate_request.hpp"
#include "format/variables.hpp"
#include "session/session.hpp"
#include "stores/template_store.hpp"

namespace twk::creation {
namespace {

using session::CreationOutcome;
using session::Session;

void LocatePdc(CreationRun& run) {
  Session& session = run.session;
  std::string name;
  base::Trap trap;
  trap([&] { name = session.platform.network.NetGetDCName("", session.DomainName); });
  if (trap.number() != 0 || name.size() < 3) {
    run.PdcName = run.site.server;
    log(run, "PDC not found");
    log(run, "Will use Server: " + run.site.server + " to lookup accounts.");
    return;
  }
  run.PdcName = name.substr(2);
  log(run, "Locate PDC: " + run.PdcName);
  if (session::is_active_directory(session))
    run.PdcName.clear();
}

/// What was done up to here is in the log before the next begins.
void begin_step(CreationRun& run, std::string_view text) {
  run.session.log.gather(true);
  run.view.step(text);
}

void end_quietly(CreationRun& run) {
  run.view.progress(0);
  run.view.step("Progress");
  run.view.status("Ready.");
  run.view.unlock();
  run.session.log.close();
}

void tell_errors_of_account(CreationRun& run) {
  run.stage = CreationStage::kAccount;
  run.session.Error_Status_Text = "Error Creating Users Account...";
  run.session.Error_Log_Text = "Error Creating Users Account: " + run.UserId;
}

void begin_account(CreationRun& run) {
  PrepareAccountTexts(run);
  tell_errors_of_account(run);
}

void create_account(CreationRun& run) {
  Session& session = run.session;
  begin_step(run, "Create User Account");
  begin_account(run);
  if (session::is_active_directory(session)) {
    CreateAdAccount(run);
    ApplyGroups(run);
    ApplyW2kProperties(run);
  } else {
    CreateNtAccount(run);
    ApplyGroups(run);
  }
  SetPrimaryGroup(run);
  run.traps_off = session::is_debug(session);
  run.view.progress(45);
  run.view.stage(Stage::kAccount, StageState::kCompleted);
}

/// The account and everything that hangs on it is safe against a power cut from here on, after one wait for
/// the disk.
void make_durable(CreationRun& run) {
  tell_errors_of_account(run);
  run.batch.commit();
}

bool wants_terminal_settings(const Session& session) {
  const auto enables = [](const format::Variable& one) {
    return base::equals_fold(one.name, "WTS") && base::equals_fold(one.value, "ENABLED");
  };
  return std::ranges::any_of(format::template_variables(session), enables);
}

bool wants_mailbox(const CreationRun& run) {
  return run.request.stages.mailbox && !run.site.mail_server.empty() && !run.site.mail_site.empty() &&
         !run.site.mail_organization.empty();
}

void create_mailbox(CreationRun& run) {
  run.view.progress(75);
  begin_step(run, "Creating Mail Account...");
  const Mailbox mailbox = CreateMailbox(run);
  if (mailbox == Mailbox::kFailed) {
    log(run, "Failed to create Mail Account");
    run.RunWarning = 2;
    return run.view.stage(Stage::kMailbox, StageState::kFailed);
  }
  log(run, "Created Mail Account");
  if (mailbox == Mailbox::kCreatedWithWarnings)
    run.RunWarning = 2;
  run.view.stage(Stage::kMailbox,
                 mailbox == Mailbox::kCreated ? StageState::kCompleted : StageState::kWarned);
}

Step make_directories(CreationRun& run) {
  if (!run.request.stages.directories)
    return Step::kGoOn;
  begin_step(run, "Create Directories...");
  if (CreateDirectories(run) == Step::kEnd) {
    run.message = "The directory exists already";
    end_quietly(run);
    return Step::kEnd;
  }
  run.view.stage(Stage::kDirectories, StageState::kCompleted);
  return Step::kGoOn;
}

/// What the stages up to the account would encounter, for a session whose services change nothing: faster
/// than a rehearsal of the whole. Raises what would stop the run.
Step foresee_name(CreationRun& run) {
  ResolvePaths(run);
  if (make_directories(run) == Step::kEnd)
    return Step::kEnd;
  if (run.request.stages.account) {
    begin_account(run);
    ForeseeAccount(run);
    AddUserToViews(run);
  }
  return Step::kGoOn;
}

/// The stages in their order. Raises what stops the run.
Step work(CreationRun& run) {
  const CreationStages& stages = run.request.stages;
  ResolvePaths(run);
  run.view.progress(10);
  LocatePdc(run);
  if (make_directories(run) == Step::kEnd)
    return Step::kEnd;
  run.view.progress(25);
  if (stages.account) {
    create_account(run);
    run.batch.begin_sync();
  }
  if (stages.shares) {
    begin_step(run, "Create Shares...");
    CreateUserShares(run);
  }
  if (wants_terminal_settings(run.session))
    ApplyTerminalSettings(run);
  if (stages.permissions) {
    begin_step(run, "Set Dir Permissions...");
    ApplyDirPermissions(run);
  }
  if (wants_mailbox(run))
    create_mailbox(run);
  run.view.progress(90);
  if (stages.account) {
    AddUserToViews(run);
    make_durable(run);
  }
  run.session.log.gather(false);
  if (stages.command && !run.request.command.text.empty()) {
    run.view.progress(95);
    run.view.step("Running Command");
    RunCreateCommand(run);
  }
  return Step::kGoOn;
}

CreationOutcome finish(CreationRun& run) {
  Session& session = run.session;
  run.CurrentUserObject.reset();
  run.AdContainer.reset();
  run.view.progress(100);
  run.view.step("Finished");
  const std::string done = session.import.rehearsed ? "Nothing was created." : "User Created.";
  run.view.status(done);
  log(run, done);
  run.view.unlock();
  if (!session.import.Importing)
    stores::release_template(session);
  session.log.close();
  return good_outcome(run);
}

void show_failed_stage(CreationRun& run) {
  switch (run.stage) {
    case CreationStage::kNone:
      return;
    case CreationStage::kAccount:
      return run.view.stage(Stage::kAccount, StageState::kFailed);
    case CreationStage::kProfileDirectory:
      return run.view.stage(Stage::kDirectories, StageState::kFailed);
    case CreationStage::kCommand:
      return run.view.stage(Stage::kCommand, StageState::kFailed);
  }
}

CreationOutcome fail(CreationRun& run, const base::RuntimeError& failure) {
  Session& session = run.session;
  show_failed_stage(run);
  run.view.status(session.Error_Status_Text);
  log(run, session.Error_Log_Text);
  log(run, "Error Number: " + base::to_text(failure.number()));
  session.log.reason(base::in_words(failure));
  if (run.has_account)
    session.log.reason("the account is made, but not complete: finish it by hand, or delete it");
  session.log.close();
  CreationOutcome outcome = told_outcome(run, session::kRed, session.Error_Status_Text + " ");
  run.view.step("Error");
  run.view.unlock();
  if (!session.import.holds_records)
    stores::release_template(session);
  return outcome;
}

/// One run, which takes the request; none, and the request again, when the name is taken and another one is
/// asked for.
std::optional<CreationOutcome> run_once(Session& session, NewUserRequest& request, CreationView& view) {
  session.Error_Status_Text = "Error Creating User...";
  session.Error_Log_Text = "Error Creating User: " + request.UserId;
  CreationRun run(session, std::move(request), view);
  try {
    Step step = SettleName(run);
    // An import has asked before its first line.
    if (step == Step::kGoOn && !session.import.Importing)
      RequireShareRights(run);
    if (step == Step::kGoOn)
      step = run.request.names_only ? foresee_name(run) : work(run);
    if (step == Step::kAgain) {
      request = std::move(run.request);
      return std::nullopt;
    }
    if (step == Step::kEnd)
      return outcome_of(run, run.is_known ? session::kYellow : std::string_view{}, run.message);
    remember_person(run);
    return finish(run);
  } catch (const base::RuntimeError& failure) {
    session.log.write_gathered();
    if (run.traps_off)
      throw;
    doubt_person(run);
    return fail(run, failure);
  }
}

/// What the search for one user's free name remembers must not affect the next user, however it ended.
void forget_name_search(Session& session) {
  session.AltIdTried = false;
  session.SerialTokenUsed = false;
}

}  // namespace

CreationOutcome create_user(Session& session, NewUserRequest request, CreationView& view) {
  forget_name_search(session);
  std::optional<CreationOutcome> outcome;
  while (!outcome)
    outcome = run_once(session, request, view);
  forget_name_search(session);
  return *outcome;
}

}  // namespace twk::creation
