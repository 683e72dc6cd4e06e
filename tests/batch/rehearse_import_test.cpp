#include "batch/rehearse_import.hpp"

#include <array>
#include <filesystem>
#include <map>
#include <random>

#include "batch/import_columns.hpp"
#include "stores/side_tables.hpp"
#include "support/lab_session.hpp"
#include "windows/create_user.hpp"
#include "windows/import.hpp"
#include "windows/state/form1.hpp"

namespace twk::batch {
namespace {

using lab::DomainKind;

/// Says Yes to everything, as nobody would in a hurry.
class Yes final : public platform::Dialogs {
 public:
  platform::Answer MsgBox(std::string_view /*text*/, platform::Buttons buttons, platform::Icon /*icon*/,
                          std::string_view /*title*/) override {
    return buttons == platform::Buttons::kOk ? platform::Answer::kOk : platform::Answer::kYes;
  }
  std::string InputBox(std::string_view /*prompt*/, std::string_view /*title*/, bool /*secret*/) override {
    return {};
  }
  std::optional<std::string> open_file(std::string_view /*title*/, std::string_view /*filter*/) override {
    return std::nullopt;
  }
  void show_modal(std::string_view /*window*/) override {}
  void beep() override {}
  void DoEvents() override {}
};

platform::Dialogs& yes() {
  static Yes dialogs;
  return dialogs;
}

records::PermissionRecord full_control(const char* account) {
  return {false, account, "Full Control", ""};
}

/// Every stage is on. One account, one folder and one share exist before, and not every name is a good one.
class HostileWorld : public test::LabSession {
 public:
  HostileWorld(DomainKind kind, bool by_column) : LabSession(kind, {}, &yes()) {
    site.ExchangeServer = "EX55";
    site.ExchangeOrg = "Tarnwick";
    site.ExchangeSite = "Head Office";
    staff.HomeShare = "%UserName%$";
    staff.VariableNames[1] = "WTS";
    staff.VariableValues[1] = "ENABLED";
    for (const char* const stage : {"CreateShares", "SetPermissions", "MailAccount", "RunCmd"})
      set("UM", stage, "Yes");
    set("Setup", "BatchFileCreate", "notify %UserName%");
    set("Setup", "AltSetupID", by_column ? "" : "%first%.%last%%n%");
    set("Setup", "AccountExpire", "%IMPORT7%");
    set("Setup", "ImportGroupsStart", "6");
    set("Setup", "ImportGroupsFinish", "6");
    services.files.write(session.program_directory + "\\W2K.dat",
                         std::string("p,userPrincipalName,%IMPORT8%@twk.test\r\np,info,%IMPORT9%\r\n") +
                             (by_column ? "p,sAMAccountName,%IMPORT8%\r\n" : ""));
    make_user("Ann.Lee");
    services.files.make_directory("\\\\FS1\\D$\\Users\\Kim.Day");
    platform::ShareInfo502 taken;
    taken.shi502_netname = "Al.Bo$";
    taken.shi502_path = "D:\\Users";
    services.network.NetShareAdd("FS1", taken);
    start();
    stores::write_permissions(session, "Permissions.dat",
                              std::vector{full_control("%UserName%"), full_control("Readers")});
    stores::write_permissions(session, "SharePerm.dat", std::vector{full_control("%UserName%")});
    for (const auto& [name, value] : std::map<std::string, std::string>{
             {"Container", "Recipients"}, {"Target-Address", "%first%.%last%@mail.test"}})
      session.form1.ListView8.add({}, name, "MAIL", {value});
  }

  /// Of each file of the lab, its database directory and its servers.
  [[nodiscard]] std::map<std::string, std::string> contents() const {
    std::map<std::string, std::string> contents;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path()))
      contents[entry.path()] = entry.is_regular_file() ? test::get_file(entry.path()) : "";
    return contents;
  }
  [[nodiscard]] ImportOrder order(bool by_column) {
    ImportOrder order;
    order.user = windows::new_user_request(session);
    use_columns(session.import, order, {1, 2, 3, by_column ? 4 : 0, by_column ? 5 : 0}, false);
    return order;
  }
};

/// A column of the file: the first values are good ones.
struct Column {
  std::size_t good;
  std::vector<std::string> values;
  bool numbered = false;
};

const std::string kLongest(70, 'x');
const std::vector<Column> kColumns = {
    {4,
     {"Jo", "Ann", "Kim", "Al", "", "J\u00F6rg", "da Silva", "O'Neill", "..", "A*", "%last%", "Z\u200B",
      "\x01", kLongest}},
    {2, {"", "M", kLongest}},
    {4,
     {"Smith", "Lee", "Day", "Bo", "", "M\u00FCller", "|", "Bo+", "x=y", "Lee.", "%n%", " ", "a/b", kLongest},
     true},
    {2, {"id", "key", "Ann.Lee", "", "id|3", "a very long account name", "%first%", "Jo Smith", "id."}, true},
    {1, {"Welcome-2026", "short", "", "longbutplain", "Welcome-\u00E9"}},
    {3, {"", "Readers", "staff", "No Such Group", "Domain Users"}},
    {2, {"", "31/12/2030", "32/13/2030", "yesterday", "end of 31/12/2027"}},
    {2, {"one", "two", "", "id|3"}, true},
    {2, {"", "text", std::string(2000, 'i'), "\x02"}}};

/// Every second name has a number, so that the others clash.
std::string lines(int count, bool hostile) {
  std::minstd_rand random(7);
  std::string text;
  for (int line = 0; line < count; ++line) {
    for (const Column& column : kColumns) {
      const std::size_t choice = hostile && random() % 4 == 0 ? column.values.size() : column.good;
      text += column.values[random() % choice];
      if (column.numbered && (!hostile || random() % 2 == 0))
        text += std::to_string(line);
      text += &column == &kColumns.back() ? "\r\n" : ",";
    }
  }
  return text;
}

