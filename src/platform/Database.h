// Database.h: a relational database through recordsets, in the manner of Data Access Objects. Two makers:
// DAO itself where it is installed (Windows), the embedded engine of jet/ everywhere else. The SQL is the
// same for both.
// Fails by: DatabaseError, thrown by every operation but Close and the destructors.
#pragma once
#include "text/Text.h"

#include <exception>
#include <memory>
#include <utility>

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
    virtual Text Field(const Text& name) = 0; // of the current row; null reads as empty text
    virtual void Delete() = 0;                // the current row; the place stays until MoveNext
    virtual void AddNew() = 0;                // starts a row; nothing is stored before Update
    virtual void SetField(const Text& name, const Text& value) = 0;
    virtual void Update() = 0; // the row is on disk when this returns
};

struct Database {
    virtual ~Database() = default; // closes
    // "SELECT columns FROM table [WHERE ...] [ORDER BY ...]". "=" on texts ignores letter case.
    virtual std::unique_ptr<Recordset> OpenRecordset(const Text& sql) = 0;
    virtual void Close() noexcept = 0; // errors are ignored: the program is ending
};
