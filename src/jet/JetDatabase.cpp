#include "jet/JetDatabase.h"

#include "jet/Catalog.h"
#include "jet/Header.h"
#include "jet/Lookup.h"
#include "jet/SortKeys.h"
#include "jet/Sql.h"
#include "jet/TableWriter.h"

#include <algorithm>
#include <limits>

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

// Its place among the table's columns.
std::size_t NeedColumn(const TableDefinition& table, const Text& name)
{
    if (const Column* column = table.Find(name))
        return static_cast<std::size_t>(column - table.columns.data());
    throw DatabaseError(u"The table has no column " + name);
}

std::size_t NeedTextColumn(const TableDefinition& table, const Text& name)
{
    const std::size_t place = NeedColumn(table, name);
    if (table.columns[place].IsText()) return place;
    throw DatabaseError(u"The column " + name + u" is not a text column and cannot be compared with text");
}

// Rows are sought when they are first asked for, and looked at when their turn comes: a recordset that only
// adds reads none, and one that is asked for its first reads no more.
class JetRecordset final : public Recordset {
public:
    JetRecordset(std::shared_ptr<OpenTable> table, Select select)
        : table_(std::move(table)), select_(std::move(select))
    {
        const TableDefinition& definition = Definition();
        for (const Text& name : select_.columns) selected_.push_back(NeedColumn(definition, name));
        for (const Condition& condition : select_.where)
            compared_.push_back(NeedTextColumn(definition, condition.column));
        for (const Text& name : select_.orderBy) ordered_.push_back(NeedTextColumn(definition, name));
    }

    bool AtBeginning() override { return !HasRow(0); }
    bool AtEnd() override { return current_ >= found_ && !HasRow(current_); }

    void MoveNext() override
    {
        (void)Current();
        ++current_;
    }

    std::int32_t Count() override
    {
        (void)HasRow(std::numeric_limits<std::size_t>::max());
        return static_cast<std::int32_t>(found_);
    }

    std::size_t Column(const Text& name) override
    {
        values_.resize(Definition().columns.size());
        if (selected_.empty()) return NeedColumn(Definition(), name);
        for (const std::size_t place : selected_)
            if (EqualNoCase(ColumnAt(place).name, name)) return place;
        throw DatabaseError(u"The column " + name + u" was not selected");
    }

    const Text& Field(std::size_t column) override
    {
        const Row* row = Read(Current());
        if (!row) throw DatabaseError(u"The current row was deleted");
        Text& value = values_.at(column);
        table_->Rows().ReadColumn(*row, ColumnAt(column), held_, value);
        return value;
    }

    void Delete() override { table_->Delete(Current()); }

    void AddNew() override { newRow_.emplace(Definition().columns.size()); }

    void SetField(std::size_t column, const Text& value) override
    {
        if (!newRow_) throw DatabaseError(u"A field was set without a new row");
        newRow_->at(column) = value;
    }

    void Update() override
    {
        if (!newRow_) throw DatabaseError(u"There is no new row to be stored");
        const auto row = std::move(*newRow_);
        newRow_.reset();
        table_->Append(row);
    }

private:
    const TableDefinition& Definition() const { return table_->Rows().Definition(); }
    const jet::Column& ColumnAt(std::size_t place) const { return Definition().columns.at(place); }

    RowId Current()
    {
        if (AtEnd()) throw DatabaseError(u"There is no current row");
        return rows_[current_];
    }

    // The row as it is now; null when there is none any more.
    const Row* Read(RowId id)
    {
        const Table& table = table_->Rows();
        table.File().NeedOpen();
        if (!row_ || stored_.id != id || readAt_ != table_->Changes()) {
            row_.reset();
            if (!table.Fetch(id, stored_)) return nullptr;
            row_.emplace(table.Definition(), stored_.bytes);
            readAt_ = table_->Changes();
        }
        return &*row_;
    }

    // Whether a row is found for this place among them; looks no further than it must.
    bool HasRow(std::size_t place)
    {
        if (!sought_) Seek();
        for (; found_ <= place && looked_ < rows_.size(); ++looked_)
            if (Matches(rows_[looked_])) rows_[found_++] = rows_[looked_];
        for (; found_ <= place && page_ < pages_.size(); ++page_) {
            for (const RowId id : table_->Rows().RowsOn(pages_[page_])) rows_.push_back(id);
            found_ = looked_ = rows_.size();
        }
        return place < found_;
    }

    bool Matches(RowId id)
    {
        const Row* row = Read(id);
        for (std::size_t i = 0; row && i < compared_.size(); ++i) {
            table_->Rows().ReadColumn(*row, ColumnAt(compared_[i]), held_, text_);
            if (!EqualNoCase(text_, select_.where[i].value)) return false;
        }
        return row != nullptr;
    }

    void Seek()
    {
        table_->Refresh();
        if (!ordered_.empty()) {
            rows_ = Sorted();
            found_ = looked_ = rows_.size();
        } else if (!compared_.empty()) {
            rows_ = Candidates();
        } else {
            pages_ = table_->Rows().Pages();
        }
        sought_ = true;
    }

    std::vector<RowId> Candidates()
    {
        const Table& table = table_->Rows();
        constexpr std::size_t kFew = 8; // no other condition is worth asking for its rows, too
        std::optional<std::vector<RowId>> rows;
        for (std::size_t i = 0; i < compared_.size(); ++i) {
            std::vector<RowId> found =
                table_->Index().Candidates(table, ColumnAt(compared_[i]), select_.where[i].value);
            if (!rows || found.size() < rows->size()) rows = std::move(found);
            if (rows->size() <= kFew) break;
        }
        return std::move(*rows);
    }

    // By the texts without regard to case, equal ones in the order of the file: as in Jet, texts that differ
    // in case only are one group, in which binary-equal ones need not stand together.
    std::vector<RowId> Sorted()
    {
        const Table& table = table_->Rows();
        std::vector<RowId> rows;
        SortKeys keys(ordered_.size());
        const auto add = [&](RowId id, const Row& row) {
            rows.push_back(id);
            for (const std::size_t place : ordered_) {
                table.ReadColumn(row, ColumnAt(place), held_, text_);
                keys.Add(text_);
            }
        };
        if (compared_.empty()) {
            table.ForEachRow(
                [&](const StoredRow& stored) { add(stored.id, Row(table.Definition(), stored.bytes)); });
        } else {
            for (const RowId id : Candidates())
                if (Matches(id)) add(id, *Read(id));
        }
        std::vector<RowId> sorted;
        for (const std::size_t place : keys.Order()) sorted.push_back(rows[place]);
        return sorted;
    }

    std::shared_ptr<OpenTable> table_;
    Select select_;
    // Places in the definition's columns, as everywhere here: of those selected (none: all), of the
    // conditions and of the order.
    std::vector<std::size_t> selected_, compared_, ordered_;
    std::vector<Text> values_; // by column; those that Field has read
    bool sought_ = false;
    // Before found_ are those that match, from looked_ on those that nobody has looked at. Where all match,
    // more come from pages_, from page_ on.
    std::vector<RowId> rows_;
    std::size_t found_ = 0, looked_ = 0, current_ = 0;
    std::vector<PageNumber> pages_;
    std::size_t page_ = 0;
    StoredRow stored_;                                       // the row that was read last,
    std::optional<Row> row_;                                 // its values (nothing: none was read)
    unsigned readAt_ = 0;                                    // and the table's changes at that time
    LongValue held_;                                         // used again for each value,
    Text text_;                                              // and for each that is compared
    std::optional<std::vector<std::optional<Text>>> newRow_; // by column
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
