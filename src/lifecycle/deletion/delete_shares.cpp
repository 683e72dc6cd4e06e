#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "lifecycle/deletion/delete_run.hpp"
#include "lifecycle/trees/file_operation.hpp"
#include "lifecycle/trees/folder_use.hpp"

namespace twk::lifecycle {
namespace {

/// A folder that only the share leads to is deleted before the share, while the account still exists for a
/// second try.
void empty_through_share(DeleteRun& run, const UserFolder& folder, std::string_view question) {
  if (!folder.through_own_share)
    return;
  const auto place = share_folder(run.session, folder.server, folder.share);
  delete_folder(run, folder, question);
  if (!run.Success)
    base::raise(base::error::kPathFileAccess, "The account and the share " + folder.share +
                                                  " are kept, as nothing else leads to what is left");
  run.session.log.reason("The empty folder " + place.value_or(folder.path) + " of " + folder.server +
                         " stays: only its own share led to it");
  run.Success = false;
}

/// The line is printed whether or not the server has the share.
void remove_share(DeleteRun& run, const GoingShare& share) {
  base::Trap trap;
  trap([&] {
    if (folder_use(run.session)->folder_of_share(share.server, share.share))
      delete_share(run.session, share.server, share.share);
  });
  if (trap.number() == 0)
    return run.session.log.line(std::string(share.label) + share.share);
  run.session.log.reason("Share " + share.share + " on " + share.server +
                         " is not deleted: " + base::in_words(trap.number(), trap.description()));
  run.Success = false;
}

}  // namespace

void delete_shares(DeleteRun& run) {
  empty_through_share(run, run.home, kOwnHomeQuestion);
  empty_through_share(run, run.profile, kOwnProfileQuestion);
  for (const GoingShare& share : run.shares)
    remove_share(run, share);
}

}  // namespace twk::lifecycle
