#include "batch/rehearse_import.hpp"

#include "batch/rehearsed_session.hpp"

namespace twk::batch {
namespace {

using session::Session;

void copy_import(const session::ImportState& from, session::ImportState& to) {
  to.rehearsed = true;
  to.ImportDefaultLayout = from.ImportDefaultLayout;
  to.ImportFirstField = from.ImportFirstField;
  to.ImportMiddleField = from.ImportMiddleField;
  to.ImportLastField = from.ImportLastField;
}

}  // namespace

RehearsedImport rehearse_import(Session& session, std::string_view path, const ImportOrder& order,
                                ImportView& view, const RehearsalHooks& hooks) {
  Session* teller = &session;
  const auto tell = [&](const std::string& step) {
    if (hooks.step)
      hooks.step(teller->log.concealed(step));
  };
  RehearsedSession copy(session, tell);
  Session& rehearsed = copy.session();
  copy_import(session.import, rehearsed.import);
  rehearsed.log.rehearse(true);
  teller = &rehearsed;
  rehearsed.import.row_done = [&](const session::ImportRow& row) {
    if (hooks.row_done)
      hooks.row_done(row);
    rehearsed.import.ImportStopped = session.import.ImportStopped;
  };
  session.import.ImportStopped = false;
  RehearsedImport outcome;
  outcome.whole = Import_Users(rehearsed, path, order, view);
  outcome.added = rehearsed.import.ImportAddedCount;
  outcome.failure = rehearsed.import.failure;
  return outcome;
}

}  // namespace twk::batch
