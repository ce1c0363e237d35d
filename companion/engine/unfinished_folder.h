// The folder "kvx-unfinished" in which the files of a run are made, beside the places where they
// will stand; and how they get there together.
//
// Files are first moved out of the places into "kvx-unfinished/old", the last one first; then the
// new ones in, the last one last: where it is, all others fit it. What of this has happened can be
// seen from the folders: so it can be taken back where a step fails, and by the next run where the
// process was killed. The folder is removed when the object goes.
//
// A lock keeps other runs out of it.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "engine/file_lock.h"

namespace kvx {

inline constexpr const char* UnfinishedFolderName = "kvx-unfinished";

struct FileToMake {
  std::filesystem::path name;  // as the system takes it
  std::string shown;           // as messages show it, UTF-8
};

// What is made in it and not moved is removed when the object goes.
struct UnfinishedFolder {
  std::string prefix;  // as it precedes the names of the new files, relative as it was given
  std::filesystem::path place;  // where the files will stand, absolute

  std::string shown;           // the place as messages show it
  std::filesystem::path path;  // of the folder itself, absolute; empty: nothing has begun
  std::vector<FileToMake> files;
  FileLock lock;

  UnfinishedFolder() = default;
  ~UnfinishedFolder();
  UnfinishedFolder(const UnfinishedFolder&) = delete;
  UnfinishedFolder& operator=(const UnfinishedFolder&) = delete;
};

// folder: as it precedes file names; empty, or ends with a slash. files: those that will be made;
// a name may lead into a folder that is there, and the maker makes this folder in `prefix`, too.
// unfinished: nothing has begun in it. Takes back or removes what a killed run has left. Throws a
// Stop where the folder cannot be written to, a file's place is taken by a folder or protected
// against writing, or another run is at work.
void BeginUnfinished(const std::string& folder, const std::vector<FileToMake>& files,
                     UnfinishedFolder& unfinished);

// Moves all files to their places; those that were there are gone. Throws a Stop, with all as it
// was before, where a file is missing or cannot be moved. What cannot even be moved back stays in
// "kvx-unfinished/old", and the next run tries it again.
void MoveFiles(UnfinishedFolder& unfinished);

// Removes the folder, as the end of the object does. Does nothing where nothing has begun.
void EndUnfinished(UnfinishedFolder& unfinished);

}  // namespace kvx
