#include "records/record_file.hpp"

#include <chrono>
#include <thread>

#include "stores/database_files.hpp"
#include "support/other_process.hpp"
#include "support/world.hpp"

namespace twk::records {
namespace {

class RecordFileTest : public test::TestWorld {
 protected:
  RecordFile open() { return RecordFile::open(files, path_, 4); }
  std::string path_ = database / "four.dat";
};

TEST_F(RecordFileTest, RecordsCountFromOne) {
  RecordFile file = open();
  EXPECT_EQ(file.count(), 0);
  EXPECT_EQ(file.append("aaaa"), 1);
  EXPECT_EQ(file.append("bbbb"), 2);
  file.write(1, "cccc");
  EXPECT_EQ(file.read(1), "cccc");
  EXPECT_EQ(test::get_file(path_), "ccccbbbb");
  EXPECT_THROW(file.read(0), base::RuntimeError);
  EXPECT_THROW(file.read(3), base::RuntimeError);
}

TEST_F(RecordFileTest, APartialTailDoesNotCountAndIsOverwritten) {
  test::put_file(path_, "aaaaxy");
  RecordFile file = open();
  EXPECT_EQ(file.count(), 1);
  EXPECT_EQ(file.append("bbbb"), 2);
  EXPECT_EQ(test::get_file(path_), "aaaabbbb");
}

TEST_F(RecordFileTest, AFileThatNoDatabaseReachesIsRefused) {
  test::put_file(path_, "abcdef");
  std::filesystem::resize_file(path_, 3ULL << 30U);
  EXPECT_THROW(static_cast<void>(open().count()), base::RuntimeError);
}

TEST_F(RecordFileTest, ReadingAMissingFileFindsNothingAndMakesNone) {
  RecordFile file = RecordFile::open_read(files, path_, 4);
  EXPECT_EQ(file.count(), 0);
  EXPECT_FALSE(file.search([](std::string_view) { return true; }).found);
  EXPECT_FALSE(files.exists(path_));
}

TEST_F(RecordFileTest, ASearchReturnsWhereItStopped) {
  // More than one block, so that the number continues.
  const int records = 70000;
  test::put_file(path_, std::string(4UL * (records - 1), 'a') + "zzzz");
  RecordFile file = open();
  const auto is = [](std::string_view wanted) {
    return [wanted](std::string_view bytes) { return bytes == wanted; };
  };
  const RecordSearch last = file.search(is("zzzz"));
  EXPECT_TRUE(last.found);
  EXPECT_EQ(last.number, records);
  EXPECT_EQ(file.search(is("aaaa")).number, 1);
  const RecordSearch none = file.search(is("bbbb"));
  EXPECT_FALSE(none.found);
  EXPECT_EQ(none.number, records);
  EXPECT_EQ(none.bytes, "zzzz");
}

TEST_F(RecordFileTest, AWriteWaitsForASessionThatHoldsTheRecord) {
  open().append("aaaa");
  const auto other = files.open_random(path_);
  other->lock(0, 4);
  EXPECT_EQ(open().append("bbbb"), 2);
  std::thread release([&other] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    other->write(0, "cccc");
    other->unlock(0, 4);
  });
  open().write(1, "dddd");
  release.join();
  EXPECT_EQ(test::get_file(path_), "ddddbbbb");
}

TEST_F(RecordFileTest, ARecordGoesIntoTheFileThatTookTheOldOnesPlaceMeanwhile) {
  test::put_file(path_, "aaaabbbb");
  RecordFile appending = open();
  {
    RecordFile compacting = open();
    const RecordFile::NumbersHold held = compacting.hold_numbers();
    files.write(path_, "bbbb");
  }
  EXPECT_EQ(appending.append("cccc"), 2);
  EXPECT_EQ(test::get_file(path_), "bbbbcccc");
}

TEST_F(RecordFileTest, AFullDiskLeavesOnlyWholeRecords) {
  open().append("aaaa");
  test::OtherProcess full([this] {
    test::limit_file_size(6);
    local::PosixFiles own;
    RecordFile::open(own, path_, 4).append("bbbb");
    return 0;
  });
  EXPECT_EQ(full.exit_code(), 1);
  EXPECT_EQ(open().count(), 1);
  EXPECT_EQ(open().append("cccc"), 2);
}

TEST_F(RecordFileTest, DatabaseFilesLieInTheDatabaseDirectory) {
  session.dbpath = "/srv/db\\";
  EXPECT_EQ(stores::database_path(session, "Site.dat"), "/srv/db\\Site.dat");
}

}  // namespace
}  // namespace twk::records
