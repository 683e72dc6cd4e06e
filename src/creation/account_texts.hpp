#pragma once

#include <optional>

#include "base/dates.hpp"
#include "creation/creation_run.hpp"

namespace twk::creation {

/// Description, expiry, password and full name of the account, from the tab and the import line.
void PrepareAccountTexts(CreationRun& run);

/// When the account expires: under import the expiry text as a date, none when it is empty or holds a tag
/// that was not filled. Raises a type mismatch for a text that is no date.
std::optional<base::Date> expiry_date(const CreationRun& run);

/// What both providers do with an account that was just made: the log, the count, the next step's caption.
void account_created(CreationRun& run);

}  // namespace twk::creation
