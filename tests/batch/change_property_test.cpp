#include "batch/change_property.hpp"

#include "batch/schema_properties.hpp"
#include "support/lab_session.hpp"

namespace twk::batch {
namespace {

using test::LabSession;
using testing::ElementsAre;
using testing::HasSubstr;

/// A lab with three users, and the tab ready for a property.
class PropertyWorld : public LabSession {
 public:
  explicit PropertyWorld(std::string_view command_line = "")
      : LabSession(lab::DomainKind::kNative, command_line) {
    for (const std::string name : {"jo", "ann", "kim"})
      add_user("CN=" + name + " Lee", name);
    start();
    fill_properties(session);
    session.ad_properties.user_done = [this](const session::PropertyOutcome& outcome) {
      outcomes.push_back((outcome.changed ? "" : "not ") + outcome.user);
    };
  }

  void add_user(const std::string& rdn, const std::string& logon_name) {
    const platform::ObjectPtr user =
        services.directory.GetObject("LDAP://twk.test/" + std::string(test::kNewStarters))
            ->Create("user", rdn);
    user->Put("samAccountName", logon_name);
    user->SetInfo();
  }
  void choose(const std::string& property, const std::string& value) {
    session.ad_properties.AD_Properties.text = property;
    AD_Properties_Click(session);
    session.multi_user.AD_CHANGE.text = value;
  }
  void select_user(const std::string& name) { session.multi_user.ListView1.add(path_of(name), name, "USER"); }

  std::vector<std::string> outcomes;
};

TEST(ChangeProperty, GivesEveryChosenUserTheValue) {
  PropertyWorld world;
  world.select_user("jo");
  world.select_user("ann");
  world.choose("title", "Clerk of %UserName%");
  CHANGE_AD_Click(world.session);
  EXPECT_EQ(world.property("jo", "title"), "Clerk of jo Lee");
  EXPECT_EQ(world.property("ann", "title"), "Clerk of ann Lee");
  EXPECT_EQ(world.property("kim", "title"), "");
  EXPECT_THAT(world.outcomes, ElementsAre("jo", "ann"));
  EXPECT_THAT(world.log(),
              HasSubstr("User:admin\nChange property:'title' to 'Clerk of jo Lee' for jo Lee\n"));
  EXPECT_EQ(world.session.multi_user.Label3.caption, std::string("Properties changed for 2 users."));
  EXPECT_THAT(world.log_tab(), ElementsAre("GREEN  AD Property changed for 2 users."));
}

}  // namespace
}  // namespace twk::batch
