#include "platform/win32/WinFiles.h"

#include <windows.h>

#include "platform/FileNames.h"
#include "platform/win32/WideText.h"
#include "text/DayCount.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace {

// XP refuses larger transfers over a network ("insufficient system resources").
constexpr std::size_t kLargestPiece = 16 << 20;

// Missing in the headers.
constexpr DWORD kDiskQuotaExceeded = 1295;
constexpr DWORD kLinkTag = 0xA000000C; // IO_REPARSE_TAG_SYMLINK

FileError ErrorOf(DWORD number, FileError otherwise)
{
    switch (number) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_DIRECTORY:
    case ERROR_INVALID_DRIVE:
    case ERROR_NOT_READY:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_FILENAME_EXCED_RANGE:
        return FileError::notFound;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
        return FileError::exists;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_USER_MAPPED_FILE:
        return FileError::inUse;
    case ERROR_ACCESS_DENIED:
    case ERROR_WRITE_PROTECT:
        return FileError::denied;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
    case ERROR_NOT_ENOUGH_QUOTA:
    case kDiskQuotaExceeded:
    case ERROR_FILE_TOO_LARGE:
        return FileError::full;
    default:
        return otherwise;
    }
}

class FileHandle {
public:
    FileHandle(const Text& path, DWORD access, DWORD share, DWORD disposition,
               DWORD flags = FILE_ATTRIBUTE_NORMAL)
        : handle_(CreateFileW(WidePath(path), access, share, nullptr, disposition, flags, nullptr))
    {
    }
    ~FileHandle()
    {
        if (IsOpen()) CloseHandle(handle_);
    }
    FileHandle(FileHandle&& other) noexcept : handle_(std::exchange(other.handle_, INVALID_HANDLE_VALUE)) {}
    FileHandle& operator=(FileHandle&&) = delete;

    bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
    operator HANDLE() const { return handle_; } // NOLINT(*-explicit-*): stands for it

private:
    HANDLE handle_;
};

DWORD PieceOf(std::size_t count)
{
    return static_cast<DWORD>(std::min(count, kLargestPiece));
}

class WinRandomFile final : public RandomFile {
public:
    explicit WinRandomFile(FileHandle file) : file_(std::move(file)) {}

    std::uint64_t Size() override
    {
        LARGE_INTEGER size{};
        return GetFileSizeEx(file_, &size) ? static_cast<std::uint64_t>(size.QuadPart) : 0;
    }

    bool ReadAt(std::uint64_t offset, char* bytes, std::size_t count) override
    {
        return Transfer(offset, bytes, count, ReadFile);
    }

    FileError WriteAt(std::uint64_t offset, const char* bytes, std::size_t count) override
    {
        return Result(Transfer(offset, bytes, count, WriteFile));
    }

    bool Resize(std::uint64_t size) override
    {
        LARGE_INTEGER place;
        place.QuadPart = static_cast<LONGLONG>(size);
        return SetFilePointerEx(file_, place, nullptr, FILE_BEGIN) && SetEndOfFile(file_);
    }

    FileError Flush() override { return Result(FlushFileBuffers(file_)); }

private:
    static FileError Result(bool done)
    {
        return done ? FileError::none : ErrorOf(GetLastError(), FileError::writeFailed);
    }
    template <class Byte, class Call>
    bool Transfer(std::uint64_t offset, Byte* bytes, std::size_t count, Call call)
    {
        while (count > 0) {
            OVERLAPPED place{}; // saves a call that moves the file pointer
            place.Offset = static_cast<DWORD>(offset);
            place.OffsetHigh = static_cast<DWORD>(offset >> 32);
            DWORD done = 0;
            if (!call(file_, bytes, PieceOf(count), &done, &place) || done == 0) return false;
            bytes += done;
            offset += done;
            count -= done;
        }
        return true;
    }

    FileHandle file_;
};

// Calls take(found) for all that lies in a directory.
template <class Take>
FileError Walk(const Text& directory, Take take)
{
    if (directory.empty()) return FileError::notFound; // "\\*" would be the root of the drive
    const bool ended = directory.back() == u'\\' || directory.back() == u'/';
    const Text pattern = directory + (ended ? u"*" : u"\\*");
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW(WidePath(pattern), &found);
    if (search == INVALID_HANDLE_VALUE) {
        // The root of a drive has no "." that would always be found.
        const DWORD error = GetLastError();
        return error == ERROR_FILE_NOT_FOUND ? FileError::none : ErrorOf(error, FileError::readFailed);
    }
    do take(found);
    while (FindNextFileW(search, &found));
    const DWORD end = GetLastError();
    FindClose(search);
    // A drive that was pulled meanwhile tells that nothing is there.
    const FileError error = ErrorOf(end, FileError::readFailed);
    if (end == ERROR_NO_MORE_FILES) return FileError::none;
    return error == FileError::notFound ? FileError::readFailed : error;
}

