// StoreNames.h: what the directories and files of the store folder are called. The mail client's dialog takes
// a path in the ANSI code page only, and no longer one than old Windows calls.
// Fails by: an empty name, where not even its fixed part fits.
#pragma once
#include "platform/CodePage.h"
#include "platform/Files.h"

// Of the mail folder's name, with "_" in place of every character that Windows cannot hold in a name or the
// client's dialog cannot be told; "_" stands behind a device's name ("CON_", "LPT1_.txt"). Never empty.
Text DirectoryNameFor(TextView folderName, CodePage& codePage);

// What the file of an e-mail is named after.
struct EmailFile {
    Text subject;        // as the list shows it
    std::int32_t id = 0; // row of the e-mail
    Text exportFolder;   // ends in a backslash
    bool idOnly = false;
};

// At least four digits of the ID, then "_" and what of the subject a file name may hold, cut so that the
// whole path has at most 259 characters. Empty when not even the ID fits.
Text MakeFileName(const EmailFile& file, CodePage& codePage);
// How much of the file's path is never cut: folder, ID and the "_" behind it.
std::size_t FixedLength(const EmailFile& file);

// Keeps the letters a to z in both cases, digits and -_£%$&!#~@' ; everything else goes.
Text SanitiseFileText(TextView text);

// The path itself, or with the first free suffix before its extension. A path that grows beyond 259
// characters is cut before the suffix, but never to less than its first `fixed` characters: then empty.
Text NextFreeFileName(Files& files, const Text& path, std::size_t fixed);

// "" a b ... y aa ab ... ay ba: Kept: no suffix ends in "z", store folders hold files that were named so.
Text NextLetterSuffix(const Text& suffix);
