#pragma once

#include <iterator>

#include "contract/world.hpp"

namespace twk::contract {

class FilesContract : public Contract {
 protected:
  std::string drive() const { return "\\\\" + world_->file_server() + "\\D$"; }

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
  store(server->Create("fileshare", "Common"), {{"Path", "D:\\Users"}});
  files_.make_directory("\\\\" + world_->file_server() + "\\common\\jo");
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

TEST_P(FilesContract, RenamedFileIsThereUnderItsNewNameWhichMayBeInUseOnlyWhenToldTo) {
  const std::string share = drive() + "\\Users\\";
  files_.write(share + "First.dat", "new");
  files_.rename(share + "FIRST.DAT", share + "New.dat");
  EXPECT_FALSE(files_.exists(share + "First.dat"));
  EXPECT_EQ(number_of([&] { files_.rename(share + "None.dat", share + "X.dat"); }),
            base::error::kFileNotFound);
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

TEST_P(FilesContract, StatusTellsWhatStandsUnderAName) {
  const std::string users = drive() + "\\Users";
  files_.make_directory(users + "\\Jo");
  files_.write(users + "\\Jo\\Note.txt", "text");
  const platform::FileEntry folder = files_.status(users + "\\jo\\");
  EXPECT_EQ(folder.name, "Jo");
  EXPECT_TRUE(folder.directory && !folder.link);
  const platform::FileEntry note = files_.status(users + "\\jo\\note.TXT");
  EXPECT_EQ(note.name, "Note.txt");
  EXPECT_FALSE(note.directory || note.link);
  EXPECT_EQ(note.size, 4U);
  const platform::FileEntry listed = files_.list(users + "\\Jo").at(0);
  EXPECT_EQ(listed.name + std::to_string(listed.size), "Note.txt4");
  EXPECT_EQ(listed.modified, note.modified);
  EXPECT_EQ(number_of([&] { files_.status(users + "\\none"); }), base::error::kFileNotFound);
  EXPECT_EQ(number_of([&] { files_.status(users + "\\none\\x"); }), base::error::kPathNotFound);
}

TEST_P(FilesContract, OnlyAnEmptyDirectoryIsTakenAway) {
  const std::string home = drive() + "\\Users\\jo";
  files_.make_directory(home);
  files_.write(home + "\\Note.txt", "text");
  EXPECT_EQ(number_of([&] { files_.remove_directory(home); }), base::error::kPathFileAccess);
  EXPECT_EQ(number_of([&] { files_.remove_directory(home + "\\Note.txt"); }), base::error::kPathFileAccess);
  EXPECT_EQ(number_of([&] { files_.remove(home); }), base::error::kPathFileAccess);
  EXPECT_TRUE(files_.exists(home + "\\Note.txt"));
  files_.remove(home + "\\Note.txt");
  files_.remove_directory(home + "\\");
  EXPECT_FALSE(files_.exists(home));
  EXPECT_NE(number_of([&] { files_.remove_directory(home); }), 0U);
}

TEST_P(FilesContract, DirectoryThatAShareHoldsIsNeitherRenamedNorTakenAway) {
  const std::string home = drive() + "\\Users\\jo";
  files_.make_directory(home);
  store(world_->directory()
            .GetObject("WinNT://" + world_->file_server() + "/lanmanserver")
            ->Create("fileshare", "jo$"),
        {{"Path", "D:\\Users\\jo"}});
  if (!world_->server_guards_shared_folders())
    return;
  EXPECT_EQ(number_of([&] { files_.remove_directory(home); }), base::error::kPathFileAccess);
  EXPECT_EQ(number_of([&] { files_.rename(home, drive() + "\\Users\\ann"); }), base::error::kPathFileAccess);
  EXPECT_TRUE(files_.is_directory(home));
}

TEST_P(FilesContract, CopyHoldsTheBytesAndTheTimeOfTheFile) {
  const std::string users = drive() + "\\Users\\";
  std::string bytes(3'000'001, 'x');
  bytes[1'500'000] = '\0';
  files_.write(users + "Old.dat", bytes);
  std::uint64_t told = 0;
  EXPECT_TRUE(files_.copy_file(users + "old.DAT", users + "New.dat", false, [&](std::uint64_t done) {
    EXPECT_GE(done, told);
    told = done;
    return true;
  }));
  EXPECT_EQ(told, bytes.size());
  EXPECT_TRUE(files_.read(users + "New.dat") == bytes);
  EXPECT_EQ(files_.status(users + "New.dat").modified, files_.status(users + "Old.dat").modified);
  files_.write(users + "Empty", "");
  EXPECT_TRUE(files_.copy_file(users + "Empty", users + "Empty2", false, {}));
  EXPECT_EQ(files_.status(users + "Empty2").size, 0U);
}

TEST_P(FilesContract, CopyTakesANameThatIsInUseOnlyWhenToldTo) {
  const std::string users = drive() + "\\Users\\";
  files_.write(users + "Old.dat", "new");
  files_.write(users + "There.dat", "there before");
  EXPECT_EQ(number_of([&] { files_.copy_file(users + "Old.dat", users + "THERE.dat", false, {}); }),
            base::error::kFileExists);
  EXPECT_EQ(files_.read(users + "There.dat"), "there before");
  EXPECT_TRUE(files_.copy_file(users + "Old.dat", users + "THERE.dat", true, {}));
  EXPECT_EQ(files_.read(users + "There.dat"), "new");
  EXPECT_EQ(files_.list(users).size(), 2U);
}

TEST_P(FilesContract, CopyTouchesNoOtherFileWhateverItIsCalled) {
  const std::string users = drive() + "\\Users\\";
  const char* const names[] = {"a", "a.copying", "a.new", "a.tmp", "a~"};
  for (const char* const name : names)
    files_.write(users + name, std::string("of ") + name);
  files_.make_directory(users + "New");
  for (auto name = std::rbegin(names); name != std::rend(names); ++name)
    files_.copy_file(users + *name, users + "New\\" + *name, false, {});
  files_.write(users + "New\\a", "written anew");
  files_.copy_file(users + "a", users + "New\\a", true, {});
  for (const char* const name : names)
    EXPECT_EQ(files_.read(users + "New\\" + name), std::string("of ") + name);
  EXPECT_EQ(files_.list(users + "New").size(), std::size(names));
}

TEST_P(FilesContract, NothingStaysOfACopyThatFailedOrWasGivenUp) {
  const std::string users = drive() + "\\Users\\";
  files_.write(users + "Old.dat", std::string(3'000'000, 'x'));
  files_.make_directory(users + "Folder");
  EXPECT_FALSE(
      files_.copy_file(users + "Old.dat", users + "New.dat", false, [](std::uint64_t) { return false; }));
  EXPECT_EQ(number_of([&] { files_.copy_file(users + "None", users + "New.dat", false, {}); }),
            base::error::kFileNotFound);
  EXPECT_EQ(number_of([&] { files_.copy_file(users + "Folder", users + "New.dat", false, {}); }),
            base::error::kPathFileAccess);
  EXPECT_NE(number_of([&] { files_.copy_file(users + "Old.dat", users + "No\\New.dat", false, {}); }), 0U);
  EXPECT_FALSE(files_.exists(users + "New.dat"));
  EXPECT_EQ(files_.list(users).size(), 2U);
}

TEST_P(FilesContract, DirectoryIsRenamedWithAllItHolds) {
  const std::string users = drive() + "\\Users\\";
  files_.make_directory(users + "jo");
  files_.make_directory(users + "jo\\Mail");
  files_.write(users + "jo\\Mail\\Note.txt", "text");
  files_.make_directory(users + "taken");
  files_.write(users + "taken\\x", "x");
  EXPECT_EQ(number_of([&] { files_.rename(users + "jo", users + "Taken"); }), base::error::kFileExists);
  files_.rename(users + "JO", users + "ann");
  EXPECT_FALSE(files_.exists(users + "jo"));
  EXPECT_EQ(files_.read(users + "ann\\Mail\\Note.txt"), "text");
  files_.rename(users + "ann", users + "taken\\ann");
  EXPECT_EQ(files_.read(users + "taken\\ann\\mail\\note.txt"), "text");
  EXPECT_NE(number_of([&] { files_.rename(users + "none", users + "other"); }), 0U);
}

}  // namespace twk::contract
