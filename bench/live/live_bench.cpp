// Work on a real server compared with the same work done with less, alternating in one run:
//
//   - an import of users, and its LDAP calls made again with nothing around them;
//   - an import, and samba-tool creating the users and adding them to their groups;
//   - the load of the whole domain, and ldapsearch of its queries;
//   - the memory of a loaded user;
//   - a search for expired accounts, which binds two objects a row, and its LDAP calls made again.
//
//     tests/live/with-domain ad -- bench/live/measure BUILD_DIR [USERS]
#include <sys/resource.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <vector>

#include "../bench_world.hpp"
#include "batch/find_accounts.hpp"
#include "directory/loading/ad_load.hpp"
#include "directory/tree/tree.hpp"
#include "live/live.hpp"
#include "recorded_calls.hpp"
#include "records/records.hpp"
#include "windows/account/account_view.hpp"
#include "windows/import.hpp"
#include "windows/start_up.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/group_windows.hpp"
#include "windows/state/multi_user.hpp"

namespace {

using namespace twk;

constexpr int kRounds = 6;
constexpr int kLines = 25;       ///< of one import
constexpr int kOfSambaTool = 4;  ///< users of one round: it takes seconds for each
constexpr int kLoads = 9;

[[noreturn]] void give_up(const std::string& why) {
  std::fprintf(stderr, "live_bench: %s\n", why.c_str());
  std::exit(1);  // NOLINT(concurrency-mt-unsafe): there is one thread
}

std::string variable(const char* name) {
  const char* const value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): there is one thread
  if (value == nullptr)
    give_up(std::string(name) + " is not set: run it by bench/live/measure");
  return value;
}

/// Seconds of the processor that this process used.
double processor_seconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void run(const std::string& command) {
  if (std::system(command.c_str()) != 0)  // NOLINT: fixed commands of the benchmark
    give_up("failed: " + command);
}

struct Effort {
  double seconds = 0;
  double processor = 0;
  int users = 0;

  void add(const Effort& other) {
    seconds += other.seconds;
    processor += other.processor;
    users += other.users;
  }
  [[nodiscard]] double milliseconds_a_user() const { return seconds / users * 1e3; }
  [[nodiscard]] double processor_a_user() const { return processor / users * 1e3; }
};

template <typename Work>
Effort effort(int users, Work&& work) {
  const double before = processor_seconds();
  const double taken = bench::seconds(work);
  return {taken, processor_seconds() - before, users};
}

/// The domain with a unit and two groups of this run, a session that imports into the unit, and numbers that
/// no other run has.
class Bench {
 public:
  Bench()
      : run_(std::to_string(std::time(nullptr) % 100000000)),
        live_(settings(), {}, {folder_.path() / "config", folder_.path() / "data"}),
        services_(live_.platform(dialogs_)) {
    services_.directory.GetObject("LDAP://twk.test")->Create("organizationalUnit", "OU=" + unit())->SetInfo();
    for (const std::string& name : groups()) {
      const auto group = services_.directory.GetObject("LDAP://twk.test/CN=Users,DC=twk,DC=test");
      const auto made = group->Create("group", "CN=" + name);
      made->Put("samAccountName", name);
      made->SetInfo();
    }
    write_database();
    start();
  }

  [[nodiscard]] std::vector<std::string> groups() const { return {"Bench A " + run_, "Bench B " + run_}; }
  [[nodiscard]] std::string unit() const { return "Bench " + run_; }
  /// Digits that are in every name of one batch and nowhere else.
  std::string next_tag() { return run_ + std::to_string(1000 + ++batches_); }
  windows::Desktop& session() { return *session_; }

  /// With a principal name, which `samba-tool user create` writes as well, and with a department or without.
  void use_department(bool on) {
    controls::ListView& rows = session_->form1.ListView7;
    rows.clear();
    rows.add({}, "userPrincipalName", "USER", {"%first%@%Domain%"});
    if (on)
      rows.add({}, "department", "USER", {"%IMPORT4%"});
  }

  void choose_unit() {
    controls::TreeView& tree = session_->form1.TreeView1;
    controls::TreeNode* const node = tree.find("OU=" + unit() + ",DC=twk,DC=test");
    if (node == nullptr)
      give_up("the unit of this run was not loaded");
    tree.select(node);
  }

  Effort import_users(const std::string& tag) {
    std::string lines;
    for (int i = 0; i < kLines; ++i)
      lines += "B" + tag + "x" + std::to_string(10 + i) + ",,Name,Sales\n";
    const std::string path = folder_.path() / (tag + ".csv");
    std::ofstream(path) << lines;
    const Effort taken = effort(kLines, [&] { windows::Import_File(*session_, path); });
    if (session_->import.ImportAddedCount != kLines)
      give_up("only " + std::to_string(session_->import.ImportAddedCount) +
              " users were created: " + last_message());
    return taken;
  }

