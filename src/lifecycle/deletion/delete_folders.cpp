#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "lifecycle/deletion/delete_run.hpp"
#include "lifecycle/trees/file_operation.hpp"
#include "resources/account_lookup.hpp"
#include "resources/file_permission.hpp"

namespace twk::lifecycle {
namespace {

using session::Session;

constexpr const char* kAdministrators = "Administrators";

void take_tree(DeleteRun& run, const UserFolder& folder) {
  Session& session = run.session;
  base::Trap trap;
  trap([&] {
    const TreePath own = require_own_tree(session, folder.data, owner_of(run, folder));
    if (session.run.terms.rehearse)
      return session.run.terms.rehearse("Take ownership of " + own.text() + " and all below it");
    std::string server = own.server;
    const resources::TreeOutcome outcome = resources::take_tree(session, server, own.text(), kAdministrators);
    if (outcome.refused != 0)
      session.log.line("Not taken: " + outcome.first_reason);
  });
  if (trap.number() != 0)
    session.log.reason("Taking ownership failed: " + base::in_words(trap.number(), trap.description()));
}

void take_ownership(DeleteRun& run, const UserFolder& folder, std::string_view question) {
  Session& session = run.session;
  const auto wanted = [&] {
    return session.run.terms.silent ||
           session.platform.dialogs.MsgBox(std::string(question) + "\r\n" + folder.data,
                                           platform::Buttons::kYesNo, platform::Icon::kQuestion,
                                           "Taking Ownership:") == platform::Answer::kYes;
  };
  if (!run.order.take_ownership || !wanted())
    return;
  session.log.line("Setting Administrators permissions on " + folder.data + " and all sub directories");
  take_tree(run, folder);
}

}  // namespace

void delete_folder(DeleteRun& run, const UserFolder& folder, std::string_view question) {
  Session& session = run.session;
  if (folder.missing) {
    run.Success = false;
    return session.log.reason("Error Deleting: " + folder.data + ", which does not exist");
  }
  take_ownership(run, folder, question);
  session.run.view().step("Deleting " + folder.data);
  if (File_Operation(session, folder.data, {}, FileWork::kDelete, owner_of(run, folder)))
    return session.log.line("Deleted Dir: " + folder.data);
  session.log.reason("Error Deleting: " + folder.data);
  run.Success = false;
}

void delete_folders(DeleteRun& run) {
  if (run.home.data_goes && !run.home.through_own_share)
    delete_folder(run, run.home, kOwnHomeQuestion);
  if (run.profile.data_goes && !run.profile.through_own_share)
    delete_folder(run, run.profile, kOwnProfileQuestion);
}

}  // namespace twk::lifecycle
