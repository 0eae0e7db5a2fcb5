#include "platform/win32/Dao.h"

#include "platform/win32/Automation.h"
#include "platform/win32/WideText.h"

#include <array>
#include <deque>

namespace {

// The numbers of the engine's type library.
constexpr std::int32_t kUseJet = 2;                                         // dbUseJet, a type of workspace
constexpr std::int32_t kOpenOptions = 2;                                    // not exclusive
constexpr std::int32_t kVersion40 = 64;                                     // dbVersion40
constexpr std::int32_t kFailOnError = 128;                                  // dbFailOnError
constexpr std::int32_t kImplicitCommitSync = 59;                            // dbImplicitCommitSync
constexpr std::int32_t kForceToDisk = 1;                                    // dbForceOSFlush
constexpr std::int32_t kTextColumn = 10, kMemoColumn = 12;                  // dbText, dbMemo
constexpr TextView kGeneralSortOrder = u";LANGID=0x0409;CP=1252;COUNTRY=0"; // dbLangGeneral

// Nothing when it is not installed.
AutomationObject StartEngine()
{
    // 3.6 comes with Windows and writes Jet 4 files; 12.0 comes with later versions of Office and serves
    // where 3.6 is missing or broken. Older ones cannot read Jet 4.
    for (const wchar_t* const name : {L"DAO.DBEngine.36", L"DAO.DBEngine.120"}) {
        CLSID type;
        IDispatch* engine = nullptr;
        if (SUCCEEDED(CLSIDFromProgID(name, &type)) &&
            SUCCEEDED(CoCreateInstance(type, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                                       reinterpret_cast<void**>(&engine))))
            return AutomationObject{engine};
    }
    return {};
}

AutomationObject StartedEngine()
{
    AutomationObject engine = StartEngine();
    if (!engine) throw DatabaseError(u"Data Access Objects (DAO) are not installed");
    return engine;
}

void CloseQuietly(AutomationObject& object) noexcept
try {
    if (object) object.Call(u"Close");
} catch (const std::exception&) { // nobody can do anything about it any more
}

class DaoRecordset final : public Recordset {
public:
    explicit DaoRecordset(AutomationObject rows) : rows_(std::move(rows)) {}
    ~DaoRecordset() override
    {
        columns_.clear();
        CloseQuietly(rows_);
    }

    bool AtBeginning() override { return rows_.Get(u"BOF").ToBool(); }
    bool AtEnd() override { return rows_.Get(u"EOF").ToBool(); }
    void MoveNext() override { rows_.Call(u"MoveNext"); }
    std::int32_t Count() override
    {
        if (AtEnd()) return 0;
        rows_.Call(u"MoveLast"); // rows count only when they have been met
        const std::int32_t count = rows_.Get(u"RecordCount").ToNumber();
        rows_.Call(u"MoveFirst");
        return count;
    }
    // A column's object always tells of the current row.
    std::size_t Column(const Text& name) override
    {
        AutomationObject fields{rows_.Get(u"Fields"), u"Fields"};
        columns_.emplace_back(AutomationObject{fields.Item(name), name}, Text());
        return columns_.size() - 1;
    }
    const Text& Field(std::size_t column) override
    {
        auto& [object, value] = columns_.at(column);
        return value = object.Get(u"Value").ToText();
    }
    void Delete() override { rows_.Call(u"Delete"); }
    void AddNew() override { rows_.Call(u"AddNew"); }
    void SetField(std::size_t column, const Text& value) override
    {
        // Jet refuses empty texts in a column that does not allow zero lengths, which it does not by default;
        // null reads back as empty everywhere, and the embedded engine stores the same.
        columns_.at(column).first.Put(u"Value", value.empty() ? Variant::Null() : Variant{TextView(value)});
    }
    void Update() override { rows_.Call(u"Update"); }

