#include "windows/compact_database.hpp"

#include "stores/compact_database.hpp"
#include "windows/account/details_tab.hpp"
#include "windows/multi_user/multi_user_window.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/hourglass.hpp"
#include "windows/template_tab.hpp"

namespace twk::windows {

bool Compact_Database(Desktop& session) {
  if (!stores::agrees_to_compact(session))
    return false;
  const Hourglass hourglass(session.form1);
  Clear_TT(session);
  Clear_UM(session);
  const bool done = stores::compact_database(session, stores::Pruning::kAsk);
  MultiUser_Load(session);
  return done;
}

}  // namespace twk::windows
