// FakeDao.h: a database engine that stands in for DAO inside the test's own process: COM finds it under the
// engine's name, it notes every call with its arguments and can fail any one of them.
#pragma once
#include "text/Text.h"

#include <windows.h>

#include <functional>
#include <oleauto.h>
#include <optional>
#include <string>
#include <utility>
#include <vector>

enum class FailWith { description, deferredDescription, noDescription, plainResult };

// What the objects of one fake engine share.
struct FakeDao {
    // As many as columns; nothing is null. A deleted row has none, and keeps its place.
    using Row = std::vector<std::optional<Text>>;

    std::vector<Text> columns = {u"efolder", u"esubject", u"ecrc"};
    std::vector<std::int32_t> types = {10, 12, 10}, sizes = {255, 0, 8}; // text, memo, text; characters
    bool databaseUpdatable = true, recordsetUpdatable = true;
    std::vector<Row> rows, rowsBefore; // now, and when the transaction began
    std::size_t current = 0;           // in rows
    Row edited;

    std::vector<std::string> calls; // "database.OpenRecordset('SELECT ...')"
    std::size_t failAt = 0;         // the failAt-th call fails, counted from 1
    bool failForGood = false;       // and all later ones
    FailWith failWith = FailWith::description;
    // For a stand-in that works on real files: a file is made, is opened, gets the last of the rows, is
    // copied.
    std::function<void(const Text&path)> made, opened;
    std::function<void(const Row& row)> extended;
    std::function<void(const Text& from, const Text& to)> compacted;
    int liveObjects = 0;

    std::vector<std::string> TakeCalls() { return std::exchange(calls, {}); }
};

// COM for the test, and DAO's names in the registry for as long as this lives.
class FakeRegistry {
public:
    FakeRegistry();
    ~FakeRegistry();
    FakeRegistry(const FakeRegistry&) = delete;
    FakeRegistry& operator=(const FakeRegistry&) = delete;

    static bool DaoIsInstalled(); // the real one, which no test may touch
    void Name(const wchar_t* progId, const wchar_t* classId);
    void Serve(const wchar_t* classId, FakeDao& dao);

private:
    std::vector<std::wstring> named_;
    std::vector<DWORD> served_;
};
