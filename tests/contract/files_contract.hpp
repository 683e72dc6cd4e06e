#pragma once

#include <gtest/gtest.h>

#include "contract/world.hpp"

namespace twk::contract {

class FilesContract : public testing::TestWithParam<MakeWorld> {
 protected:
  std::string drive() const { return "\\\\" + world_->file_server() + "\\D$"; }

  std::unique_ptr<World> world_ = GetParam()();
  platform::Files& files_ = world_->files();
};

TEST_P(FilesContract, FolderIsMadeOneLevelAtATime) {
  const std::string home = drive() + "\\Users\\jo";
  EXPECT_FALSE(files_.exists(home));
  files_.make_directory(home);
  EXPECT_TRUE(files_.is_directory(home));
  EXPECT_EQ(number_of([&] { files_.make_directory(home); }), base::error::kPathFileAccess);
  EXPECT_EQ(number_of([&] { files_.make_directory(drive() + "\\Missing\\jo"); }), base::error::kPathNotFound);
}

TEST_P(FilesContract, EveryPartOfAPathFoldsCase) {
  files_.make_directory(drive() + "\\Users\\Jo");
  files_.make_directory(drive() + "\\USERS\\jo\\Mail");
  files_.write("\\\\" + world_->file_server() + "\\d$\\users\\JO\\mail\\Note.txt", "text");
  EXPECT_EQ(files_.read(drive() + "\\Users\\Jo\\Mail\\NOTE.TXT"), "text");
  EXPECT_EQ(files_.list(drive() + "\\Users").size(), 1U);
  files_.remove(drive() + "\\Users\\jo\\mail\\note.txt");
  EXPECT_TRUE(files_.list(drive() + "\\Users\\Jo\\Mail").empty());
}

TEST_P(FilesContract, ShareStandsForItsFolder) {
  const platform::ObjectPtr server =
      world_->directory().GetObject("WinNT://" + world_->file_server() + "/lanmanserver");
  const platform::ObjectPtr share = server->Create("fileshare", "Homes");
  share->Put("Path", "D:\\Users");
  share->SetInfo();
  files_.make_directory("\\\\" + world_->file_server() + "\\homes\\jo");
  EXPECT_TRUE(files_.is_directory(drive() + "\\Users\\jo"));
}

TEST_P(FilesContract, PathsThatLeadNowhereAreNotThere) {
  const std::string server = "\\\\" + world_->file_server();
  for (const std::string& path :
       {std::string("\\\\NOWHERE\\D$\\x"), server + "\\NoShare\\x", server + "\\Q$\\x"}) {
    EXPECT_FALSE(files_.exists(path)) << path;
    EXPECT_NE(number_of([&] { files_.make_directory(path); }), 0U) << path;
  }
}

TEST_P(FilesContract, PathCannotLeaveItsDrive) {
  for (const char* const tail : {"\\..\\..\\lab.conf", "\\Users\\..\\..\\..\\x", "/../../x"}) {
    EXPECT_FALSE(files_.exists(drive() + tail)) << tail;
    EXPECT_EQ(number_of([&] { files_.write(drive() + tail, "x"); }), base::error::kPathNotFound) << tail;
  }
}

TEST_P(FilesContract, RenamedFileIsThereUnderItsNewNameAlone) {
  const std::string share = drive() + "\\Users\\";
  files_.write(share + "New.dat", "new");
  files_.rename(share + "NEW.DAT", share + "Now.dat");
  EXPECT_FALSE(files_.exists(share + "New.dat"));
  EXPECT_EQ(files_.read(share + "Now.dat"), "new");
  EXPECT_EQ(number_of([&] { files_.rename(share + "None.dat", share + "X.dat"); }),
            base::error::kFileNotFound);
  EXPECT_FALSE(files_.exists(share + "X.dat"));
}

TEST_P(FilesContract, RenamingTakesANameThatIsInUseOnlyWhenToldTo) {
  const std::string share = drive() + "\\Users\\";
  files_.write(share + "New.dat", "new");
  files_.write(share + "Old.dat", "old");
  EXPECT_EQ(number_of([&] { files_.rename(share + "New.dat", share + "OLD.dat"); }),
            base::error::kFileExists);
  EXPECT_EQ(files_.read(share + "New.dat"), "new");
  EXPECT_EQ(files_.read(share + "Old.dat"), "old");
  files_.rename(share + "New.dat", share + "OLD.dat", true);
  EXPECT_FALSE(files_.exists(share + "New.dat"));
  EXPECT_EQ(files_.read(share + "Old.dat"), "new");
  EXPECT_EQ(files_.list(share).size(), 1U);
}

}  // namespace twk::contract
