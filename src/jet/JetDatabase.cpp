#include "jet/JetDatabase.h"

#include "jet/Catalog.h"
#include "jet/Header.h"
#include "jet/Lookup.h"
#include "jet/SortKeys.h"
#include "jet/Sql.h"
#include "jet/TableWriter.h"

#include <algorithm>

namespace {

using namespace jet;

// One table of the open database, shared by its recordsets.
class OpenTable {
public:
    OpenTable(std::shared_ptr<PageFile> file, PageNumber definition)
        : file_(std::move(file)), definition_(definition)
    {
        Renew();
    }

    const Table& Rows() const { return *table_; }
    Lookup& Index() { return lookup_; }
    // Another number after each change: what was read of a row before may not be so any more.
    unsigned Changes() const { return changes_; }

    void Append(const std::vector<std::optional<Text>>& values)
    {
        Refresh();
        ++changes_;
        lookup_.Added(*table_, writer_->Append(values));
    }
    void Delete(RowId row)
    {
        if (held_)
            held_->push_back(row);
        else
            DeleteAll({&row, 1});
    }
    void HoldDeletions() { held_.emplace(); }
    void StoreHeld()
    {
        const std::vector<RowId> rows = *std::exchange(held_, std::nullopt);
        if (!rows.empty()) DeleteAll(rows);
    }
    void DropHeld() { held_.reset(); }

    Readiness Prepare(const std::vector<ColumnNeed>& needs)
    {
        Refresh();
        Readiness readiness{writer_->RefusalOf(needs), {}};
        if (readiness.refusal.empty()) readiness.notes = writer_->Mend();
        return readiness;
    }
    // After a failed write nothing that is remembered need be true.
    void Refresh()
    {
        if (seenFailures_ != file_->WriteFailures()) Renew();
    }

private:
    void DeleteAll(std::span<const RowId> rows)
    {
        Refresh();
        ++changes_;
        writer_->Delete(rows); // the lookup keeps them: a place is never used again
    }
    void Renew()
    {
        auto table = std::make_unique<Table>(*file_, definition_);
        auto writer = std::make_unique<TableWriter>(*table);
        lookup_.Clear();
        ++changes_;
        writer_ = std::move(writer);
        table_ = std::move(table);
        seenFailures_ = file_->WriteFailures();
    }

    std::shared_ptr<PageFile> file_;
    PageNumber definition_;
    unsigned seenFailures_ = 0, changes_ = 0;
    std::unique_ptr<Table> table_;
    std::unique_ptr<TableWriter> writer_; // refers to *table_
    Lookup lookup_;
    std::optional<std::vector<RowId>> held_; // during a batch: what it will delete
};

class JetBatch final : public DeletionBatch {
public:
    explicit JetBatch(std::vector<std::shared_ptr<OpenTable>> tables) : tables_(std::move(tables))
    {
        for (const auto& table : tables_) table->HoldDeletions();
    }
    ~JetBatch() override
    {
        for (const auto& table : tables_) table->DropHeld();
    }
    // Each batch waits for the disk; the pages that it changes are in memory until then, two for each row.
    std::int32_t Most() const override { return 16000; }
    void Store() override
    {
        for (const auto& table : tables_) table->StoreHeld();
    }

private:
    std::vector<std::shared_ptr<OpenTable>> tables_;
};

const Column& NeedColumn(const TableDefinition& table, const Text& name)
{
    if (const Column* column = table.Find(name)) return *column;
    throw DatabaseError(u"The table has no column " + name);
}

const Column& NeedTextColumn(const TableDefinition& table, const Text& name)
{
    const Column& column = NeedColumn(table, name);
    if (column.type == ColumnType::text || column.type == ColumnType::memo) return column;
    throw DatabaseError(u"The column " + name + u" is not a text column and cannot be compared with text");
}

// Rows are sought when they are first asked for: a recordset that only adds reads none.
class JetRecordset final : public Recordset {
public:
    JetRecordset(std::shared_ptr<OpenTable> table, Select select)
        : table_(std::move(table)), select_(std::move(select))
    {
        const TableDefinition& definition = table_->Rows().Definition();
        for (const Text& name : select_.columns) selected_.push_back(PlaceOf(NeedColumn(definition, name)));
        for (const Condition& condition : select_.where) (void)NeedTextColumn(definition, condition.column);
        for (const Text& name : select_.orderBy) (void)NeedTextColumn(definition, name);
    }

