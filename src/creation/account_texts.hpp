#pragma once

#include "creation/creation_run.hpp"
#include "platform/adsi.hpp"

namespace twk::creation {

/// Description, expiry, password and full name of the account, from the tab and the import line.
void PrepareAccountTexts(CreationRun& run);

/// Stages the end of the account: under import, unless the expiry text is empty or holds a tag that was not
/// filled. Raises a type mismatch for a text that is no date.
void stage_expiry(const CreationRun& run, platform::User& user);

/// What both providers do with an account that was just made: the log, the count, the next step's caption.
void account_created(CreationRun& run);

}  // namespace twk::creation
