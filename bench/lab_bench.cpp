// The lab at 1,000 and at 100,000 users: opening it, its memory, and what a look-up costs.
#include "ads/dn.hpp"
#include "bench_world.hpp"
#include "directory/loading/select_domain.hpp"
#include "directory/tree/tree.hpp"
#include "platform/query.hpp"
#include "windows/start_up.hpp"

namespace {

using namespace twk;

struct Figures {
  double make = 0;
  double open = 0;
  double bytes_a_user = 0;
  double by_dn = 0;
  double by_account = 0;
  double by_parent = 0;
  double by_prefix = 0;
  double load_tree = 0;
  double bytes_a_loaded_user = 0;
};

/// Microseconds of one of many calls.
template <typename Work>
double microseconds(int calls, Work&& work) {
  return bench::seconds([&] {
           for (int i = 0; i < calls; ++i)
             work(i);
         }) /
         calls * 1e6;
}

/// Distinguished names and account names of users all over the directory.
struct Sample {
  std::vector<std::string> dns;
  std::vector<std::string> accounts;
};

Sample take_sample(platform::QueryService& query, std::size_t users) {
  Sample sample;
  const auto rows =
      query.execute(platform::parse_query_text(
                        "<LDAP://twk.test>;(objectCategory=person);distinguishedName,samAccountName;subtree"),
                    {});
  std::size_t row = 0;
  for (; !rows->at_eof(); rows->MoveNext()) {
    if (row++ % std::max<std::size_t>(1, users / 500) != 0)
      continue;
    sample.dns.push_back(rows->field(0).text());
    sample.accounts.push_back(rows->field(1).text());
  }
  return sample;
}

Figures measure(std::size_t users) {
  constexpr std::size_t kUsersAUnit = 100;
  constexpr int kCalls = 2000;
  Figures figures;
  bench::Folder folder;
  lab::LabPlan plan;
  plan.users = users;
  plan.ous = std::max<std::size_t>(1, users / kUsersAUnit);
  plan.groups = 50;
  figures.make = bench::seconds([&] { lab::create_lab(folder.path() / "lab", plan); });
  const double before = bench::resident_bytes();
  std::unique_ptr<lab::Lab> lab;
  figures.open = bench::seconds([&] {
    lab = std::make_unique<lab::Lab>(folder.path() / "lab", [](const std::string&) {});
    lab->open_directory();
  });
  figures.bytes_a_user = (bench::resident_bytes() - before) / static_cast<double>(users);

  bench::NobodyThere dialogs;
  platform::Platform services = lab->platform(dialogs);
  const Sample sample = take_sample(services.query, users);
  const auto at = [&sample](int i) { return static_cast<std::size_t>(i) % sample.dns.size(); };
  figures.by_dn =
      microseconds(kCalls, [&](int i) { services.directory.GetObject("LDAP://" + sample.dns[at(i)]); });
  figures.by_account = microseconds(
      kCalls, [&](int i) { services.directory.GetObject("WinNT://TWK/" + sample.accounts[at(i)]); });
  // The same number of units at each size, so that the processor's caches hold as much of one as of the
  // other.
  constexpr int kUnits = 10;
  figures.by_parent = microseconds(kCalls / 10, [&](int i) {
    platform::QueryText query;
    query.base = "LDAP://twk.test/" + std::string(ads::parent_dn(sample.dns[at(i % kUnits)]));
    query.filter = "(objectCategory=person)";
    query.attributes = {"adsPath"};
    query.scope = platform::Scope::kOneLevel;
    const auto rows = services.query.execute(query, {});
    for (; !rows->at_eof(); rows->MoveNext())
      rows->field(0);
  });

  windows::Desktop session(services, "", lab->database_path());
  bench::set(services, "Setup", "Domain", "twk.test");
  bench::set(services, "ADO", "LoadAllUsers", "True");
  const double unloaded = bench::heap_bytes();
  figures.load_tree = bench::seconds([&] { windows::start_session(session); });
  figures.bytes_a_loaded_user = (bench::heap_bytes() - unloaded) / static_cast<double>(users);
  figures.by_prefix =
      microseconds(kCalls, [&](int i) { directory::User_Exist(session, "No." + std::to_string(i)); });
  return figures;
}

void print(const char* what, double small, double large, const char* unit) {
  std::printf("%-46s %10.2f %10.2f %-10s %6.2f\n", what, small, large, unit, large / small);
}

}  // namespace

int main() {
  const Figures small = measure(1000);
  const Figures large = measure(100000);
  std::printf("%-46s %10s %10s %-10s %6s\n", "lab", "1,000", "100,000", "", "ratio");
  print("make a lab with so many users", small.make, large.make, "s");
  print("open it", small.open, large.open, "s");
  print("memory a user", small.bytes_a_user, large.bytes_a_user, "bytes");
  print("load all users into tree and lists", small.load_tree, large.load_tree, "s");
  print("memory a loaded user", small.bytes_a_loaded_user, large.bytes_a_loaded_user, "bytes");
  print("bind a user by distinguished name", small.by_dn, large.by_dn, "us");
  print("bind a user by account name", small.by_account, large.by_account, "us");
  print("read the users of one unit of 100", small.by_parent, large.by_parent, "us");
  print("is a name prefix taken in the tree", small.by_prefix, large.by_prefix, "us");
  return 0;
}
