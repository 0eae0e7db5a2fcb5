// JetSamples.h: small databases for the tests of the embedded engine.
#pragma once
#include "jet/JetDatabase.h"
#include "store/SavedEmails.h"
#include "tests/support/MemoryFiles.h"

inline const Text kSavedPath = u"saved.mdb";
inline constexpr double kSampleDate = 39171.5;

inline void CreateSaved(MemoryFiles& files)
{
    CreateJetDatabase(files, kSavedPath, kCreateSaved, kSampleDate);
}

inline void AddRow(Database& database, const std::vector<Text>& row)
{
    const auto rows = database.OpenRecordset(u"SELECT * FROM saved");
    rows->AddNew();
    rows->SetField(u"efolder", row.at(0));
    rows->SetField(u"esubject", row.at(1));
    rows->SetField(u"ecrc", row.at(2));
    rows->Update();
}

inline std::vector<std::vector<Text>> RowsOf(Database& database, const Text& sql = u"SELECT * FROM saved")
{
    std::vector<std::vector<Text>> found;
    const auto rows = database.OpenRecordset(sql);
    for (; !rows->AtEnd(); rows->MoveNext())
        found.push_back({rows->Field(u"efolder"), rows->Field(u"esubject"), rows->Field(u"ecrc")});
    return found;
}
