#include "batch/find_accounts.hpp"

#include <algorithm>
#include <cmath>
#include <vector>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "batch/bind_account.hpp"
#include "batch/run_controls.hpp"
#include "batch/unlock_accounts.hpp"
#include "directory/account_expiry.hpp"
#include "directory/operations.hpp"
#include "platform/adsi.hpp"
#include "session/multi_user.hpp"

namespace twk::batch {
namespace {

using controls::ListRow;
using platform::ObjectPtr;
using session::MultiUser;
using session::Session;

constexpr std::size_t kSteps = 50;
constexpr int kPointsAStep = 2;

bool search_goes_on(Session& session) {
  session.platform.dialogs.DoEvents();
  return session.multi_user.btnGo.caption == std::string(session::kCancelCaption);
}

RunningWindow begin_search(Session& session) {
  MultiUser& window = session.multi_user;
  window.Label3.caption = std::string("Please wait searching accounts.... ");
  window.ProgressBar1.value = 0;
  return RunningWindow(session, window.btnGo,
                       {&window.Command7.enabled, &window.DELIMPORT.enabled, &window.Command1.enabled,
                        &window.Command2.enabled, &window.btn_Showusers.enabled, &window.LockAcc.enabled});
}

void search_locked(Session& session) {
  MultiUser& window = session.multi_user;
  std::size_t found = 0;
  const bool whole = find_accounts(
      session, [](const ObjectPtr& account) { return platform::User(account).IsAccountLocked(); },
      [&session] { return search_goes_on(session); }, found);
  if (whole)
    window.Unlock_Stage = true;
  window.Label3.caption =
      std::string(whole ? "Press 'G0' again to unlock selected accounts."
                        : "Find canceled by user. Press 'G0' again to unlock selected accounts.");
}

void unlock_selection(Session& session) {
  MultiUser& window = session.multi_user;
  window.Label3.caption = std::string("Unlocking accounts...");
  const bool whole = unlock_accounts(session, [&session] { return search_goes_on(session); });
  window.Label3.caption = std::string(whole ? "Accounts Unlocked." : "Canceled by user.");
  window.Unlock_Stage = !whole;
}

}  // namespace

bool expires_before(Session& session, const ObjectPtr& account, base::Date limit) {
  const auto ends = directory::expiry_of(platform::User(account));
  return ends && session.platform.clock.to_local(*ends).serial < std::floor(limit.serial);
}

bool find_accounts(Session& session, const std::function<bool(const ObjectPtr&)>& is_hit,
                   const std::function<bool()>& goes_on, std::size_t& found) {
  MultiUser& window = session.multi_user;
  const std::size_t step = std::max<std::size_t>(window.ListView2.size() / kSteps, 1);
  std::vector<const ListRow*> hits;
  const auto take_hits = [&] {
    found += hits.size();
    controls::move_rows(window.ListView2, hits, window.ListView1);
    hits.clear();
  };
  std::size_t since_step = 0;
  base::Trap trap;
  for (std::size_t place = window.ListView2.size(); place > 0; --place) {
    const ListRow& row = window.ListView2.at(place - 1);
    trap([&] {
      if (is_hit(bind_account(session, row)))
        hits.push_back(&row);
    });
    const bool stopped = !goes_on();
    if (++since_step == step || stopped || place == 1) {
      since_step = 0;
      take_hits();
      window.ProgressBar1.value = std::min(window.ProgressBar1.value + kPointsAStep, 100);
    }
    if (stopped)
      return false;
  }
  return true;
}

void Find_Expired_Accounts(Session& session) {
  MultiUser& window = session.multi_user;
  const auto limit = base::parse_date(base::trim(window.Expiredate.text.get()));
  const RunningWindow running = begin_search(session);
  std::size_t found = 0;
  const bool whole = find_accounts(
      session, [&](const ObjectPtr& account) { return limit && expires_before(session, account, *limit); },
      [&session] { return search_goes_on(session); }, found);
  window.Label3.caption =
      whole ? "Total Expired Accounts: " + std::to_string(found) : std::string("Find canceled by user.");
}

void Find_Locked_Accounts(Session& session) {
  MultiUser& window = session.multi_user;
  if (window.Unlock_Stage && window.ListView1.empty()) {
    window.Unlock_Stage = false;
    return;
  }
  const RunningWindow running = begin_search(session);
  if (window.Unlock_Stage)
    unlock_selection(session);
  else
    search_locked(session);
}

}  // namespace twk::batch
