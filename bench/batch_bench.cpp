// The functions for many users over the lab, for 2,000 and for 10,000 users: what a user costs must not grow
// with their number, and memory must not grow with the work.
#include <array>
#include <functional>
#include <optional>

#include "batch/account_functions.hpp"
#include "batch/delete_users.hpp"
#include "batch/find_accounts.hpp"
#include "bench_world.hpp"
#include "directory/account_expiry.hpp"
#include "directory/loading/ad_load.hpp"
#include "lifecycle/trees/folder_use.hpp"
#include "lifecycle/trees/own_tree.hpp"
#include "platform/adsi.hpp"
#include "session/loaded_domain.hpp"
#include "windows/start_up.hpp"
#include "windows/state/account_windows.hpp"

namespace {

using namespace twk;

constexpr std::array kSizes = {2000, 10000};
constexpr std::array kWork = {"disable", "find locked", "find expired",
                              "delete",  "delete data", "its checks"};

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

/// A lab whose people are all listed.
struct World {
  explicit World(int users) : lab(make_lab(folder.path() / "lab", users)), services(lab.platform(dialogs)) {
    bench::set(services, "Setup", "Domain", "twk.test");
    std::string database = lab.database_path();
    database.pop_back();
    session.emplace(services, "", database);
    windows::start_session(*session);
    directory::Load_AD_Users(*session, "LDAP://twk.test", true, "subtree", "",
                             directory::UserList::kSelection);
    order.account = true;
    order.terms.silent = true;
  }

  void select_people() {
    std::vector<const controls::ListRow*> all;
    for (std::size_t i = 0; i < session->domain.users.size(); ++i) {
      const controls::ListRow& row = session->domain.users.at(i);
      if (row.text != "Administrator" && row.text != "Guest" && row.text != "krbtgt")
        all.push_back(&row);
    }
    controls::move_rows(session->domain.users, all, session->domain.selection);
  }

  static lab::Lab make_lab(const std::filesystem::path& path, int users) {
    lab::LabPlan plan;
    plan.users = static_cast<std::size_t>(users);
    lab::create_lab(path, plan);
    return lab::Lab(path, [](const std::string&) {});
  }

  bench::Folder folder;
  bench::NobodyThere dialogs;
  lab::Lab lab;
  platform::Platform services;
  std::optional<windows::Desktop> session;
  lifecycle::DeleteOrder order;
};

bool find(windows::Desktop& session, const std::function<bool(const platform::ObjectPtr&)>& is_hit) {
  std::size_t found = 0;
  return batch::find_accounts(session, is_hit, session.run.view(), found);
}

struct Home {
  std::string account;
  std::string share;
};

/// Gives each of the selection a home that is a separate share, with a file in it.
std::vector<Home> make_homes(World& world) {
  std::vector<Home> homes;
  for (std::size_t i = 0; i < world.session->domain.selection.size(); ++i) {
    const std::string name = "u" + std::to_string(i);
    const std::filesystem::path home = world.folder.path() / "lab/servers/FS1/D/Users" / name;
    std::filesystem::create_directories(home);
    std::ofstream(home / "letter.txt") << "text";
    platform::ShareInfo502 share;
    share.shi502_netname = name + "$";
    share.shi502_path = "D:\\Users\\" + name;
    world.services.network.NetShareAdd("FS1", share);
    const auto user = world.services.directory.GetObject(world.session->domain.selection.at(i).key);
    user->Put("HomeDirectory", "\\\\FS1\\" + share.shi502_netname);
    user->SetInfo();
    homes.push_back({user->Get("samAccountName").text(), share.shi502_netname});
  }
  return homes;
}

/// What a deletion asks about its folder and its share, and nothing else.
void check(windows::Desktop& session, const std::vector<Home>& homes) {
  const lifecycle::KnownFolders known(session);
  for (const Home& home : homes) {
    const lifecycle::Owner owner{.account = home.account, .own_share = home.share};
    lifecycle::require_own_share(session, "FS1", home.share, owner);
    lifecycle::require_own_tree(session, "\\\\FS1\\" + home.share, owner);
  }
}

Figures run(int users) {
  Figures figures;
  {
    World world(users);
    windows::Desktop& session = *world.session;
    session::RunView& view = session.run.view();
    figures[1] = measure([&] {
      find(session,
           [](const platform::ObjectPtr& account) { return platform::User(account).IsAccountLocked(); });
    });
    figures[2] = measure([&] {
      find(session, [](const platform::ObjectPtr& account) {
        return directory::expiry_of(platform::User(account)).has_value();
      });
    });
    world.select_people();
    figures[0] = measure([&] { batch::change_accounts(session, {batch::AccountFunction::kDisable}, view); });
    figures[3] = measure([&] { batch::delete_selection(session, world.order, view); });
  }
  World world(users);
  world.select_people();
  const std::vector<Home> homes = make_homes(world);
  figures[5] = measure([&] { check(*world.session, homes); });
  world.order.data = world.order.shares = true;
  session::RunView& view = world.session->run.view();
  figures[4] = measure([&] { batch::delete_selection(*world.session, world.order, view); });
  if (std::filesystem::exists(world.folder.path() / "lab/servers/FS1/D/Users/u0"))
    std::abort();  // what was measured was not a deletion
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
  const Figures& most = figures.back();
  std::printf("with its checks a deletion with data costs x %.2f of one without them\n",
              most[4].seconds / (most[4].seconds - most[5].seconds));
  return 0;
}
