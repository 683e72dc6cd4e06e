#include "lifecycle/move_world.hpp"

namespace twk::lifecycle {
namespace {

using testing::AllOf;
using testing::HasSubstr;

class MoveRefusals : public testing::TestWithParam<DomainKind> {};
INSTANTIATE_TEST_SUITE_P(Kinds, MoveRefusals, testing::Values(DomainKind::kNative, DomainKind::kNt),
                         test::kind_name);

/// What is found out before the first change: the row of the log tab, and its cause.
struct Refusal {
  const char* row;
  std::function<void(MoveWorld&)> prepare;
};

const Refusal kRefusals[] = {
    {"Template.dat is missing or holds no template \"Staff\"",
     [](MoveWorld& world) { std::filesystem::remove(world.folder.path() / "db/Template.dat"); }},
    {"Site.dat",
     [](MoveWorld& world) {
       std::filesystem::remove(world.folder.path() / "db/Site.dat");
       std::filesystem::create_directory(world.folder.path() / "db/Site.dat");
     }},
    {"\\\\FS2\\D$\\Users cannot be reached: ",
     [](MoveWorld& world) { std::filesystem::remove_all(world.server_folder("FS2/D/Users")); }},
    {"The share jo$ on FS2 is taken: it leads to D:\\Users",
     [](MoveWorld& world) { world.share("FS2", "jo$", "D:\\Users"); }},
    {"The shares of FS2 are others' business",
     [](MoveWorld& world) { world.network.server_of_others = "FS2"; }},
    {"FS2 has no share jo$, to which ",
     [](MoveWorld& world) {
       world.staff.HomeShare = "";
       world.write_template();
     }},
    {"\\\\FS2\\D$\\Users\\jo is not one account's own",
     [](MoveWorld& world) {
       world.add_user("ann", "\\\\FS2\\D$\\Users\\jo");
       std::filesystem::create_directories(world.server_folder("FS2/D/Users/jo"));
     }},
    {"\\\\FS2\\D$\\Users\\jo is a link, which is not followed",
     [](MoveWorld& world) {
       std::filesystem::create_directory_symlink("../Profiles", world.server_folder("FS2/D/Users/jo"));
     }},
    {"The new home \\\\FS2\\jo$ is inside the old one, \\\\FS2\\Users",
     [](MoveWorld& world) {
       world.share("FS2", "Users", "D:\\Users");
       world.set_home("jo", "\\\\FS2\\Users");
     }},
    {"The home \\\\FS9\\jo$: There is no file server FS9",
     [](MoveWorld& world) { world.set_home("jo", "\\\\FS9\\jo$"); }},
    {"\"C:\\jo\" is not a path that data can be copied from",
     [](MoveWorld& world) { world.set_home("jo", "C:\\jo"); }},
    {"Error Setting User Details, Can't find Domain PDC..", [](MoveWorld& world) {
       world.directory.before = test::fail_at("SetInfo", 1, platform::ads_error::kAccessDenied);
     }}};

TEST_P(MoveRefusals, WhatCanBeFoundOutIsRefusedBeforeTheFirstChange) {
  for (const Refusal& one : kRefusals) {
    SCOPED_TRACE(one.row);
    MoveWorld world(GetParam());
    world.start_at_own_shares(kMoveData);
    world.terms.even_if_shared = world.terms.new_paths_anyway = session::Consent::kNo;
    one.prepare(world);
    const std::string home = world.property("jo", "HomeDirectory");
    const Names fresh = world.tree("FS2/D");
    EXPECT_TRUE(world.directory.before || world.rehearse().second == kNotMoved);
    EXPECT_EQ(world.move(), kNotMoved);
    EXPECT_EQ(world.tree("FS1/D"), kWhole);
    EXPECT_EQ(world.tree("FS2/D"), fresh);
    EXPECT_EQ(world.shares("FS1"), kOldShares);
    EXPECT_EQ(world.property("jo", "HomeDirectory"), home);
    EXPECT_THAT(world.log_tab(),
                testing::ElementsAre(AllOf(testing::StartsWith("RED "), HasSubstr(one.row))));
  }
}

}  // namespace
}  // namespace twk::lifecycle
