// JetSamples.h: small databases for the tests of the embedded engine.
#pragma once
#include "jet/JetDatabase.h"
#include "jet/PageFile.h"
#include "store/SavedEmails.h"
#include "tests/support/MemoryFiles.h"

using Rows = std::vector<std::vector<Text>>;
inline const Text kSavedPath = u"saved.mdb";
inline constexpr double kSampleDate = 39171.5;
// Of a new file: what describes the table, and its maps. Behind them is what was added, in that order.
inline constexpr jet::PageNumber kDefinition = 16, kMaps = 17;

inline void CreateSaved(MemoryFiles& files)
{
    CreateJetDatabase(files, kSavedPath, kCreateSaved, kSampleDate);
}

// Of the current row.
inline const Text& Value(Recordset& rows, const Text& column)
{
    return rows.Field(rows.Column(column));
}

inline void AddRow(Database& database, const std::vector<Text>& row)
{
    const auto rows = database.OpenRecordset(u"SELECT * FROM saved");
    rows->AddNew();
    std::size_t place = 0;
    for (const char16_t* const column : {u"efolder", u"esubject", u"ecrc"})
        rows->SetField(rows->Column(column), row.at(place++));
    rows->Update();
}

inline Rows RowsOf(Database& database, const Text& sql = u"SELECT * FROM saved")
{
    Rows found;
    const auto rows = database.OpenRecordset(sql);
    for (; !rows->AtEnd(); rows->MoveNext())
        found.push_back({Value(*rows, u"efolder"), Value(*rows, u"esubject"), Value(*rows, u"ecrc")});
    return found;
}

// A file in memory and a connection to it.
struct SavedSample {
    SavedSample()
    {
        CreateSaved(files);
        Open();
    }
    explicit SavedSample(const MemoryImage& image, OpenMode mode = OpenMode::exclusive)
    {
        Image() = image;
        Open(mode);
    }

    MemoryImage& Image() { return files[kSavedPath]; }
    void Open(OpenMode mode = OpenMode::exclusive)
    {
        database.reset();
        database = OpenJetDatabase(files, kSavedPath, mode);
    }
    void Add(const Rows& rows)
    {
        for (const auto& row : rows) AddRow(*database, row);
    }
    void Delete(const Text& crc)
    {
        database->OpenRecordset(u"SELECT * FROM saved WHERE ecrc='" + crc + u"'")->Delete();
    }

    MemoryFiles files;
    std::unique_ptr<JetDatabase> database;
};

// Rows with the CRCs 0, 1, 2 and so on, 17 to a page; every third subject has a place outside its row.
inline const Text kLongFolder = u"Folder " + Text(200, u'x');
inline MemoryImage WithRows(int count)
{
    SavedSample sample;
    for (int i = 0; i < count; ++i)
        AddRow(*sample.database,
               {kLongFolder, Text(static_cast<std::size_t>(i % 3) * 100, u's'), DecimalText(i)});
    return sample.Image();
}

// The pages as they are, without a database on top.
inline jet::PageFile OpenPages(MemoryFiles& files)
{
    FileError error = FileError::none;
    return {files.Open(kSavedPath, OpenMode::exclusive, error), OpenMode::exclusive};
}
