#include "lifecycle/move_world.hpp"
#include "lifecycle/trees/file_operation.hpp"
#include "session/run_scope.hpp"

namespace twk::lifecycle {
namespace {

/// Each call on a file or an object fails in turn, once and from then on. Nothing may be lost, and the same
/// move, run again, completes the work.
TEST(MoveFaults, NothingIsLostAndASecondTryEndsTheWork) {
  MoveWorld world(DomainKind::kNative);
  world.start_at_own_shares(kMoveData);
  const auto attempt = [&world](bool lasting, int call) {
    SCOPED_TRACE(call);
    world.put_back();
    int calls = 0;
    const auto step = [&](std::string_view what) {
      if (++calls == call || (lasting && calls > call))
        base::raise(base::error::kDiskFull, "no room for " + std::string(what));
    };
    world.files.before = [&](std::string_view path) {
      if (path.starts_with("\\\\"))
        step(path);
    };
    world.directory.before = [&](std::string_view operation, std::string_view) { step(operation); };
    const Moved outcome = world.move();
    world.files.before = {};
    world.directory.before = {};
    Names kept = world.tree("FS1/D");
    const Names fresh = world.tree("FS2/D");
    EXPECT_EQ(world.property("jo", "HomeDirectory"), outcome == kNotMoved ? kOldHome : kNewHome);
    kept.insert(fresh.begin(), fresh.end());
    EXPECT_THAT(kept, testing::IsSupersetOf(kWhole)) << world.log();
    const bool untouched = world.tree("FS1/D") == kWhole;
    EXPECT_TRUE(!untouched || world.shares("FS1") == kOldShares) << world.log();
    EXPECT_TRUE(outcome == kNotMoved || testing::Value(fresh, testing::IsSupersetOf(kWhole))) << world.log();
    EXPECT_EQ(outcome == kMoved, world.log_tab().back().starts_with("GREEN"));
    world.move();
    EXPECT_EQ(world.property("jo", "HomeDirectory"), kNewHome) << world.log();
    EXPECT_EQ(world.tree("FS2/D"), kWhole) << world.log();
    return calls >= call;
  };
  for (const bool lasting : {false, true}) {
    int call = 1;
    while (attempt(lasting, call))
      ++call;
    EXPECT_GT(call, 40);
  }
}

/// Presses Cancel at the n-th turn of the message loop.
class CancellingDialogs final : public platform::Dialogs {
 public:
  platform::Answer MsgBox(std::string_view, platform::Buttons, platform::Icon, std::string_view) override {
    return platform::Answer::kYes;
  }
  std::string InputBox(std::string_view, std::string_view, bool) override { return {}; }
  std::optional<std::string> open_file(std::string_view, std::string_view) override { return {}; }
  void beep() override {}
  void DoEvents() override {
    if (on_events)
      on_events();
  }
  std::function<void()> on_events;
};

TEST(MoveManyFiles, CancelBetweenFilesLeavesTheSourceWhole) {
  CancellingDialogs dialogs;
  test::LabSession world(DomainKind::kNative, "", &dialogs);
  const auto users = world.folder.path() / "servers/FS1/D/Users";
  std::filesystem::create_directories(users / "jo");
  std::filesystem::create_directories(users / "new");
  for (int i = 0; i < 200; ++i)
    test::put_file((users / "jo" / std::to_string(i)).string(), "text");
  world.start();
  test::KeptView view(world.session);
  const session::RunScope scope(world.session, {.silent = true}, view);
  dialogs.on_events = [&] { world.session.run.stopped = view.told.size() >= 2; };
  EXPECT_FALSE(File_Operation(world.session, "\\\\FS1\\D$\\Users\\jo\\*.*", "\\\\FS1\\D$\\Users\\new",
                              FileWork::kMove));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(users / "jo"), {}), 200);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(users / "new"), {}), 64);
  EXPECT_EQ(view.told.back(), "Moving \\\\FS1\\D$\\Users\\jo: 64 of 200 files, 256 bytes of 800 bytes");
}

}  // namespace
}  // namespace twk::lifecycle
