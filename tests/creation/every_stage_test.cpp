#include "creation/create_user.hpp"
#include "mail/mail_session.hpp"
#include "stores/side_tables.hpp"
#include "windows/state/form1.hpp"

namespace twk::creation {
namespace {

using lab::DomainKind;
using testing::ElementsAre;
using testing::HasSubstr;

struct Light {
  const char* name;
  controls::Label windows::Form1::*label;
};
constexpr Light kLights[] = {
    {"directories", &windows::Form1::Createdirs}, {"account", &windows::Form1::UserAccount},
    {"shares", &windows::Form1::Sharedirs},       {"security", &windows::Form1::Security},
    {"mailbox", &windows::Form1::MailAccount},    {"command", &windows::Form1::run}};

/// Jo Smith is created with every stage on.
class EveryStage : public test::MailSession {
 public:
  explicit EveryStage(DomainKind kind) : MailSession(kind) {
    for (const char* const gate : {"CreateShares", "SetPermissions", "MailAccount", "RunCmd"})
      set("UM", gate, "Yes");
    set("Setup", "BatchFileCreate", "notify %UserName%");
    staff.HomeShare = "%UserName%$";
    staff.ProfileShare = "%UserName%.prf$";
    staff.VariableNames[1] = "WTS";
    staff.VariableValues[1] = "ENABLED";
    start_with(test::kRows);
    session.form1.ListView9.set_sub_item(session.form1.ListView9.at(0), 1, "\\\\%server%\\ts\\%UserName%");
    stores::write_permissions(session, "Permissions.dat", std::vector{row("Change")});
    stores::write_permissions(session, "SharePerm.dat", std::vector{row("Full Control")});
  }

  /// "blue", "yellow", "red" or "blank" of each light, in the order of `kLights`.
  [[nodiscard]] std::string lights() const {
    std::string text;
    for (const Light& light : kLights) {
      const controls::Label& label = session.form1.*light.label;
      const std::string& caption = label.caption;
      const std::int32_t colour = label.colour;
      const bool done = caption == "Completed";
      text +=
          (text.empty() ? "" : " ") + std::string(caption.empty()                                  ? "blank"
                                                  : done && colour == controls::kBlue              ? "blue"
                                                  : done && colour == controls::kYellow            ? "yellow"
                                                  : caption == "Error" && colour == controls::kRed ? "red"
                                                                                                   : "wrong");
    }
    return text;
  }

 private:
  static records::PermissionRecord row(const char* access) { return {false, "%UserName%", access, ""}; }
};

class AllStages : public testing::TestWithParam<DomainKind> {};
INSTANTIATE_TEST_SUITE_P(Kinds, AllStages,
                         testing::Values(DomainKind::kNative, DomainKind::kMixed, DomainKind::kNt),
                         test::kind_name);

TEST_P(AllStages, ARunWithEveryStageOnIsBlueAndGreen) {
  EveryStage world(GetParam());
  world.create();
  EXPECT_EQ(world.lights(), "blue blue blue blue blue blue");
  EXPECT_THAT(world.log_tab(), ElementsAre("GREEN Jo.Smith Created User "));
  EXPECT_THAT(world.log(), HasSubstr("Setting WTS settings...\n"));
  EXPECT_EQ(world.of("Jo.Smith", "Mail"), "Jo.Smith@mail.test");
  EXPECT_THAT(world.process.commands, ElementsAre(ElementsAre("notify", "Jo.Smith")));
}

TEST_P(AllStages, AFailedStageShowsItsLightAndItsWordsAndTheOthersContinue) {
  const struct {
    const char* lights;
    const char* log_tab;
    const char* log;
    std::function<void(EveryStage&)> fault;
  } cases[] = {
      {"blue blue red blue blue blue", "YELLOW Jo.Smith Created User ",
       "NetShareSetInfo failed with error code : 2118\n",
       [](EveryStage& world) {
         platform::ShareInfo502 taken;
         taken.shi502_netname = "Jo.Smith$";
         taken.shi502_path = "D:\\Users";
         world.services.network.NetShareAdd("FS1", taken);
       }},
      {"blue blue blue blue red blue", "YELLOW Jo.Smith Created User ", "Failed to create Mail Account\n",
       [](EveryStage& world) { world.session.form1.PORT.text = "390"; }},
      {"blue blue blue blue yellow blue", "YELLOW Jo.Smith Created User ", "Created Mail Account\n",
       [](EveryStage& world) { world.session.form1.ListView8.add({}, "No-Such-Attribute", "MAIL", {"x"}); }},
      {"blue blue blue blue blue red", "YELLOW Jo.Smith Created User ", "Error Running Command: notify",
       [](EveryStage& world) {
         world.process.result = {0, "nothing there"};
       }},
      {"blue red blank blank blank blank", "RED Error Creating Users Account... ",
       "Error Creating Users Account: Jo.Smith\n",
       [](EveryStage& world) {
         world.directory.before = test::fail_at("SetInfo", 1, platform::ads_error::kServerDown);
         if (!world.is_nt())
           world.dialogs.expect("error: ");
       }},
      {"red blank blank blank blank blank", "RED Error Creating ", "Error Number: 76\n",
       [](EveryStage& world) {
         std::filesystem::remove_all(world.folder.path() / "servers/FS1/D/Profiles");
       }},
  };
  for (const auto& one : cases) {
    EveryStage world(GetParam());
    one.fault(world);
    world.create();
    EXPECT_EQ(world.lights(), one.lights);
    EXPECT_THAT(world.log_tab(), ElementsAre(HasSubstr(one.log_tab))) << one.lights;
    EXPECT_THAT(world.log(), HasSubstr(one.log)) << one.lights;
  }
}

}  // namespace
}  // namespace twk::creation
