#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

using testing::HasSubstr;

TEST(Lab, IsMadeAsAskedButNotOverSomethingElseOrWithInvalidNames) {
  const TemporaryDirectory folder;
  put_file(folder / "precious", "x");
  play_without_lab(R"(
$ lab init $FOLDER/a --domain Corp.Test --users 7 --groups 2 --ous 3 --seed 9
{"domain": "corp.test"}
$ --lab $FOLDER/a user list
| Administrator
$ lab init $FOLDER => 2 is not an empty folder
$ lab init $FOLDER/lab --kind nt --domain old.nt => 64
$ lab init $FOLDER/lab --domain flat => 64
$ lab init $FOLDER/lab --domain "a b.test" => 64
$ lab init $FOLDER/lab --kind modern => 64
)",
                   {{"$FOLDER", {folder.path().string()}}});
  EXPECT_FALSE(std::filesystem::exists(folder / "lab"));
}

using SampleLab = TwkLab;

TEST_F(SampleLab, GoesOutAsLdifAndComesBackAsAnotherLab) {
  const std::string ldif = file("domain.ldif", run({"lab", "export"}).out);
  const ProgramResult made = twk({"--lab", lab() + "2", "--json", "lab", "import", ldif});
  ASSERT_EQ(made.exit_code, 0) << made.err;
  EXPECT_EQ(json_lines(made.out).at(0)["made"], true);
  EXPECT_EQ(twk({"--lab", lab() + "2", "user", "list"}).out, run({"user", "list"}).out);
}

TEST_F(SampleLab, ImportsFurtherEntriesSkipsExistingOnesAndNamesTheLineOfOneThatDoesNotFit) {
  play(R"(
$ lab import $MORE
{"added": 1, "skipped": 1}
$ lab import $BAD => 65 Line 3
! OU=Nowhere
)",
       {{"$MORE",
         {file("more.ldif",
               "dn: OU=Added,DC=twk,DC=test\nobjectClass: organizationalUnit\nou: Added\nname: Added\n\n"
               "dn: " +
                   kNewStarters + "\nobjectClass: organizationalUnit\n")}},
        {"$BAD", {file("bad.ldif", "\n\ndn: OU=x,OU=Nowhere,DC=twk,DC=test\nobjectClass: top\n")}}});
}

TEST_F(SampleLab, LeavesNoLabBehindAnImportThatFails) {
  const ProgramResult result =
      twk({"--lab", lab() + "2", "lab", "import", file("bad.ldif", "dn: DC=a,DC=b\nnonsense\n")});
  EXPECT_EQ(result.exit_code, 65);
  EXPECT_FALSE(std::filesystem::exists(lab() + "2"));
}

TEST_F(SampleLab, FormatsNamesAsTheSystemDoes) {
  play(R"(
$ format %first%.%last% John Fred Smith
> John.Smith
$ format --serial 7 %last%%nnn% John "" Smith
> Smith007
$ format %last%%n% John "" Smith
> Smith1
$ format --import a,,c %IMPORT3%%import1% J "" S
> ca
$ format -- -1%first% John "" Smith
> -J
)");
}

using DirectoryThatCannotBeRead = TwkLab;

TEST_F(DirectoryThatCannotBeRead, StopsOnlyTheCommandsThatNeedIt) {
  put_file(lab() + "/domain.ldif", get_file(lab() + "/domain.ldif") + "no colon\n");
  play(R"(
$ settings get Setup Domain
| twk.test
$ template list
{"name": "Staff"}
$ user list => 65 domain.ldif: Line
$ user show jo => 65 A line without a colon
$ lab info => 65 A line without a colon
$ db compact --keep-groups => 65 A line without a colon
)");
}

}  // namespace
}  // namespace twk::test
