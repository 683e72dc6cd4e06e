#include "batch/find_accounts.hpp"

#include <algorithm>
#include <cmath>
#include <vector>

#include "base/errors.hpp"
#include "batch/bind_account.hpp"
#include "directory/account_expiry.hpp"
#include "directory/operations.hpp"
#include "platform/adsi.hpp"
#include "session/loaded_domain.hpp"
#include "session/run_scope.hpp"
#include "session/session.hpp"

namespace twk::batch {
namespace {

using controls::ListRow;
using platform::ObjectPtr;
using session::Session;

constexpr std::size_t kSteps = 50;
constexpr int kPointsAStep = 2;

}  // namespace

bool expires_before(Session& session, const ObjectPtr& account, base::Date limit) {
  const auto ends = directory::expiry_of(platform::User(account));
  return ends && session.platform.clock.to_local(*ends).serial < std::floor(limit.serial);
}

bool find_accounts(Session& session, const std::function<bool(const ObjectPtr&)>& is_hit,
                   session::RunView& view, std::size_t& found) {
  const session::RunScope scope(session, view);
  controls::ListView& users = session.domain.users;
  int percent = 0;
  const std::size_t step = std::max<std::size_t>(users.size() / kSteps, 1);
  std::vector<const ListRow*> hits;
  const auto take_hits = [&] {
    found += hits.size();
    controls::move_rows(users, hits, session.domain.selection);
    hits.clear();
  };
  std::size_t since_step = 0;
  base::Trap trap;
  for (std::size_t place = users.size(); place > 0; --place) {
    const ListRow& row = users.at(place - 1);
    trap([&] {
      if (is_hit(bind_account(session, row)))
        hits.push_back(&row);
    });
    const bool stopped = !session.run.goes_on();
    if (++since_step == step || stopped || place == 1) {
      since_step = 0;
      take_hits();
      percent = std::min(percent + kPointsAStep, 100);
      view.progress(percent);
    }
    if (stopped)
      return false;
  }
  return true;
}

}  // namespace twk::batch