    // Why rows with values in these columns cannot be added; empty: they can.
    Text RefusalOf(const std::vector<ColumnNeed>& needs)
    {
        if (!rows_.Get(u"Updatable").ToBool()) return u"The database engine lets the table be read only";
        for (const ColumnNeed& need : needs) {
            AutomationObject& column = columns_[Column(need.name)].first;
            const std::int32_t type = column.Get(u"Type").ToNumber();
            if (type == kMemoColumn) continue;
            if (type != kTextColumn) return TakesNoText(need.name);
            const auto size = static_cast<unsigned>(column.Get(u"Size").ToNumber());
            if (size < need.characters) return TooNarrow(need, size);
        }
        return {};
    }

private:
    AutomationObject rows_;
    std::deque<std::pair<AutomationObject, Text>> columns_; // and the value that was given last
};

// A transaction. The workspace's object outlives it.
class DaoBatch final : public DeletionBatch {
public:
    explicit DaoBatch(AutomationObject& workspace) : workspace_(workspace) { workspace_.Call(u"BeginTrans"); }
    ~DaoBatch() override
    {
        if (!stored_) Rollback();
    }
    std::int32_t Most() const override { return 4000; } // each may lock two pages, of 9,500 that DAO allows
    void Store() override
    {
        Variant toDisk{kForceToDisk};
        workspace_.Call(u"CommitTrans", {&toDisk, 1});
        stored_ = true;
    }

private:
    void Rollback() noexcept
    try {
        workspace_.Call(u"Rollback");
    } catch (const std::exception&) { // what made it necessary is told already
    }

    AutomationObject& workspace_;
    bool stored_ = false;
};

class DaoDatabase final : public Database {
public:
    explicit DaoDatabase(const Text& path) : engine_(StartedEngine())
    {
        CommitAtOnce();
        std::array<Variant, 4> user = {Variant{u"VBDemoWorkspace"}, Variant{u"admin"}, Variant{u""},
                                       Variant{kUseJet}};
        workspace_ = AutomationObject{engine_.Call(u"CreateWorkspace", user), u"CreateWorkspace"};
        try {
            std::array<Variant, 4> file = {Variant{TextView(path)}, Variant{kOpenOptions}, Variant::Missing(),
                                           Variant::Missing()};
            database_ = AutomationObject{engine_.Call(u"OpenDatabase", file), u"OpenDatabase"};
        } catch (...) {
            CloseQuietly(workspace_);
            throw;
        }
    }
    ~DaoDatabase() override { Close(); }

    // The engine keeps its files in order itself; what it cannot tell is whether our values will fit.
    Readiness PrepareForWriting(const Text& table, const std::vector<ColumnNeed>& needs) override
    {
        const std::unique_ptr<DaoRecordset> rows = Open(u"SELECT * FROM " + table);
        if (!database_.Get(u"Updatable").ToBool()) return {Text(kWriteProtected), {}};
        return {rows->RefusalOf(needs), {}};
    }

    std::unique_ptr<Recordset> OpenRecordset(const Text& sql) override { return Open(sql); }

    std::unique_ptr<DeletionBatch> BeginDeletions() override
    {
        if (!workspace_) throw DatabaseError(Text(kDatabaseClosed));
        return std::make_unique<DaoBatch>(workspace_);
    }

    void Close() noexcept override
    {
        CloseQuietly(database_);
        database_.Release();
        CloseQuietly(workspace_);
        workspace_.Release();
    }

private:
    std::unique_ptr<DaoRecordset> Open(const Text& sql)
    {
        if (!database_) throw DatabaseError(Text(kDatabaseClosed));
        Variant statement{TextView(sql)};
        return std::make_unique<DaoRecordset>(
            AutomationObject{database_.Call(u"OpenRecordset", {&statement, 1}), u"OpenRecordset"});
    }

    // Jet writes single updates some time later, unless it is told to write them before it answers.
    void CommitAtOnce()
    try {
        std::array<Variant, 2> option = {Variant{kImplicitCommitSync}, Variant{u"Yes"}};
        engine_.Call(u"SetOption", option);
    } catch (const DatabaseError&) { // an engine without this option still saves
    }

    ComApartment com_; // first: outlives the objects below
    AutomationObject engine_, workspace_, database_;
};

} // namespace

bool IsDaoInstalled()
{
    const ComApartment com;
    return static_cast<bool>(StartEngine());
}

std::unique_ptr<Database> OpenDaoDatabase(const Text& path)
{
    return std::make_unique<DaoDatabase>(path);
}

void CreateDaoDatabase(const Text& path, const Text& createTable)
{
    const ComApartment com;
    AutomationObject engine = StartedEngine();
    std::array<Variant, 3> file = {Variant{TextView(path)}, Variant{kGeneralSortOrder}, Variant{kVersion40}};
    AutomationObject database{engine.Call(u"CreateDatabase", file), u"CreateDatabase"};
    try {
        std::array<Variant, 2> statement = {Variant{TextView(createTable)}, Variant{kFailOnError}};
        database.Call(u"Execute", statement);
        database.Call(u"Close");
    } catch (...) {
        // A file without the table would be taken for a damaged database at every later start.
        CloseQuietly(database);
        database.Release();
        (void)DeleteFileW(WidePath(path)); // the failure that is reported came first
        throw;
    }
}
