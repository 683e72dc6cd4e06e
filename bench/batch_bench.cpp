// The functions for many users over the lab, for 2,000 and for 10,000 users: what a user costs must not grow
// with their number, and memory must not grow with the work.
#include <array>
#include <functional>

#include "batch/account_functions.hpp"
#include "batch/delete_users.hpp"
#include "batch/find_accounts.hpp"
#include "bench_world.hpp"
#include "directory/ad_load.hpp"
#include "platform/adsi.hpp"
#include "session/start_up.hpp"

namespace {

using namespace twk;

constexpr std::array kSizes = {2000, 10000};
constexpr std::array kWork = {"disable", "find locked", "find expired", "delete"};

struct Figure {
  double seconds = 0;
  double grown = 0;  ///< bytes of resident memory
};
using Figures = std::array<Figure, kWork.size()>;

Figure measure(const std::function<void()>& work) {
  const double before = bench::resident_bytes();
  Figure figure;
  figure.seconds = bench::seconds(work);
  figure.grown = bench::resident_bytes() - before;
  return figure;
}

bool find(session::Session& session, const std::function<bool(const platform::ObjectPtr&)>& is_hit) {
  std::size_t found = 0;
  return batch::find_accounts(
      session, is_hit, [] { return true; }, found);
}

Figures run(int users) {
  bench::Folder folder;
  lab::LabPlan plan;
  plan.users = static_cast<std::size_t>(users);
  lab::create_lab(folder.path() / "lab", plan);
  lab::Lab lab(folder.path() / "lab", [](const std::string&) {});
  bench::NobodyThere dialogs;
  const platform::Platform services = lab.platform(dialogs);
  bench::set(services, "Setup", "Domain", "twk.test");
  std::string database = lab.database_path();
  database.pop_back();
  session::Session session(services, "", database);
  session::start_session(session);
  session::MultiUser& window = session.multi_user;
  directory::Load_AD_Users(session, "LDAP://twk.test", true, "subtree", "", true);
  Figures figures;
  figures[1] = measure([&] {
    find(session,
         [](const platform::ObjectPtr& account) { return platform::User(account).IsAccountLocked(); });
  });
  figures[2] = measure([&] {
    find(session, [](const platform::ObjectPtr& account) { return batch::expiry_of(account).has_value(); });
  });
  std::vector<const controls::ListRow*> all;
  for (std::size_t i = 0; i < window.ListView2.size(); ++i) {
    const controls::ListRow& row = window.ListView2.at(i);
    if (row.text != "Administrator" && row.text != "Guest" && row.text != "krbtgt")
      all.push_back(&row);
  }
  controls::move_rows(window.ListView2, all, window.ListView1);
  figures[0] = measure([&] { batch::change_accounts(session, batch::AccountFunction::kDisable, {}); });
  window.Delete_NT_Account.value = 1;
  window.No_Prompting.value = 1;
  session.runs.Delete_Running = true;
  figures[3] = measure([&] { batch::delete_selection(session); });
  return figures;
}

}  // namespace

int main() {
  std::array<Figures, kSizes.size()> figures;
  for (std::size_t size = 0; size < kSizes.size(); ++size)
    figures.at(size) = run(kSizes.at(size));
  std::printf("%-14s", "");
  for (const int size : kSizes)
    std::printf(" %12d users            ", size);
  std::printf("  a user costs\n");
  for (std::size_t work = 0; work < kWork.size(); ++work) {
    std::printf("%-14s", kWork.at(work));
    std::array<double, kSizes.size()> each{};
    for (std::size_t size = 0; size < kSizes.size(); ++size) {
      const Figure& figure = figures.at(size).at(work);
      each.at(size) = figure.seconds / kSizes.at(size);
      std::printf(" %7.2f s %8.1f us %6.1f MB", figure.seconds, each.at(size) * 1e6, figure.grown / 1e6);
    }
    std::printf("   x %.2f\n", each.back() / each.front());
  }
  return 0;
}
