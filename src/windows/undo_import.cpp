#include "windows/undo_import.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "batch/undo_import.hpp"
#include "session/session.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"

namespace twk::windows {
namespace {

constexpr std::string_view kTitle = "Undo Import";

void refuse(Desktop& session, const std::string& fault) {
  session.platform.dialogs.MsgBox(fault, platform::Buttons::kOk, platform::Icon::kCritical, kTitle);
}

void take_back_all(Desktop& session, const batch::RecordedRun& run) {
  std::int64_t gone = 0;
  std::int64_t kept = 0;
  session.form1.enabled = false;
  batch::undo_import(session, run, [&](const batch::UndoneLine& undone) {
    ++(undone.outcome.done ? gone : kept);
    session.status.panel1 = "Taking back " + undone.line.user;
    session.platform.dialogs.DoEvents();
    return true;
  });
  session.form1.enabled = true;
  session.status.panel1 =
      base::to_text(gone) + " users taken back, " + base::to_text(kept) + " not. The log has the reasons.";
}

}  // namespace

bool is_of_import(const controls::ListRow* row) {
  return row != nullptr && row->key.ends_with(".jsonl");
}

void undo_import(Desktop& session) {
  const controls::ListRow* const row = session.log_rows.selected();
  if (!is_of_import(row))
    return;
  batch::RecordedRun run;
  base::Trap trap;
  if (!trap([&] { run = batch::load_import_record(session.platform.files, row->key); }))
    return refuse(session, trap.description());
  if (const std::string fault = batch::refused_record(session, run); !fault.empty())
    return refuse(session, fault + ".");
  if (session.platform.dialogs.MsgBox(batch::undo_question(run), platform::Buttons::kYesNo,
                                      platform::Icon::kQuestion, kTitle) == platform::Answer::kYes)
    take_back_all(session, run);
}

}  // namespace twk::windows