    bool AtBeginning() override { return Found().empty(); }
    bool AtEnd() override { return current_ >= Found().size(); }

    void MoveNext() override
    {
        (void)Current();
        ++current_;
    }

    std::int32_t Count() override { return static_cast<std::int32_t>(Found().size()); }

    Text Field(const Text& name) override
    {
        const RowId id = Current();
        const Table& table = table_->Rows();
        table.File().NeedOpen();
        if (!read_ || read_->stored.id != id || read_->changes != table_->Changes()) {
            read_.reset();
            std::optional<StoredRow> stored = table.Fetch(id);
            if (!stored) throw DatabaseError(u"The current row was deleted");
            const Row row(table.Definition(), stored->bytes);
            read_.emplace(table_->Changes(), std::move(*stored), row);
        }
        return table.ColumnText(read_->row, Selected(name));
    }

    void Delete() override { table_->Delete(Current()); }

    void AddNew() override { newRow_.emplace(table_->Rows().Definition().columns.size()); }

    void SetField(const Text& name, const Text& value) override
    {
        if (!newRow_) throw DatabaseError(u"A field was set without a new row");
        const Column& column = Selected(name);
        (*newRow_)[PlaceOf(column)] = value;
    }

    void Update() override
    {
        if (!newRow_) throw DatabaseError(u"There is no new row to be stored");
        const auto row = std::move(*newRow_);
        newRow_.reset();
        table_->Append(row);
    }

private:
    struct ReadRow {
        ReadRow(unsigned c, StoredRow s, const Row& r) : changes(c), stored(std::move(s)), row(r) {}
        unsigned changes; // of the table, when it was read
        StoredRow stored; // holds the bytes
        Row row;
    };

    std::size_t PlaceOf(const Column& column) const
    {
        return static_cast<std::size_t>(&column - table_->Rows().Definition().columns.data());
    }

    const Column& Selected(const Text& name) const
    {
        const TableDefinition& definition = table_->Rows().Definition();
        if (selected_.empty()) return NeedColumn(definition, name);
        for (const std::size_t place : selected_)
            if (EqualNoCase(definition.columns.at(place).name, name)) return definition.columns[place];
        throw DatabaseError(u"The column " + name + u" was not selected");
    }

    RowId Current()
    {
        if (AtEnd()) throw DatabaseError(u"There is no current row");
        return Found()[current_];
    }

    const std::vector<RowId>& Found()
    {
        if (found_) return *found_;
        table_->Refresh();
        std::vector<RowId> rows = select_.where.empty() ? table_->Rows().Rows() : Matching();
        if (!select_.orderBy.empty()) Sort(rows);
        return found_.emplace(std::move(rows));
    }

    std::vector<RowId> Matching()
    {
        const Table& table = table_->Rows();
        constexpr std::size_t kFew = 8; // no other condition is worth asking for its rows, too
        std::optional<std::vector<RowId>> rows;
        for (const Condition& condition : select_.where) {
            const Column& column = NeedColumn(table.Definition(), condition.column);
            std::vector<RowId> found = table_->Index().Candidates(table, column, condition.value);
            if (!rows || found.size() < rows->size()) rows = std::move(found);
            if (rows->size() <= kFew) break;
        }
        std::vector<const Column*> columns;
        for (const Condition& condition : select_.where)
            columns.push_back(&NeedColumn(table.Definition(), condition.column));
        Text text;
        std::erase_if(*rows, [&](RowId id) {
            const std::optional<StoredRow> stored = table.Fetch(id);
            if (!stored) return true;
            const Row row(table.Definition(), stored->bytes);
            for (std::size_t i = 0; i < columns.size(); ++i) {
                table.ReadColumn(row, *columns[i], text);
                if (!EqualNoCase(text, select_.where[i].value)) return true;
            }
            return false;
        });
        return std::move(*rows);
    }