 private:
  std::string last_message() {
    const controls::ListView& log = session_->form1.ListView1;
    return log.empty() ? "nothing was told" : log.at(log.size() - 1).text;
  }

  static live::LiveSettings settings() {
    live::LiveSettings settings;
    settings.domain = variable("TWK_LIVE_DOMAIN");
    settings.server = variable("TWK_LIVE_SERVER");
    return settings;
  }

  void write_database() {
    const std::string folder = live_.database_path();
    records::SiteRecord site;
    site.Name = "Head Office";
    site.NTServer = "DC1";
    std::ofstream(folder + "Site.dat", std::ios::binary) << records::encode_site(site);
    records::TemplateRecord staff;
    staff.Name = "Staff";
    staff.PrimaryGroup = "Domain Users";
    staff.GroupCount = 2;
    staff.Groups[0] = groups()[0];
    staff.Groups[1] = groups()[1];
    std::ofstream(folder + "Template.dat", std::ios::binary) << records::encode_template(staff);
  }

  void start() {
    bench::set(services_, "Setup", "Domain", variable("TWK_LIVE_DOMAIN"));
    bench::set(services_, "Setup", "SetupID", "%first%");
    bench::set(services_, "Setup", "Password", "Welcome-2026");
    for (const char* const gate : {"RunCmd", "CreateDirs", "CreateShares", "SetPermissions", "MailAccount"})
      bench::set(services_, "UM", gate, "No");
    bench::set(services_, "ADO", "LoadAllUsers", "TRUE");
    std::string database = live_.database_path();
    database.pop_back();
    session_ = std::make_unique<windows::Desktop>(services_, "", database);
    windows::start_session(*session_);
    session_->form1.nutemplate.text = records::padded_template_name("Staff");
    session_->form1.NUsitename.text = std::string("Head Office");
  }

  std::string run_;
  int batches_ = 0;
  bench::Folder folder_;
  bench::NobodyThere dialogs_;
  live::Live live_;
  platform::Platform services_;
  std::unique_ptr<windows::Desktop> session_;
};

/// The calls for other users. Each must return what it returned when recorded.
Effort replay_calls(const std::vector<bench::RecordedCall>& calls, const std::string& from,
                    const std::string& to) {
  std::vector<bench::RecordedCall> others;
  others.reserve(calls.size());
  for (const bench::RecordedCall& call : calls)
    others.push_back(bench::renamed(call, from, to));
  int different = 0;
  const Effort taken = effort(kLines, [&] {
    for (const bench::RecordedCall& call : others)
      different += bench::replay(call) == call.result ? 0 : 1;
  });
  if (different != 0)
    give_up(std::to_string(different) + " calls of the replay gave another result than in the import");
  return taken;
}

Effort create_by_samba_tool(const Bench& bench, const std::string& tag) {
  const std::string server =
      " -H ldap://" + variable("TWK_LIVE_SERVER") + " --use-kerberos=required >/dev/null";
  return effort(kOfSambaTool, [&] {
    for (int i = 0; i < kOfSambaTool; ++i) {
      const std::string name = "S" + tag + "x" + std::to_string(i);
      run("samba-tool user create " + name + " Welcome-2026" + server);
      for (const std::string& group : bench.groups())
        run("samba-tool group addmembers '" + group + "' " + name + server);
    }
  });
}

void measure_import(Bench& bench) {
  bench.choose_unit();
  Effort ours;
  Effort raw;
  Effort bare;
  Effort samba;
  std::map<bench::RecordedCall::Kind, int> kinds;
  bench.import_users(bench.next_tag());  // what is set up once is
  for (int round = 0; round < kRounds; ++round) {
    bench.use_department(true);
    const std::string tag = bench.next_tag();
    bench::start_recording();
    ours.add(bench.import_users(tag));
    const std::vector<bench::RecordedCall> calls = bench::stop_recording();
    for (const bench::RecordedCall& call : calls)
      ++kinds[call.kind];
    raw.add(replay_calls(calls, tag, bench.next_tag()));
    raw.add(replay_calls(calls, tag, bench.next_tag()));
    ours.add(bench.import_users(bench.next_tag()));
    bench.use_department(false);
    bare.add(bench.import_users(bench.next_tag()));
    samba.add(create_by_samba_tool(bench, bench.next_tag()));
  }
  using Kind = bench::RecordedCall::Kind;
  const double recorded = kRounds * kLines;
  std::printf("LDAP calls a user: %.1f searches, %.1f additions, %.1f changes\n",
              kinds[Kind::kSearch] / recorded, kinds[Kind::kAdd] / recorded, kinds[Kind::kModify] / recorded);
  std::printf("import:                %7.2f ms a user, %5.2f ms of the processor\n",
              ours.milliseconds_a_user(), ours.processor_a_user());
  std::printf("its calls alone:       %7.2f ms a user, %5.2f ms of the processor\n",
              raw.milliseconds_a_user(), raw.processor_a_user());
  std::printf("import as samba-tool:  %7.2f ms a user, without the department\n", bare.milliseconds_a_user());
  std::printf("samba-tool:            %7.2f ms a user\n", samba.milliseconds_a_user());
  std::printf("import / its calls:    %7.3f\n", ours.milliseconds_a_user() / raw.milliseconds_a_user());
  std::printf("own processor time:    %7.2f ms a user\n", ours.processor_a_user() - raw.processor_a_user());
  std::printf("samba-tool / import:   %7.1f\n", samba.milliseconds_a_user() / bare.milliseconds_a_user());
}