bool IsDirectory(const WIN32_FIND_DATAW& found)
{
    return (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

// Links and mounted drives; a folder whose files a service fetches on demand is a directory like others.
bool IsLink(const WIN32_FIND_DATAW& found)
{
    const bool tagged = (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    return tagged && (found.dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT || found.dwReserved0 == kLinkTag);
}

FileError Move(const Text& from, const Text& to, DWORD flags)
{
    if (MoveFileExW(WidePath(from), WidePath(to), flags)) return FileError::none;
    return ErrorOf(GetLastError(), FileError::writeFailed);
}

} // namespace

bool WinFiles::FileExists(const Text& path)
{
    const DWORD attributes = GetFileAttributesW(WidePath(path));
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

bool WinFiles::DirectoryExists(const Text& path)
{
    const DWORD attributes = GetFileAttributesW(WidePath(path));
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool WinFiles::MakeDirectory(const Text& path)
{
    return CreateDirectoryW(WidePath(path), nullptr) || DirectoryExists(path);
}

FileError WinFiles::ListAll(const Text& directory, std::vector<DirectoryEntry>& entries)
{
    entries.clear();
    // Not asked for a pattern, by which the system would also give files whose short name alone matches
    // ("mail.eml_old" as MAIL~1.EML), which are no saved e-mails.
    const FileError error = Walk(directory, [&](const WIN32_FIND_DATAW& found) {
        Text name = FromWide(found.cFileName);
        if (name == u"." || name == u"..") return;
        if (!IsDirectory(found)) {
            const std::uint64_t size = std::uint64_t{found.nFileSizeHigh} << 32 | found.nFileSizeLow;
            entries.push_back({std::move(name), EntryKind::file, size});
        } else {
            entries.push_back(
                {std::move(name), IsLink(found) ? EntryKind::directoryLink : EntryKind::directory});
        }
    });
    if (error != FileError::none) entries.clear(); // it was cut short
    std::sort(entries.begin(), entries.end(),
              [](const DirectoryEntry& a, const DirectoryEntry& b) { return NamePrecedes(a.name, b.name); });
    return error;
}

FileError WinFiles::ReadWhole(const Text& path, std::string& bytes)
{
    bytes.clear();
    const FileHandle file(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                          OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN);
    LARGE_INTEGER size{};
    if (!file.IsOpen() || !GetFileSizeEx(file, &size)) return ErrorOf(GetLastError(), FileError::readFailed);
    if (size.QuadPart >= 0x7FFFFFFF) return FileError::outOfMemory;
    try {
        bytes.resize(static_cast<std::size_t>(size.QuadPart));
    } catch (const std::exception&) {
        return FileError::outOfMemory;
    }
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        DWORD got = 0;
        if (!ReadFile(file, bytes.data() + filled, PieceOf(bytes.size() - filled), &got, nullptr)) {
            const FileError error = ErrorOf(GetLastError(), FileError::readFailed);
            bytes.clear();
            return error;
        }
        if (got == 0) break; // cut meanwhile
        filled += got;
    }
    bytes.resize(filled);
    return FileError::none;
}

FileError WinFiles::Append(const Text& path, std::string_view bytes)
{
    // Shared with other writers: each piece goes behind what the others wrote.
    const FileHandle file(path, FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_ALWAYS);
    if (!file.IsOpen()) return ErrorOf(GetLastError(), FileError::writeFailed);
    while (!bytes.empty()) {
        DWORD done = 0;
        if (!WriteFile(file, bytes.data(), PieceOf(bytes.size()), &done, nullptr))
            return ErrorOf(GetLastError(), FileError::writeFailed);
        if (done == 0) return FileError::writeFailed;
        bytes.remove_prefix(done);
    }
    return FileError::none;
}

std::unique_ptr<RandomFile> WinFiles::Open(const Text& path, OpenMode mode, FileError& error)
{
    const bool reading = mode == OpenMode::read;
    FileHandle file(path, reading ? GENERIC_READ : GENERIC_READ | GENERIC_WRITE,
                    reading ? FILE_SHARE_READ : 0, mode == OpenMode::createNew ? CREATE_NEW : OPEN_EXISTING,
                    FILE_FLAG_RANDOM_ACCESS);
    if (!file.IsOpen()) {
        error = ErrorOf(GetLastError(), reading ? FileError::readFailed : FileError::writeFailed);
        return nullptr;
    }
    error = FileError::none;
    return std::make_unique<WinRandomFile>(std::move(file));
}

FileError WinFiles::Rename(const Text& from, const Text& to)
{
    return Move(from, to, MOVEFILE_WRITE_THROUGH);
}

FileError WinFiles::Replace(const Text& from, const Text& to)
{
    return Move(from, to, MOVEFILE_WRITE_THROUGH | MOVEFILE_REPLACE_EXISTING);
}

bool WinFiles::Delete(const Text& path)
{
    return DeleteFileW(WidePath(path)) != 0;
}

FileError WinFiles::SetLastChange(const Text& path, double localDate)
{
    const DateFields fields = FieldsOf(localDate);
    const auto word = [](int number) { return static_cast<WORD>(number); };
    const SYSTEMTIME local = {
        word(fields.year),   word(fields.month),  0, word(fields.day), word(fields.hour),
        word(fields.minute), word(fields.second), 0};
    SYSTEMTIME universal{};
    FILETIME time{};
    // The years 1601 to 30827.
    if (!TzSpecificLocalTimeToSystemTime(nullptr, const_cast<SYSTEMTIME*>(&local), &universal) ||
        !SystemTimeToFileTime(&universal, &time))
        return FileError::none;
    const FileHandle file(path, FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                          OPEN_EXISTING);
    if (!file.IsOpen() || !SetFileTime(file, nullptr, nullptr, &time))
        return ErrorOf(GetLastError(), FileError::writeFailed);
    return FileError::none;
}