    // By the texts without regard to case, equal ones in the order of the file: as in Jet, texts that differ
    // in case only are one group, in which binary-equal ones need not stand together.
    void Sort(std::vector<RowId>& rows) const
    {
        const Table& table = table_->Rows();
        std::vector<const Column*> columns;
        for (const Text& name : select_.orderBy) columns.push_back(&NeedColumn(table.Definition(), name));
        SortKeys keys(columns.size());
        Text text;
        const auto add = [&](const StoredRow& stored) {
            const Row row(table.Definition(), stored.bytes);
            for (const Column* column : columns) {
                table.ReadColumn(row, *column, text);
                keys.Add(text);
            }
        };
        std::erase_if(rows, [&](RowId id) {
            const std::optional<StoredRow> stored = table.Fetch(id);
            if (stored) add(*stored);
            return !stored;
        });
        std::vector<RowId> sorted;
        for (const std::size_t place : keys.Order()) sorted.push_back(rows[place]);
        rows = std::move(sorted);
    }

    std::shared_ptr<OpenTable> table_;
    Select select_;
    std::vector<std::size_t> selected_; // places in the definition's columns; empty: all
    std::optional<std::vector<RowId>> found_;
    std::size_t current_ = 0;
    std::optional<ReadRow> read_;                            // a current row
    std::optional<std::vector<std::optional<Text>>> newRow_; // by position in the definition's columns
};

class OpenFile final : public JetDatabase {
public:
    explicit OpenFile(std::shared_ptr<PageFile> file) : file_(std::move(file)) {}
    ~OpenFile() override { file_->Close(); }

    std::unique_ptr<Recordset> OpenRecordset(const Text& sql) override
    {
        Select select = ParseSelect(sql);
        std::shared_ptr<OpenTable> table = Find(select.table);
        return std::make_unique<JetRecordset>(std::move(table), std::move(select));
    }

    std::vector<Text> ColumnNames(const Text& table) override
    {
        std::vector<Text> names;
        for (const Column& column : Find(table)->Rows().Definition().columns) names.push_back(column.name);
        return names;
    }

    Readiness PrepareForWriting(const Text& table, const std::vector<ColumnNeed>& needs) override
    {
        return Find(table)->Prepare(needs);
    }

    std::unique_ptr<DeletionBatch> BeginDeletions() override
    {
        std::vector<std::shared_ptr<OpenTable>> tables;
        for (const auto& [name, table] : tables_)
            if (table) tables.push_back(table);
        return std::make_unique<JetBatch>(std::move(tables));
    }

    void Close() noexcept override { file_->Close(); }

private:
    std::shared_ptr<OpenTable> Find(const Text& name)
    {
        std::shared_ptr<OpenTable>& table = tables_[FoldCase(name)];
        if (!table) table = std::make_shared<OpenTable>(file_, FindTable(*file_, name));
        table->Refresh();
        return table;
    }

    std::shared_ptr<PageFile> file_;
    std::map<Text, std::shared_ptr<OpenTable>> tables_; // by folded name
};

} // namespace

std::unique_ptr<JetDatabase> OpenJetDatabase(Files& files, const Text& path, OpenMode mode)
{
    FileError error = FileError::none;
    std::unique_ptr<RandomFile> opened = files.Open(path, mode, error);
    Text whyReadOnly(kOnlyRead);
    if (!opened && error == FileError::denied && mode == OpenMode::exclusive) {
        mode = OpenMode::read;
        opened = files.Open(path, mode, error);
        whyReadOnly = kWriteProtected;
    }
    if (!opened) throw DatabaseError(u"The database " + path + u" cannot be opened: " + Describe(error));
    auto file = std::make_shared<PageFile>(std::move(opened), mode, std::move(whyReadOnly));
    CheckHeader(*file);
    return std::make_unique<OpenFile>(std::move(file));
}