using Rows = std::vector<std::string>;

std::string row_text(const session::ImportRow& row) {
  std::string text = std::to_string(row.line) + " " + row.outcome.light + " " + row.outcome.user;
  for (const std::string& warning : row.outcome.warnings)
    text += "; " + warning.substr(0, warning.find("in use"));  // by a path or by a distinguished name
  return text;
}

struct Import {
  DomainKind kind;
  bool by_column;  ///< of the account name and the password
  bool at_once;    ///< an account is one request
  bool hostile;
  int lines;
};

class RehearsedImports : public testing::TestWithParam<Import> {};
INSTANTIATE_TEST_SUITE_P(Files, RehearsedImports,
                         testing::Values(Import{DomainKind::kNative, false, false, false, 200},
                                         Import{DomainKind::kNative, false, true, true, 500},
                                         Import{DomainKind::kNative, true, false, true, 250},
                                         Import{DomainKind::kNt, true, false, true, 250}));

TEST_P(RehearsedImports, WriteNothingAndForetellEachNameLightAndWarning) {
  const Import& import = GetParam();
  HostileWorld world(import.kind, import.by_column);
  world.directory.writes_at_once = import.at_once;
  const std::string path = world.folder / "users.csv";
  test::put_file(path, lines(import.lines, import.hostile));
  const ImportOrder order = world.order(import.by_column);
  windows::NewUserView view(world.session.form1, true);
  const auto before = world.contents();
  Rows foreseen;
  Rows met;
  rehearse_import(world.session, path, order, view,
                  {{}, [&](const session::ImportRow& row) { foreseen.push_back(row_text(row)); }});
  EXPECT_EQ(world.contents(), before);
  world.session.import.row_done = [&](const session::ImportRow& row) { met.push_back(row_text(row)); };
  Import_Users(world.session, path, order, view);
  ASSERT_EQ(foreseen.size(), static_cast<std::size_t>(import.lines));
  for (std::size_t i = 0; i < met.size(); ++i)
    EXPECT_EQ(foreseen[i], met[i]);
}

TEST(RehearsedImport, HasTheNamesOfAPreviewWhenPeopleComeTwice) {
  for (const DomainKind kind : {DomainKind::kNative, DomainKind::kNt}) {
    HostileWorld world(kind, false);
    const std::string path = world.folder / "users.csv";
    test::put_file(path, lines(80, false) + lines(40, false));
    windows::NewUserView view(world.session.form1, true);
    const auto rows_of = [&](bool names_only) {
      ImportOrder order = world.order(false);
      order.user.names_only = names_only;
      Rows rows;
      rehearse_import(world.session, path, order, view,
                      {{}, [&](const session::ImportRow& row) {
                         rows.push_back(std::to_string(row.line) +
                                        (row.outcome.light == session::kRed ? " - " : " + ") +
                                        row.outcome.user);
                       }});
      return rows;
    };
    EXPECT_EQ(rows_of(true), rows_of(false));
  }
}

/// Counts the lines that take the long way.
class LongWays final : public windows::NewUserView {
 public:
  using NewUserView::NewUserView;
  void names(const creation::NewUserRequest& /*request*/) override { ++count; }
  int count = 0;
};

TEST(RehearsedImport, SettlesPlainLinesOfAPreviewAsTheLongWayWould) {
  constexpr std::array<std::string_view, 12> kFirst = {
      "Jo", "ann", "Kim", "Al", "Jo", "Xavier-Maria", "O'Neil", "#U", "9a", "%n%", "J\u00F6rg", ""};
  constexpr std::array<std::string_view, 10> kLast = {
      "Smith", "Lee", "Day", "Bo", "Smith1", "Sm", "de la Cruz", "Lee.", "a/b", "Constantinopolis"};
  std::minstd_rand random(3);
  const auto any = [&](const auto& texts) {
    return std::string(texts.at(random() % (random() % 4 == 0 ? texts.size() : 4)));
  };
  std::string lines;
  for (int line = 0; line < 400; ++line) {
    const std::string number = random() % 2 == 0 ? std::to_string(random() % 120) : "";
    lines += any(kFirst) + number + ",," + any(kLast) + ",,,,,p" + std::to_string(random() % 300) + "\n";
  }
  for (const std::string format : {"%first%.%last%", "1%first%#U%last%", "%last%%n%"}) {
    HostileWorld world(DomainKind::kNative, false);
    world.set("Setup", "UserFormat", "5");
    world.set("Setup", "SetupID", format);
    world.set("Setup", "ImportGroupsFinish", "0");
    const std::string path = world.folder / "users.csv";
    test::put_file(path, lines);
    const auto rows_of = [&](const std::string& expiry) {
      LongWays view(world.session.form1, true);
      ImportOrder order = world.order(false);
      order.user.names_only = true;
      order.user.Expiry = expiry;
      order.user.formats.account = format;
      Rows rows;
      rehearse_import(
          world.session, path, order, view,
          {{}, [&](const session::ImportRow& row) {
             const session::CreationOutcome& outcome = row.outcome;
             rows.push_back(row_text(row) + outcome.message + outcome.first_name + outcome.last_name);
           }});
      return std::pair{rows, view.count};
    };
    const auto [rows, long_ways] = rows_of("");
    // A column of dates, which may be empty, makes every line unusual.
    const auto [expected, all] = rows_of("%IMPORT99%");
    EXPECT_EQ(rows, expected) << format;
    EXPECT_LT(long_ways * 2, all) << format;
  }
}

}  // namespace
}  // namespace twk::batch
