// The folder that an import writes: which files there are its own, and how they change together.
//
// import.json lists the files of an import and the hashes of their bytes (origin_file.h). Those are
// replaced, and removed where a later import has none of their name. Others, and those that
// somebody has changed since, are not touched without --force. It is for mistakes, not against
// forgery.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "commands/origin_file.h"

namespace kvx {

// A file to be written.
struct FileToWrite {
  std::string name;  // UTF-8, without folder
  std::string text;
};

// The name of the folder where the user names none: that of the deck without its extension, in the
// current folder. "" where there is no such name.
std::string NameImportFolder(const std::string& deck);

// The files of an earlier import in the folder, as its import.json has them; none where there is
// none. folder: any, also one that is not there.
std::vector<ImportedFile> ListImportedFiles(const std::filesystem::path& folder);

// What may not be overwritten.
struct ProtectedFiles {
  std::vector<std::filesystem::path> sources;  // what has been read, absolute: in no case
  bool force = false;                          // all others may be
  bool isFolder = true;  // of -o; else a file of which the user chose the name
};

// Throws a Stop where `name` in the folder is a file that no import has made, or that has been
// changed since, or that the import reads. earlier: of ListImportedFiles.
void CheckReplaceable(const std::filesystem::path& folder, const std::string& name,
                      const std::vector<ImportedFile>& earlier, const ProtectedFiles& protects);

// What has become of the files that were in the folder.
struct ImportWriting {
  std::vector<std::string> removed;  // files of the earlier import, and stale results
  std::vector<std::string> left;     // result files of an earlier model that nobody removes
};

// Writes all files, together: whatever fails, those of before stay. Then removes those of the
// earlier import that the new one does not have and that nobody has changed, the renumber.json of
// another model, and stale results.
// folder: is made where it is not there. Throws a Stop where something cannot be written, and,
// without force, where a case file that stays names a file that would go.
void WriteImportFiles(const std::filesystem::path& folder, const std::vector<FileToWrite>& files,
                      const ProtectedFiles& protects, ImportWriting& writing);

// Writes a single file, whole or not at all, under the rules above. place: UTF-8, as the user named
// it. Changes the current folder to that of the file.
void WriteNewFile(const std::string& place, const std::string& text,
                  const ProtectedFiles& protects);

}  // namespace kvx
