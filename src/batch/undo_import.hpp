#pragma once

#include <functional>
#include <string>

#include "batch/import_record.hpp"
#include "session/run_outcome.hpp"

/// Taking back what an import made, by its record, and nothing else.
namespace twk::batch {

/// Takes back one line: its share, while that leads to the folder it was made for; its mailbox; its account,
/// the one with that identifier, wherever it is and whatever it is called by now; its folders, while nobody
/// put anything into them. Where another account has the path of that one by now, everything else is kept.
/// GREEN when all of it is gone, YELLOW with what was kept and why, RED when the account could not be
/// deleted. Memberships go with the account.
session::RunOutcome take_back(session::Session& session, const RecordedLine& line);

/// The same for a line of a run, whose record then says so: nothing is taken back twice, as what stands there
/// later is somebody else's.
session::RunOutcome take_back_recorded(session::Session& session, const RecordedRun& run,
                                       const RecordedLine& line);

/// True when the account that a line made is there, or what may be it.
bool has_account(session::Session& session, const RecordedLine& line);

/// One line of a run that was taken back.
struct UndoneLine {
  const RecordedLine& line;
  session::RunOutcome outcome;
};

/// Takes back the lines of a run that made something, the last first. `done` is called after each, and ends
/// the work by returning False.
void undo_import(session::Session& session, const RecordedRun& run,
                 const std::function<bool(const UndoneLine&)>& done);

/// What is asked before: "Take back the import of 27/11/2026 05:54:59: 7 accounts, 14 folders, 0 shares and 7
/// mailboxes?"
std::string undo_question(const RecordedRun& run);

/// Why a run cannot be taken back or taken up in this session; empty when it can.
std::string refused_record(const session::Session& session, const RecordedRun& run);

}  // namespace twk::batch
