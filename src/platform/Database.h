// Database.h: a relational database through recordsets, in the manner of Data Access Objects. Two makers:
// DAO itself where it is installed (Windows), the embedded engine of jet/ everywhere else. The SQL is the
// same for both.
// Fails by: DatabaseError, thrown by every operation but Close and the destructors.
#pragma once
#include "text/Text.h"

#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

class DatabaseError : public std::exception {
public:
    explicit DatabaseError(Text words) : words_(std::move(words)), narrow_(ToUtf8(words_)) {}
    const Text& Words() const { return words_; } // for the user, a sentence without a full stop
    const char* what() const noexcept override { return narrow_.c_str(); }

private:
    Text words_;
    std::string narrow_;
};

// The rows that a SELECT found, one of them current. A new recordset stands on its first row.
struct Recordset {
    virtual ~Recordset() = default;
    virtual bool AtBeginning() = 0; // before the first row; true together with AtEnd when there are no rows
    virtual bool AtEnd() = 0;       // behind the last row
    virtual void MoveNext() = 0;
    virtual std::int32_t Count() = 0; // of all rows; only before the first MoveNext
    // What Field and SetField take: asked for once, not for each row.
    virtual std::size_t Column(const Text& name) = 0;
    // Of the current row; null reads as empty text. Stays until the next one of this column.
    virtual const Text& Field(std::size_t column) = 0;
    // The current row; the place stays until MoveNext. On disk when this returns, but see DeletionBatch.
    virtual void Delete() = 0;
    virtual void AddNew() = 0; // starts a row; nothing is stored before Update
    virtual void SetField(std::size_t column, const Text& value) = 0;
    virtual void Update() = 0; // the row is on disk when this returns
};

// While it lives, the database's recordsets gather what they delete. None is deleted unless Store is called.
struct DeletionBatch {
    virtual ~DeletionBatch() = default;
    virtual std::int32_t Most() const = 0; // rows that it can take
    // All of them, on disk when this returns. When it fails, some may be deleted. Once, and last of all.
    virtual void Store() = 0;
};

// What a column must be able to take.
struct ColumnNeed {
    Text name;
    unsigned characters; // so many, at least
    bool mayBeEmpty;     // and nothing
};

// The reasons that every engine has cause for, in the same words.
inline constexpr TextView kWriteProtected = u"The file is write-protected, or this user may not write it";
inline constexpr TextView kDatabaseClosed = u"The database is closed";
inline Text TakesNoText(const Text& column)
{
    return u"The column " + column + u" does not take text";
}
inline Text TooNarrow(const ColumnNeed& need, unsigned characters)
{
    return u"The column " + need.name + u" takes " + DecimalText(characters) + u" characters, but " +
           DecimalText(need.characters) + u" are needed";
}

// Whether a table can be written: for one made by another program, or damaged, to be known at once and not
// by the first row that is lost.
struct Readiness {
    Text refusal;            // why not, a sentence without a full stop; empty: it can
    std::vector<Text> notes; // what was mended: "the count of its rows was corrected from 5 to 6"
};

struct Database {
    virtual ~Database() = default; // closes
    // Looks whether rows with values in these columns can be added to the table and deleted from it, and only
    // then mends what an earlier stop has left there. A file that is refused is not changed by a byte.
    virtual Readiness PrepareForWriting(const Text& table, const std::vector<ColumnNeed>& needs) = 0;
    // "SELECT columns FROM table [WHERE ...] [ORDER BY ...]". "=" on texts ignores letter case.
    virtual std::unique_ptr<Recordset> OpenRecordset(const Text& sql) = 0;
    virtual std::unique_ptr<DeletionBatch> BeginDeletions() = 0; // of recordsets that are open; one at a time
    virtual void Close() noexcept = 0;                           // errors are ignored: the program is ending
};

// One engine that can make and open database files. Both throw DatabaseError; create never replaces a file.
struct DatabaseMaker {
    // With one empty table, which "CREATE TABLE table (column TEXT(characters) | MEMO, ...)" describes.
    std::function<void(const Text& path, const Text& createTable)> create;
    std::function<std::unique_ptr<Database>(const Text& path)> open;
};