/// Seconds of ldapsearch with a filter, from the catalogue as the load asks it.
double ldapsearch(const std::string& scope, const std::string& filter, const std::string& attributes) {
  return bench::seconds([&] {
    run("ldapsearch -LLL -Q -N -Y GSSAPI -H ldap://" + variable("TWK_LIVE_SERVER") +
        ":3268 -o ldif_wrap=no -E pr=1000/noprompt -b DC=twk,DC=test -s " + scope + " '" + filter + "' " +
        attributes + " >/dev/null");
  });
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

void measure_load(Bench& bench) {
  windows::Desktop& session = bench.session();
  const auto let_go = [&session] {
    session.form1.TreeView1.clear();
    session.groups.NotMembers.clear();
  };
  std::vector<double> loads;
  std::vector<double> searches;
  double processor = 0;
  double bytes = 0;
  for (int i = 0; i < kLoads; ++i) {
    let_go();
    const double before = bench::heap_bytes();
    const Effort load = effort(1, [&] {
      if (!directory::Load_AD_Domain(session))
        give_up("the domain was not loaded");
    });
    bytes = bench::heap_bytes() - before;
    loads.push_back(load.seconds);
    processor += load.processor;
    const double start = ldapsearch("base", "(objectClass=*)", "1.1");
    searches.push_back(
        ldapsearch("sub", "(&(objectCategory=OrganizationalUnit)(objectClass=OrganizationalUnit))", "name") +
        ldapsearch("sub", "(&(objectCategory=Person)(objectClass=User))", "DisplayName name") +
        ldapsearch("sub", "(&(objectCategory=group)(objectClass=Group))", "Name GroupType") - 3 * start);
  }
  const double users = session.UserCount;
  std::printf("load of %.0f users:   %7.3f s, %5.3f s of the processor\n", users, median(loads),
              processor / kLoads);
  std::printf("ldapsearch of it:      %7.3f s (its start and logon taken off)\n", median(searches));
  std::printf("load / ldapsearch:     %7.3f\n", median(loads) / median(searches));
  std::printf("memory a loaded user:  %7.0f bytes\n", bytes / users);
}

void measure_search(Bench& bench) {
  windows::Desktop& session = bench.session();
  const base::Date limit = base::make_date({1980, 1, 1});
  windows::AccountView view(session);
  Effort ours;
  Effort raw;
  double calls_an_account = 0;
  for (int round = 0; round < kRounds; ++round) {
    session.multi_user.ListView2.clear();
    directory::Load_AD_Users(session, "LDAP://OU=Unit 000,DC=twk,DC=test", true, "subtree", "",
                             directory::UserList::kSelection);
    const auto accounts = static_cast<int>(session.multi_user.ListView2.size());
    bench::start_recording();
    ours.add(effort(accounts, [&] {
      std::size_t found = 0;
      batch::find_accounts(
          session,
          [&](const platform::ObjectPtr& account) { return batch::expires_before(session, account, limit); },
          view, found);
    }));
    const std::vector<bench::RecordedCall> calls = bench::stop_recording();
    raw.add(effort(accounts, [&] {
      for (const bench::RecordedCall& call : calls) {
        if (bench::replay(call) != call.result)
          give_up("a call of the search gave another result when it was made again");
      }
    }));
    calls_an_account = static_cast<double>(calls.size()) / accounts;
  }
  std::printf("search of expired:     %7.3f ms an account, %.1f LDAP calls\n", ours.milliseconds_a_user(),
              calls_an_account);
  std::printf("its calls alone:       %7.3f ms an account\n", raw.milliseconds_a_user());
  std::printf("search / its calls:    %7.3f\n", ours.milliseconds_a_user() / raw.milliseconds_a_user());
}

}  // namespace

int main() {
  Bench bench;
  measure_load(bench);
  measure_search(bench);
  measure_import(bench);
  return 0;
}
