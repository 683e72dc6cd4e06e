#include "resources/WTS.hpp"

#include "records/terminal_server_rows.hpp"
#include "stores/side_tables.hpp"
#include "support/world.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/import_windows.hpp"

namespace twk::resources {
namespace {

using platform::WtsConfigClass;
using platform::WtsConfigValue;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::size_t kRows = records::kTerminalServerRows.size();

using Call = std::pair<int, WtsConfigValue>;

/// Records its calls; refuses the call `fail_at`, counted from 1.
class NotingNetwork final : public test::FakeNetwork {
 public:
  std::string NetGetDCName(std::string_view server, std::string_view domain) override {
    EXPECT_EQ(server, "");
    if (domain != "TWK")
      throw base::RuntimeError(platform::network_error::kControllerNotFound, "none");
    return "\\\\DC1";
  }
  void WTSSetUserConfig(std::string_view server, std::string_view user, WtsConfigClass setting,
                        const WtsConfigValue& value) override {
    EXPECT_EQ(server, "\\\\DC1");
    EXPECT_EQ(user, "jo");
    calls.emplace_back(static_cast<int>(setting), value);
    if (calls.size() == fail_at)
      throw base::RuntimeError(5, "refused");
  }

  std::vector<Call> calls;
  std::size_t fail_at = 0;
};

class TerminalServerSettings : public test::TestWorld {
 protected:
  TerminalServerSettings() {
    stores::fill_wts_rows(wts);
    wts.dbpath = database.path().string() + "\\";
    wts.log.open();
  }

  void put(std::size_t row, std::string_view value) {
    wts.form1.ListView9.set_sub_item(wts.form1.ListView9.at(row - 1), 1, std::string(value));
  }
  const std::vector<Call>& apply() {
    noting.calls.clear();
    ApplyTerminalRows(wts, "jo", "TWK", "typed");
    return noting.calls;
  }
  const std::vector<Call>& apply_one(int number, std::string_view value) {
    noting.calls.clear();
    ApplyTerminalSetting(wts, "jo", "TWK", static_cast<std::int16_t>(number), value);
    return noting.calls;
  }
  std::string log() { return test::get_file(database / "Log.txt"); }

  NotingNetwork noting;
  windows::Desktop wts{{registry, directory, directory, files, noting, security, mailboxes, process,
                        environment, clock, dialogs},
                       "",
                       "/opt/twk"};
};

TEST_F(TerminalServerSettings, EachRowReachesItsClassInItsForm) {
  const struct {
    const char* value;
    Call call;
  } rows[kRows] = {{"\\\\FS1\\P", {15, "\\\\FS1\\P"}},
                   {"Yes", {16, "Yes"}},
                   {"W:", {17, "W:"}},
                   {"yes", {3, 1U}},
                   {"Yes", {2, 0U}},
                   {"menu.exe", {0, "menu.exe"}},
                   {"C:\\", {1, "C:\\"}},
                   {"TRUE", {7, 1U}},
                   {"No", {8, 0U}},
                   {"1", {9, 0U}},
                   {"1 min", {4, 60000U}},
                   {"2 DAYS", {5, 172800000U}},
                   {"1 hour", {6, 3600000U}}};
  std::vector<Call> expected;
  for (std::size_t i = 0; i < kRows; ++i) {
    put(i + 1, rows[i].value);
    expected.push_back(rows[i].call);
  }
  EXPECT_EQ(apply(), expected);
  EXPECT_EQ(log(), "Setting WTS settings...\r\n");
  put(5, "No");
  EXPECT_EQ(apply().at(4), Call(2, 1U));
}

TEST_F(TerminalServerSettings, RowsWithoutAValueAreLeftOut) {
  EXPECT_THAT(apply(), IsEmpty());
  put(13, "Never");
  put(2, "%nothing%");
  wts.variables.ListView1.add({}, "nothing", {}, {""});
  EXPECT_THAT(apply(), ElementsAre(Call(6, 0U)));
}

TEST_F(TerminalServerSettings, AllWordsOfTimeAreKnownAndOthersAreNever) {
  for (const auto& [word, milliseconds] : records::kTimeWords) {
    put(12, base::lower(word));
    EXPECT_THAT(apply(), ElementsAre(Call(5, milliseconds))) << word;
  }
  for (const char* const word : {"1 minute", "4 mins", "60000", " 1 min", "yes"}) {
    put(12, word);
    EXPECT_THAT(apply(), ElementsAre(Call(5, 0U))) << word;
  }
}

TEST_F(TerminalServerSettings, VariablesServerAndNameAreFilledIn) {
  wts.ActiveSite.NTServer = " FS1 ";
  wts.variables.ListView1.add({}, "site", {}, {"%SERVER%\\HQ"});
  put(1, "\\\\%site%\\%username%");
  EXPECT_THAT(apply(), ElementsAre(Call(15, "\\\\FS1\\HQ\\typed")));
}

TEST_F(TerminalServerSettings, ARefusedRowIsLoggedAndEndsTheRows) {
  const std::pair<std::size_t, const char*> cases[] = {{1, "WTSSetUserConfigString failed with error 5\r\n"},
                                                       {2, "WTSSetUserConfigDWord failed with error 5\r\n"}};
  put(3, "W:");
  put(8, "Yes");
  put(9, "Yes");
  for (const auto& [fail_at, says] : cases) {
    noting.fail_at = fail_at;
    dialogs.beeps = 0;
    EXPECT_EQ(apply().size(), fail_at);
    EXPECT_EQ(dialogs.beeps, 1);
    EXPECT_THAT(log(), HasSubstr(says));
  }
}

TEST_F(TerminalServerSettings, ADomainWithoutAControllerShowsABox) {
  put(3, "W:");
  for (const bool single : {false, true}) {
    dialogs.expect("NetGetDCName failed with error 2453");
    single ? ApplyTerminalSetting(wts, "jo", "ELSEWHERE", 3, "W:")
           : ApplyTerminalRows(wts, "jo", "ELSEWHERE", "");
    EXPECT_EQ(dialogs.last_icon, platform::Icon::kExclamation);
  }
  EXPECT_THAT(noting.calls, IsEmpty());
  EXPECT_EQ(log(), "");
}

TEST_F(TerminalServerSettings, ASingleSettingTakesItsValueAsItIs) {
  const struct {
    int number;
    const char* value;
    Call call;
  } cases[] = {{1, "\\\\FS1\\%USERNAME%", {15, "\\\\FS1\\jo"}},
               {2, "", {16, ""}},
               {4, "", {3, 0U}},
               {5, "true", {2, 1U}},
               {13, "Never", {6, 0U}},
               {14, "p", {15, "p"}}};
  for (const auto& [number, value, call] : cases)
    EXPECT_THAT(apply_one(number, value), ElementsAre(call)) << number;
  EXPECT_EQ(log(), "");
  for (const int number : {-1, 0, 15, 32767})
    EXPECT_THAT(apply_one(number, "x"), IsEmpty()) << number;
}

TEST_F(TerminalServerSettings, ARefusedSinglePropertyIsLoggedAndBeeps) {
  noting.fail_at = 1;
  apply_one(13, "1 day");
  apply_one(1, "p");
  EXPECT_EQ(dialogs.beeps, 2);
  EXPECT_EQ(log(),
            "WTSSetUserConfigDWord failed with error 5\r\nWTSSetUserConfigString failed with error 5\r\n");
}

}  // namespace
}  // namespace twk::resources
