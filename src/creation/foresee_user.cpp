#include "creation/foresee_user.hpp"

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "creation/account_stage.hpp"
#include "creation/account_texts.hpp"
#include "creation/paths.hpp"
#include "creation/quiet_view.hpp"
#include "creation/validate_request.hpp"
#include "platform/ldap_text.hpp"
#include "session/session.hpp"

namespace twk::creation {
namespace {

using session::Session;

/// Listens for the groups, and for the reason of a refusal that only the status line tells.
class Listener final : public QuietView {
 public:
  void status(std::string_view text) override { status_ = text; }
  void made(const MadeThing& thing) override {
    if (thing.kind == MadeThing::Kind::kGroup)
      groups.push_back(thing.path);
  }

  [[nodiscard]] const std::string& last_status() const { return status_; }

  std::vector<std::string> groups;

 private:
  std::string status_;
};

/// A text of a box, without its line breaks.
std::string in_one_line(std::string_view text) {
  std::string line;
  for (const char c : base::trim(text)) {
    if (c != '\r')
      line += c == '\n' ? ' ' : c;
  }
  return line;
}

void tell_existing(CreationRun& run, const std::string& folder, bool wanted, const char* what) {
  bool exists = false;
  base::Trap unreachable;
  unreachable([&] { exists = wanted && run.session.platform.files.exists(folder); });
  if (exists)
    run.session.log.reason(std::string(what) + " exists already: " + folder);
}

/// What has been settled so far is told even when the run would end here.
void take_names(const CreationRun& run, ForeseenUser& user) {
  const bool active_directory = session::is_active_directory(run.session);
  user.account = run.SamName;
  user.common_name = active_directory ? platform::plain_name("CN=" + run.CnName) : std::string();
  user.full_name = run.FullName;
  user.principal_name = run.principal_name;
  user.home = run.paths.HomeDirText;
  user.profile = run.paths.ProfileText;
}

void foresee(CreationRun& run) {
  ResolvePaths(run);
  if (run.request.stages.directories) {
    tell_existing(run, run.paths.HomeShareDir, run.paths.WantHomeDir, "The home directory");
    tell_existing(run, run.paths.ProfileShareDir, run.paths.WantProfileDir, "The profile directory");
  }
  if (!run.request.stages.account)
    return;
  PrepareAccountTexts(run);
  ForeseeAccount(run);
}

/// False when another name is to be tried.
bool foresee_once(Session& session, NewUserRequest& request, ForeseenUser& user) {
  Listener view;
  CreationRun run(session, request, view);
  bool again = false;
  try {
    const Step step = SettleName(run);
    again = step == Step::kAgain;
    if (step == Step::kGoOn)
      foresee(run);
    else if (!again)
      user.fault = in_one_line(run.message.empty() ? view.last_status() : run.message);
  } catch (const base::RuntimeError& failure) {
    user.fault = in_one_line(base::in_words(failure));
  }
  request = run.request;
  take_names(run, user);
  user.groups = std::move(view.groups);
  session.log.close();
  user.warnings = session.log.take_reasons();
  return !again;
}

}  // namespace

ForeseenUser foresee_user(Session& rehearsed, NewUserRequest request) {
  request.names_only = true;
  // One person is no run of many lines, for which all names of the domain would be read at once.
  rehearsed.import.foreseen_names.clear();
  rehearsed.import.lookups = {};
  rehearsed.log.rehearse(true);
  ForeseenUser user;
  const auto forget = [&rehearsed] { rehearsed.AltIdTried = rehearsed.SerialTokenUsed = false; };
  forget();
  while (!foresee_once(rehearsed, request, user)) {
  }
  forget();
  user.place = request.CopyUser ? request.ParentNodeKey : request.SelectedNodeKey;
  return user;
}

}  // namespace twk::creation
