#pragma once

#include "creation/creation_run.hpp"
#include "platform/adsi.hpp"

namespace twk::creation {

/// Description, expiry, password and full name of the account, from the tab and the import line.
void PrepareAccountTexts(CreationRun& run);

/// Stages the end of the account: under import, unless the expiry text is empty or holds a tag that was not
/// filled. Raises a type mismatch for a text that is not a date.
void stage_expiry(const CreationRun& run, platform::User& user);

/// The account's path in the directory.
std::string account_path(const CreationRun& run);

/// From here on there is an account, whatever fails.
void show_made_account(CreationRun& run);

/// What both providers do after completing an account: the log, the count, the next step's caption.
void account_created(CreationRun& run);

}  // namespace twk::creation
