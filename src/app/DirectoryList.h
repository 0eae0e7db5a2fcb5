// DirectoryList.h: what the folder list shows for a directory: the way down to it and what lies in it.
#pragma once
#include "text/Text.h"

#include <vector>

// One line of the list; opening it goes to its path.
struct DirectoryLine {
    Text label; // the name, indented by its depth
    Text path;
};

// With a single separator behind a drive's root ("C:\") and none behind anything else; "/" becomes "\".
Text NormalDirectoryPath(TextView path);

// Whether it names one place whatever the program's current folder is: "C:\Mail" or "\\server\share", in
// the form of NormalDirectoryPath. "Mail", "\Mail" and "C:Mail" do not.
bool IsFullPath(TextView path);

// The drive's root, each directory on the way, the directory itself, then its sub-directories. A path on a
// server begins with its share ("\\server\share").
std::vector<DirectoryLine> DirectoryLines(TextView path, const std::vector<Text>& subdirectories);

// Place of the directory itself among these lines.
std::size_t OwnLine(const std::vector<DirectoryLine>& lines, std::size_t subdirectoryCount);

Text PathInDirectory(const Text& directory, TextView name); // one separator between them

// "C:" for "C:\Mail"; empty for a path without a drive letter.
Text DriveOf(TextView path);
