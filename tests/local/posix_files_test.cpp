#include "local/posix_files.hpp"

#include <fcntl.h>
#include <sys/stat.h>

#include <chrono>
#include <thread>

#include "support/number_of.hpp"
#include "support/other_process.hpp"
#include "support/temporary_directory.hpp"

namespace twk::local {
namespace {

using test::get_file;
using test::number_of;
using test::OtherProcess;
using test::put_file;

mode_t mode_of(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
}

class PosixFilesTest : public testing::Test {
 protected:
  std::string at(std::string_view name) { return folder_ / name; }
  std::vector<std::string> names() {
    std::vector<std::string> names;
    for (const platform::FileEntry& entry : files_.list(folder_.path().string()))
      names.push_back(entry.name);
    return names;
  }

  test::TemporaryDirectory folder_;
  PosixFiles files_;
};

TEST_F(PosixFilesTest, BackslashesSeparateAsSlashesDo) {
  files_.make_directory(at("db\\"));
  files_.write(at("db\\Log.txt"), "started");
  EXPECT_EQ(get_file(at("db/Log.txt")), "started");
  EXPECT_TRUE(files_.is_directory(at("db\\")));
  EXPECT_FALSE(files_.is_directory(at("db\\Log.txt")));
  EXPECT_FALSE(files_.exists(at("db\\Log.txt\\")));
}

TEST_F(PosixFilesTest, LastPartFoldsToTheExistingFile) {
  put_file(at("Site.dat"), "one");
  put_file(at("Größe.txt"), "two");
  EXPECT_EQ(files_.read(at("SITE.DAT")), "one");
  EXPECT_EQ(files_.read(at("GRÖßE.TXT")), "two");
  files_.write(at("site.DAT"), "changed");
  files_.open_append(at("sITE.dat"), false)->write("!");
  EXPECT_EQ(get_file(at("Site.dat")), "changed!");
  files_.remove(at("GRÖßE.txt"));
  EXPECT_EQ(names(), std::vector<std::string>{"Site.dat"});
}

TEST_F(PosixFilesTest, ExactSpellingComesBeforeAnotherCase) {
  put_file(at("A.txt"), "upper");
  put_file(at("a.txt"), "lower");
  EXPECT_EQ(files_.read(at("a.txt")), "lower");
  EXPECT_EQ(files_.read(at("A.TXT")), "upper");
}

TEST_F(PosixFilesTest, ListIsSortedAndDistinguishesFoldersFromLinksToThem) {
  put_file(at("b.txt"), "");
  files_.make_directory(at("c"));
  put_file(at("a.txt"), "");
  std::filesystem::create_directory_symlink(at("c"), at("d"));
  const auto entries = files_.list(folder_.path().string());
  ASSERT_EQ(names(), (std::vector<std::string>{"a.txt", "b.txt", "c", "d"}));
  EXPECT_FALSE(entries[0].directory);
  EXPECT_TRUE(entries[2].directory);
  EXPECT_FALSE(entries[3].directory);
}

TEST_F(PosixFilesTest, EachFailureHasItsNumber) {
  put_file(at("plain"), "x");
  files_.make_directory(at("folder"));
  const std::string long_name(300, 'n');
  const struct {
    std::string situation;
    std::function<void()> step;
    std::uint32_t number;
  } cases[] = {
      {"empty path", [&] { files_.read(""); }, 52},
      {"NUL in the path", [&] { files_.write(at("a") + std::string(1, '\0') + "b", "x"); }, 52},
      {"name too long", [&] { files_.write(at(long_name), "x"); }, 52},
      {"missing file", [&] { files_.read(at("none")); }, 53},
      {"missing file to remove", [&] { files_.remove(at("none")); }, 53},
      {"missing file opened for reading", [&] { files_.open_random_read(at("none")); }, 53},
      {"missing folder on the way", [&] { files_.read(at("none/file")); }, 76},
      {"missing folder to write into", [&] { files_.write(at("none/file"), "x"); }, 76},
      {"missing folder to append in", [&] { files_.open_append(at("none/file"), false); }, 76},
      {"missing folder listed", [&] { files_.list(at("none")); }, 76},
      {"file in the place of a folder", [&] { files_.write(at("plain/below"), "x"); }, 76},
      {"missing parent of a folder", [&] { files_.make_directory(at("none/folder")); }, 76},
      {"network path", [&] { files_.read("\\\\FS1\\D$\\a.txt"); }, 76},
      {"folder made twice", [&] { files_.make_directory(at("FOLDER")); }, 75},
      {"folder read as a file", [&] { files_.read(at("folder")); }, 75},
      {"folder written as a file", [&] { files_.write(at("folder"), "x"); }, 75},
      {"folder removed as a file", [&] { files_.remove(at("folder")); }, 75},
      {"folder opened for records", [&] { files_.open_random_read(at("folder")); }, 75},
      {"device written as a file", [&] { files_.write("/dev/null", "x"); }, 75},
      {"position out of range", [&] { files_.open_random(at("plain"))->write(~0ULL, "x"); }, 75},
  };
  for (const auto& one : cases)
    EXPECT_EQ(number_of(one.step), one.number) << one.situation;
  EXPECT_EQ(names(), (std::vector<std::string>{"folder", "plain"}));
  EXPECT_EQ(get_file(at("plain")), "x");
}

TEST_F(PosixFilesTest, MessageSaysWhatWasTriedOnWhat) {
  EXPECT_EQ(test::complaint_of([&] { files_.read(at("None.dat")); }),
            "cannot open " + at("None.dat") + ": No such file or directory");
}

TEST_F(PosixFilesTest, WhatCannotBeReadDoesNotExist) {
  put_file(at("plain"), "x");
  for (const std::string& path :
       {std::string(), std::string("a\0b", 3), at("plain/below"), std::string("\\\\FS1\\x")}) {
    EXPECT_FALSE(files_.exists(path));
    EXPECT_FALSE(files_.is_directory(path));
  }
}

TEST_F(PosixFilesTest, WriteReplacesTheFileInsteadOfChangingIt) {
  put_file(at("a.txt"), "old");
  std::ifstream reader(at("a.txt"));
  files_.write(at("a.txt"), "new, and longer");
  std::string seen;
  std::getline(reader, seen);
  EXPECT_EQ(seen, "old");
  EXPECT_EQ(get_file(at("a.txt")), "new, and longer");
  EXPECT_EQ(names(), std::vector<std::string>{"a.txt"});
}

TEST_F(PosixFilesTest, ReaderNeverSeesAPartOfAWrite) {
  constexpr std::size_t kSize = 300000;
  put_file(at("whole"), std::string(kSize, 'a'));
  OtherProcess writer([&] {
    for (int i = 0; i < 40; ++i)
      files_.write(at("whole"), std::string(kSize, i % 2 == 0 ? 'b' : 'a'));
    return 0;
  });
  for (int i = 0; i < 200; ++i) {
    const std::string seen = files_.read(at("whole"));
    ASSERT_EQ(seen, std::string(kSize, seen.front()));
  }
  EXPECT_EQ(writer.exit_code(), 0);
}

TEST_F(PosixFilesTest, WriteLeavesTheFileToItsOwner) {
  put_file(at("old"), "");
  // Only root can change the owner of a file; for others it is their own before and after.
  const bool given = geteuid() != 0 || chown(at("old").c_str(), 4711, 4712) == 0;
  ASSERT_TRUE(given);
  struct stat before {};
  ASSERT_EQ(stat(at("old").c_str(), &before), 0);
  files_.write(at("old"), "x");
  struct stat after {};
  ASSERT_EQ(stat(at("old").c_str(), &after), 0);
  EXPECT_EQ(after.st_uid, before.st_uid);
  EXPECT_EQ(after.st_gid, before.st_gid);
}

TEST_F(PosixFilesTest, WriteKeepsTheModeAndLetsTheGroupUseNewFiles) {
  put_file(at("old"), "");
  chmod(at("old").c_str(), 0604);
  const mode_t before = umask(0022);
  files_.write(at("old"), "x");
  files_.write(at("new"), "x");
  umask(before);
  EXPECT_EQ(mode_of(at("old")), 0604U);
  EXPECT_EQ(mode_of(at("new")), 0640U);
}

TEST_F(PosixFilesTest, RemovingAndExaminingUseTheLinkItself) {
  files_.make_directory(at("real"));
  put_file(at("real/data"), "text");
  std::filesystem::create_directory_symlink(at("real"), at("folder"));
  std::filesystem::create_symlink(at("real/data"), at("file"));
  for (const char* const name : {"folder", "folder/", "file"}) {
    EXPECT_TRUE(files_.status(at(name)).link) << name;
    EXPECT_FALSE(files_.status(at(name)).directory) << name;
    EXPECT_EQ(number_of([&] { files_.remove_directory(at(name)); }), 75U) << name;
  }
  EXPECT_TRUE(files_.list(folder_.path().string())[1].link);
  files_.remove(at("folder"));
  files_.remove(at("file"));
  EXPECT_EQ(names(), std::vector<std::string>{"real"});
  EXPECT_EQ(get_file(at("real/data")), "text");
}

TEST_F(PosixFilesTest, CopyNeitherReadsNorWritesThroughALink) {
  put_file(at("outside"), "outside");
  put_file(at("file"), "text");
  std::filesystem::create_symlink(at("outside"), at("link"));
  std::filesystem::create_symlink(at("nowhere"), at("dangling"));
  EXPECT_EQ(number_of([&] { files_.copy_file(at("link"), at("copy"), false, {}); }), 75U);
  for (const char* const name : {"link", "dangling"})
    EXPECT_EQ(number_of([&] { files_.copy_file(at("file"), at(name), false, {}); }), 58U) << name;
  EXPECT_TRUE(files_.copy_file(at("file"), at("link"), true, {}));
  EXPECT_EQ(get_file(at("outside")), "outside");
  EXPECT_EQ(get_file(at("link")), "text");
  EXPECT_EQ(names(), (std::vector<std::string>{"dangling", "file", "link", "outside"}));
}

TEST_F(PosixFilesTest, FileThatChangesWhileItIsCopiedIsNotCopied) {
  put_file(at("log"), std::string(3'000'000, 'x'));
  EXPECT_EQ(number_of([&] {
              files_.copy_file(at("log"), at("copy"), false, [&](std::uint64_t) {
                files_.open_append(at("log"), false)->write("more");
                return true;
              });
            }),
            75U);
  EXPECT_EQ(names(), std::vector<std::string>{"log"});
}

TEST_F(PosixFilesTest, WhatAFellowPutUnderANameLeadsNowhere) {
  put_file(at("mine"), "secret");
  std::filesystem::create_symlink(at("mine"), at("link"));
  ASSERT_EQ(lchown(at("link").c_str(), 4242, 4242), 0) << "this test needs the right to give files away";
  std::filesystem::create_hard_link(at("mine"), at("hard"));
  for (const char* const name : {"link", "hard"}) {
    EXPECT_EQ(number_of([&] { files_.open_append(at(name), true); }), 70U) << name;
    EXPECT_EQ(number_of([&] { files_.open_append(at(name), false); }), 70U) << name;
    EXPECT_EQ(number_of([&] { files_.open_random(at(name)); }), 70U) << name;
    EXPECT_EQ(number_of([&] { files_.open_random_read(at(name)); }), 70U) << name;
  }
  EXPECT_EQ(number_of([&] { files_.read(at("link")); }), 70U);
  EXPECT_EQ(number_of([&] { files_.write(at("link"), "x"); }), 70U);
  EXPECT_EQ(get_file(at("mine")), "secret");
}

TEST_F(PosixFilesTest, WriteFollowsALinkAndLeavesItThere) {
  files_.make_directory(at("real"));
  put_file(at("real/data"), "old");
  std::filesystem::create_symlink("real/data", at("link"));
  std::filesystem::create_symlink("real/later", at("dangling"));
  std::filesystem::create_symlink("loop", at("loop"));
  files_.write(at("link"), "new");
  files_.write(at("dangling"), "made");
  EXPECT_TRUE(std::filesystem::is_symlink(at("link")));
  EXPECT_EQ(get_file(at("real/data")), "new");
  EXPECT_EQ(get_file(at("real/later")), "made");
  EXPECT_EQ(number_of([&] { files_.write(at("loop"), "x"); }), 75U);
}

TEST_F(PosixFilesTest, AnotherUserMayNotWriteWhatIsNotOpenToHim) {
  put_file(at("owned"), "kept");
  chmod(at("owned").c_str(), 0644);
  chmod(folder_.path().c_str(), 0755);
  OtherProcess stranger([&] {
    test::become_ordinary_user();
    chmod(folder_.path().c_str(), 0555);  // takes effect where the tests run without privileges
    const bool refused = number_of([&] { files_.write(at("new"), "x"); }) == 70 &&
                         number_of([&] { files_.make_directory(at("sub")); }) == 70 &&
                         number_of([&] { files_.open_append(at("log"), false); }) == 70;
    chmod(folder_.path().c_str(), 0755);
    return refused ? 0 : 3;
  });
  EXPECT_EQ(stranger.exit_code(), 0);
  EXPECT_EQ(get_file(at("owned")), "kept");
}

TEST_F(PosixFilesTest, FullDiskLeavesTheOldContents) {
  put_file(at("whole"), "old");
  put_file(at("records"), std::string(4000, 'r'));
  OtherProcess limited([&] {
    test::limit_file_size(4096);
    const std::string much(10000, 'x');
    if (number_of([&] { files_.write(at("whole"), much); }) != 61)
      return 3;
    if (number_of([&] { files_.open_append(at("log"), false)->write(much); }) != 61)
      return 4;
    if (number_of([&] { files_.open_random(at("records"))->write(4000, std::string(200, 'x')); }) != 61)
      return 5;
    return 0;
  });
  EXPECT_EQ(limited.exit_code(), 0);
  EXPECT_EQ(get_file(at("whole")), "old");
  EXPECT_EQ(get_file(at("records")), std::string(4000, 'r'));
  EXPECT_EQ(names(), (std::vector<std::string>{"log", "records", "whole"}));
}

TEST_F(PosixFilesTest, ReadAcceptsAPipe) {
  ASSERT_EQ(mkfifo(at("pipe").c_str(), 0600), 0);
  EXPECT_EQ(files_.read(at("pipe")), "") << "nobody writes, so nothing is waited for";
  const int keep_open = open(at("pipe").c_str(), O_RDWR | O_CLOEXEC);
  const std::string bytes(100000, 'p');
  std::thread writer([&] {
    std::ofstream out(at("pipe"));
    out << bytes << std::flush;  // more than a pipe holds, so this ends once the reader is reading
    close(keep_open);
  });
  EXPECT_EQ(files_.read(at("pipe")), bytes);
  writer.join();
}

TEST_F(PosixFilesTest, AppendersOfTwoProcessesDoNotMixTheirPieces) {
  constexpr int kPieces = 500;
  const auto append = [&](char letter) {
    const auto file = files_.open_append(at("log"), false);
    for (int i = 0; i < kPieces; ++i)
      file->write(std::string(99, letter) + "\n");
    return 0;
  };
  OtherProcess other([&] { return append('b'); });
  append('a');
  ASSERT_EQ(other.exit_code(), 0);
  std::ifstream log(at("log"));
  std::map<std::string, int> lines;
  for (std::string line; std::getline(log, line);)
    ++lines[line];
  EXPECT_EQ(lines,
            (std::map<std::string, int>{{std::string(99, 'a'), kPieces}, {std::string(99, 'b'), kPieces}}));
}

TEST_F(PosixFilesTest, AppendEmptiesTheFileOnlyWhenAsked) {
  put_file(at("log"), "old ");
  files_.open_append(at("log"), false)->write("more");
  EXPECT_EQ(get_file(at("log")), "old more");
  files_.open_append(at("log"), true)->write("fresh");
  EXPECT_EQ(get_file(at("log")), "fresh");
}

TEST_F(PosixFilesTest, RecordsAreReadAndWrittenAtTheirPlace) {
  const auto file = files_.open_random(at("Site.dat"));
  file->write(8, "second..");
  file->write(0, "first...");
  EXPECT_EQ(file->size(), 16U);
  EXPECT_EQ(file->read(8, 8), "second..");
  EXPECT_EQ(file->read(12, 1'000'000'000'000), "nd..");
  EXPECT_EQ(file->read(16, 8), "");
  EXPECT_EQ(files_.open_random_read(at("SITE.DAT"))->read(0, 5), "first");
  EXPECT_EQ(number_of([&] { files_.open_random_read(at("Site.dat"))->write(0, "x"); }), 75U);
}

TEST_F(PosixFilesTest, TwoProcessesCountUnderALockWithoutLosingOne) {
  constexpr int kRounds = 200;
  const auto count = [&] {
    const auto file = files_.open_random(at("counter"));
    for (int i = 0; i < kRounds; ++i) {
      file->lock(100, 10);
      const std::string text = file->read(0, 20);
      file->write(0, std::to_string(text.empty() ? 1 : std::stoi(text) + 1));
      file->unlock(100, 10);
    }
    return 0;
  };
  OtherProcess other(count);
  count();
  ASSERT_EQ(other.exit_code(), 0);
  EXPECT_EQ(get_file(at("counter")), std::to_string(2 * kRounds));
}

TEST_F(PosixFilesTest, SecondSessionOfThisProcessWaitsForALockAndThenGivesUp) {
  const auto first = files_.open_random(at("records"));
  const auto second = files_.open_random(at("records"));
  first->lock(0, 10);
  second->lock(10, 10);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(number_of([&] { second->lock(5, 10); }), 70U);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));

  std::thread release([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    first->unlock(0, 10);
  });
  EXPECT_EQ(number_of([&] { second->lock(0, 10); }), 0U);
  release.join();
}

TEST_F(PosixFilesTest, LockEndsWithItsFile) {
  files_.open_random(at("records"))->lock(0, 10);
  EXPECT_EQ(number_of([&] { files_.open_random(at("records"))->lock(0, 10); }), 0U);
  EXPECT_EQ(number_of([&] { files_.open_random_read(at("records"))->lock(0, 10); }), 0U);
}

}  // namespace
}  // namespace twk::local
