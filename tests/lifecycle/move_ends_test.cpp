#include "lifecycle/move_world.hpp"

namespace twk::lifecycle {
namespace {

using testing::AllOf;
using testing::HasSubstr;

const Names kHomeOnly = {"Users/",         "Users/jo/",           "Users/jo/a.txt",
                         "Users/jo/Mail/", "Users/jo/Mail/b.txt", "Profiles/"};

Names with(Names names, std::initializer_list<const char*> more) {
  names.insert(more.begin(), more.end());
  return names;
}

/// A move, what it leaves on both servers, and what it reports.
struct MoveCase {
  std::string name;
  Moved outcome;
  std::string row;  ///< of the log tab, a part of it; empty for none
  Names old_tree = kWhole;
  Names new_tree = kEmpty;
  Names old_shares = kOldShares;
  int data = kMoveData;
  std::vector<std::string> log = {};
  std::function<void(MoveWorld&)> prepare = {};

  [[nodiscard]] MoveCase leaving(const Names& on_old_server, const Names& on_new_server) const {
    MoveCase other = *this;
    other.old_tree = on_old_server;
    other.new_tree = on_new_server;
    return other;
  }
  [[nodiscard]] MoveCase sharing(const Names& on_old_server) const {
    MoveCase other = *this;
    other.old_shares = on_old_server;
    return other;
  }
  [[nodiscard]] MoveCase of_data(int how) const {
    MoveCase other = *this;
    other.data = how;
    return other;
  }
  [[nodiscard]] MoveCase logging(const std::vector<std::string>& texts) const {
    MoveCase other = *this;
    other.log = texts;
    return other;
  }
  [[nodiscard]] MoveCase after(const std::function<void(MoveWorld&)>& step) const {
    MoveCase other = *this;
    other.prepare = step;
    return other;
  }
};

MoveCase moves(const char* name) {
  return MoveCase{name, kMoved, "GREEN  jo Moved"}.leaving(kEmpty, kWhole).sharing({});
}

MoveCase warns(const char* name, const char* row) {
  return MoveCase{name, kWarned, row}.leaving(kEmpty, kWhole).sharing({});
}

/// Nothing of the old server goes, and the account keeps its paths.
MoveCase stays(const char* name, const char* row) {
  return {name, kNotMoved, row};
}

/// The question of the second half of `prepare` is answered No.
void ask(MoveWorld& world, const char* text) {
  world.session.multi_user.No_Prompt.value = 0;
  world.dialogs.expect(text, platform::Answer::kNo);
}

void link_in_home(MoveWorld& world) {
  std::filesystem::create_directory_symlink("/etc", world.server_folder("FS1/D/Users/jo/Mail/out"));
}

void with_new_paths(MoveWorld& world) {
  world.terms.new_paths_anyway = session::Consent::kYes;
}

const MoveCase kMoveCases[] = {
    moves("a copy leaves the source and takes its shares")
        .of_data(kCopyData)
        .leaving(kWhole, kWhole)
        .logging({R"(Profile Copied from \\FS1\jo.prf$ to \\FS2\jo.prf$)", "Home Dir Copied from "}),
    moves("a profile in the home goes its own way alone")
        .leaving({"Users/", "Profiles/", "Profiles/jo/", "Profiles/jo/NTUser.dat"},
                 {"Users/", "Users/jo/", "Users/jo/a.txt", "Profiles/", "Profiles/jo/", "Profiles/jo/b.txt"})
        .sharing({"jo.prf$"})
        .after([](MoveWorld& world) { world.set_profile(R"(\\FS1\D$\Users\jo\Mail)"); }),
    moves("nothing leaves the data and repoints the account")
        .of_data(kNoData)
        .leaving(kWhole, kFolders)
        .sharing(kOldShares)
        .logging({"Created New Home Dir: \\\\FS2\\D$\\Users\\jo\n", "Creating Home Share: jo$\n",
                  "User Moved Completed\n"}),
    warns("the command does not start", "YELLOW  jo Moved: Error Running File: moved.cmd")
        .logging({"User Moved Completed\n"})
        .after([](MoveWorld& world) {
          world.session.multi_user.Run_CMD.value = 1;
          world.process.result = {0, "nothing there"};
        }),
    stays("the old home is missing and the person declines", "")
        .leaving(kEmpty, kEmpty)
        .sharing({})
        .logging({"Cannot Find Users Home Directory\nMove Cancelled\n"})
        .after([](MoveWorld& world) {
          world.lose_old_folders();
          ask(world, "Cannot find Users Existing Home Dir\r\nDo you want to continue ?");
        }),
    warns("the old folders are missing on a server that answers",
          R"(YELLOW  jo Moved: Could not find: \\FS1\jo.prf$ For copying.; Could not find: )")
        .leaving(kEmpty, kFolders)
        .logging({"Error Copying Home Dir "})
        .after([](MoveWorld& world) { world.lose_old_folders(); }),
    stays("the new home is there and the person declines", "")
        .leaving(kWhole, {"Users/", "Users/jo/", "Profiles/"})
        .logging({"Home Directory \\\\FS2\\D$\\Users\\jo Already Exist \nUser move cancelled.\n"})
        .after([](MoveWorld& world) {
          std::filesystem::create_directories(world.server_folder("FS2/D/Users/jo"));
          ask(world, "Home Dir \\\\FS2\\D$\\Users\\jo Already Exist \r\nContinue ?");
        }),
    stays("the new profile is there and the person declines", "")
        .leaving(kWhole, kFolders)
        .logging({"Created New Home Dir: ",
                  "Profile Directory \\\\FS2\\D$\\Profiles\\jo Already Exist \nUser cancelled move.\n"})
        .after([](MoveWorld& world) {
          std::filesystem::create_directories(world.server_folder("FS2/D/Profiles/jo"));
          ask(world, "Profile Dir \\\\FS2\\D$\\Profiles\\jo Already Exist");
        }),
    stays("the new home cannot be made", "RED  Error Home Profile Directory.")
        .logging({"Error Creating Home dir :\\\\FS2\\D$\\Users\\jo\nError Number: 70\n"})
        .after([](MoveWorld& world) {
          world.files.before = [](std::string_view path) {
            if (path == R"(\\FS2\D$\Users\jo)")
              base::raise(base::error::kPermissionDenied, "no");
          };
        }),
    moves("a new share stands for the new folder already")
        .logging({"The share already exists: jo$\n"})
        .after([](MoveWorld& world) {
          std::filesystem::create_directories(world.server_folder("FS2/D/Users/jo"));
          world.share("FS2", "jo$", "D:\\Users\\jo");
        }),
    moves("new shares that a move which broke off has made, one in the other's folder")
        .leaving(kEmpty, with(kHomeOnly, {"Users/jo/prf/", "Users/jo/prf/NTUser.dat"}))
        .after([](MoveWorld& world) {
          world.staff.ProfileDirPath = "D:\\Users\\%UserName%\\prf";
          world.write_template();
          std::filesystem::create_directories(world.server_folder("FS2/D/Users/jo/prf"));
          world.share("FS2", "jo.prf$", "D:\\Users\\jo\\prf");
        }),
    stays("the share of the home is not made", "RED  User jo was not moved: ")
        .leaving(kWhole, kFolders)
        .logging({"Error Creating Home Share: jo$\n"})
        .after([](MoveWorld& world) { world.network.refused_share = "jo$"; }),
    warns("the share of the profile is not made, and the account gets its new paths: nothing is removed",
          "YELLOW  jo Moved: ")
        .leaving(kWhole, with(kHomeOnly, {"Profiles/jo/"}))
        .sharing({"jo.prf$"})
        .logging({"Error Creating Profile Share: jo.prf$\n",
                  "Could Not copy Profile because the New Profile Share was not created...\nNot removing any "
                  "profile shares or deleting Dirs.\nError Copying Profile Dir ",
                  "Home Dir Copied from "})
        .after([](MoveWorld& world) {
          world.network.refused_share = "jo.prf$";
          with_new_paths(world);
        }),
    warns("the share of the home is not made, and the account gets its new paths: its data stays",
          "YELLOW  jo Moved: ")
        .leaving(kHomeOnly, with(kFolders, {"Profiles/jo/NTUser.dat"}))
        .sharing({"jo$"})
        .logging({"Could Not copy Home because the New Home Share was not created...\nNot removing any home "
                  "shares or deleting Dirs.\n"})
        .after([](MoveWorld& world) {
          world.network.refused_share = "jo$";
          with_new_paths(world);
        }),
    warns("new shares that are open to everybody: the old shares and their folders stay",
          "YELLOW  jo Moved: ")
        .leaving(kFolders, kWhole)
        .sharing(kOldShares)
        .logging({"Error Creating Home Share: jo$\n", "Home Dir moved from ",
                  "Unable to Delete Home Dir: \\\\FS1\\D$\\Users\\jo: "})
        .after([](MoveWorld& world) {
          world.session.platform.files.remove(world.session.dbpath + "SharePerm.dat");
        }),
    stays(
        "a link in the home is not copied, and all of it stays",
        R"(RED  User jo was not moved: File operation failed: \\FS1\jo$\Mail\out is a link, which is not copied)")
        .leaving(with(kWhole, {"Users/jo/Mail/out"}), with(kFolders, {"Profiles/jo/NTUser.dat"}))
        .logging({"Error Copying Home Dir ", "Profile Copied from "})
        .after(link_in_home),
    warns("a link in the home, and the account gets its new paths",
          "YELLOW  jo Moved: File operation failed: ")
        .leaving(with(kHomeOnly, {"Users/jo/Mail/out"}), with(kFolders, {"Profiles/jo/NTUser.dat"}))
        .sharing({"jo$"})
        .logging(
            {"Error Copying Home Dir ", "Not Deleting Home Dir: \\\\FS1\\jo$ Due to error copying data\n"})
        .after([](MoveWorld& world) {
          link_in_home(world);
          with_new_paths(world);
        }),
    stays("two names that are one on a server",
          R"(\\FS1\jo$ holds both A.txt and a.txt, which are one name on a server)")
        .leaving(with(kWhole, {"Users/jo/A.txt"}), with(kFolders, {"Profiles/jo/NTUser.dat"}))
        .after([](MoveWorld& world) { world.put("FS1/D/Users/jo/A.txt", "another"); }),
    stays("a folder stands where a file goes", "a.txt exists and is a folder")
        .leaving(kWhole, with(kFolders, {"Users/jo/a.txt/", "Profiles/jo/NTUser.dat"}))
        .after([](MoveWorld& world) {
          std::filesystem::create_directories(world.server_folder("FS2/D/Users/jo/a.txt"));
        }),
    stays("the copying is stopped, whatever is wanted of failed ones",
          "RED  User jo was not moved: The copying was stopped")
        .leaving(kWhole, with(kFolders, {"Profiles/jo/NTUser.dat"}))
        .logging({"Error Copying Profile Dir "})
        .after([](MoveWorld& world) {
          world.dialogs.on_events = [&world] { world.session.run.stopped = true; };
          with_new_paths(world);
        }),
    stays("the account cannot be written when the data has moved",
          "RED  Error Setting User Details, Can't find Domain PDC..")
        .leaving(kEmpty, kWhole)
        .sharing({})
        .after([](MoveWorld& world) {
          world.directory.before = test::fail_at("SetInfo", 2, platform::ads_error::kServerDown);
        }),
    warns("a group refuses the user", "YELLOW  jo Moved: Not added to the group Staff: ")
        .after([](MoveWorld& world) {
          world.session.multi_user.Add_to_Groups.value = 1;
          world.directory.before = test::fail_at("Add", 1, platform::ads_error::kAccessDenied);
        }),
    stays("the user cannot be read", "RED  Error Getting ")
        .logging({"Error Getting Users Details, Check PDC/Network Connection\nError Number: "})
        .after([](MoveWorld& world) {
          world.directory.before = [path = world.path_of("jo")](std::string_view operation,
                                                                std::string_view on) {
            if (operation == "GetObject" && base::equals_fold(on, path))
              base::raise(platform::ads_error::kServerDown, "no");
          };
        })};

class MoveEnds : public testing::TestWithParam<DomainKind> {};
INSTANTIATE_TEST_SUITE_P(Kinds, MoveEnds, testing::Values(DomainKind::kNative, DomainKind::kNt),
                         test::kind_name);

TEST_P(MoveEnds, AFailureLeavesTheSourceCompleteAndIsReported) {
  for (const MoveCase& one : kMoveCases) {
    SCOPED_TRACE(one.name);
    MoveWorld world(GetParam());
    world.start_at_own_shares(one.data);
    if (one.prepare)
      one.prepare(world);
    if (GetParam() == DomainKind::kNative && world.is_foreseeable()) {
      const Names trees[] = {world.tree("FS1/D"), world.tree("FS2/D")};
      EXPECT_EQ(world.rehearse().second, one.outcome);
      EXPECT_EQ(world.tree("FS1/D"), trees[0]);
      EXPECT_EQ(world.tree("FS2/D"), trees[1]);
      EXPECT_EQ(world.property("jo", "HomeDirectory"), kOldHome);
    }
    EXPECT_EQ(world.move(), one.outcome);
    world.directory.before = {};
    EXPECT_EQ(world.tree("FS1/D"), one.old_tree);
    EXPECT_EQ(world.tree("FS2/D"), one.new_tree);
    EXPECT_EQ(world.shares("FS1"), one.old_shares);
    EXPECT_EQ(world.property("jo", "HomeDirectory"), one.outcome == kNotMoved ? kOldHome : kNewHome);
    const std::vector<std::string> rows = world.log_tab();
    EXPECT_EQ(rows.empty(), one.row.empty());
    EXPECT_THAT(rows.empty() ? std::string() : rows.back(), HasSubstr(one.row));
    for (const std::string& text : one.log)
      EXPECT_THAT(world.log(), HasSubstr(text));
  }
}

}  // namespace
}  // namespace twk::lifecycle
