#include "creation/mailbox_stage.hpp"

#include "creation/creation_run.hpp"

namespace twk::creation {

Mailbox CreateMailbox(CreationRun& run) {
  warn(run, "Mailbox: not available in this version, nothing was done");
  return Mailbox::kFailed;
}

}  // namespace twk::creation
