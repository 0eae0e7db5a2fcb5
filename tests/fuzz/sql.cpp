// sql.cpp: folders and subjects of any characters in what the embedded engine is asked for: what was recorded
// is found, under its folder alone.
#include "store/SavedMaintenance.h"
#include "tests/fuzz/Require.h"
#include "tests/support/JetSamples.h"

// A folder, and behind a line end the subject.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::vector<Text> parts = SplitAt(FromUtf8(BytesOf(data, size)), u"\n");
    parts.resize(2);
    const Text &folder = parts[0], &subject = parts[1], crc = u"1A2B";
    SavedSample sample;
    SavedEmails saved{std::move(sample.database)};
    EmailEntry entry;
    entry.Subject = subject;
    entry.Crc = crc;
    try {
        AddSavedEmail(saved, folder, entry);
    } catch (const DatabaseError&) { // too long a folder, or what the format cannot hold
        Require(RowsOf(*saved.database).empty(), "what is refused is not stored");
        return 0;
    }
    Text stored = subject; // but a mark in front of it, which the format takes for its own
    stored.erase(0, stored.find_first_not_of(u'\xFEFF'));
    Require(RowsOf(*saved.database) == Rows{{folder, stored, crc}}, "as it was told");
    Require(IsSaved(saved, crc, folder), "it is found");
    Require(!IsSaved(saved, crc, folder + u"x"), "under no other folder");
    Require(!IsSaved(saved, u"1A2C", folder), "by no other CRC");
    Require(FolderCrcList(saved, folder, u",", [] {}) == u",1A2B,", "its folder lists it");
    return 0;
}
