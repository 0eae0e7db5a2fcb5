#include "platform/posix/PosixFiles.h"

#include "platform/FileNames.h"
#include "text/DayCount.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <stdexcept>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

// Empty, which no call accepts, for a text that a path cannot hold.
std::string PathOf(const Text& path)
{
    return path.find(u'\0') == Text::npos ? ToUtf8(path) : std::string{};
}

FileError ErrorOf(int number, FileError otherwise)
{
    switch (number) {
    case ENOENT:
    case ENOTDIR:
    case ENAMETOOLONG:
        return FileError::notFound;
    case EEXIST:
        return FileError::exists;
    case EWOULDBLOCK:
    case ETXTBSY:
    case EBUSY:
        return FileError::inUse;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
        return FileError::denied;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return FileError::full;
    default:
        return otherwise;
    }
}

class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor()
    {
        if (number_ >= 0) ::close(number_);
    }
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&&) = delete;

    int Number() const { return number_; }
    bool Close() { return ::close(std::exchange(number_, -1)) == 0; } // false: a late write failed

private:
    int number_;
};

// Repeats a call that a signal interrupted.
template <class Call>
auto Repeated(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR) result = call();
    return result;
}

Descriptor OpenPath(const std::string& path, int flags)
{
    return Descriptor{Repeated([&] { return ::open(path.c_str(), flags | O_CLOEXEC, 0666); })};
}

bool WriteAll(int number, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = Repeated([&] { return ::write(number, bytes.data(), bytes.size()); });
        if (written < 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

bool HasKind(const std::string& path, mode_t kind)
{
    struct stat status;
    return ::stat(path.c_str(), &status) == 0 && (status.st_mode & S_IFMT) == kind;
}

class PosixRandomFile final : public RandomFile {
public:
    explicit PosixRandomFile(Descriptor descriptor) : descriptor_(std::move(descriptor)) {}

    std::uint64_t Size() override
    {
        struct stat status;
        return ::fstat(descriptor_.Number(), &status) == 0 ? static_cast<std::uint64_t>(status.st_size) : 0;
    }

    bool ReadAt(std::uint64_t offset, char* bytes, std::size_t count) override
    {
        return Transfer(offset, bytes, count, ::pread);
    }

    FileError WriteAt(std::uint64_t offset, const char* bytes, std::size_t count) override
    {
        errno = 0;
        return Transfer(offset, bytes, count, ::pwrite) ? FileError::none
                                                        : ErrorOf(errno, FileError::writeFailed);
    }

    bool Resize(std::uint64_t size) override
    {
        return Repeated([&] { return ::ftruncate(descriptor_.Number(), static_cast<off_t>(size)); }) == 0;
    }

    FileError Flush() override
    {
        const bool done = Repeated([&] { return ::fsync(descriptor_.Number()); }) == 0;
        return done ? FileError::none : ErrorOf(errno, FileError::writeFailed);
    }

private:
    template <class Byte, class Call>
    bool Transfer(std::uint64_t offset, Byte* bytes, std::size_t count, Call call)
    {
        while (count > 0) {
            const ssize_t done = Repeated(
                [&] { return call(descriptor_.Number(), bytes, count, static_cast<off_t>(offset)); });
            if (done <= 0) return false; // the end of the file, when it is 0
            bytes += done;
            offset += static_cast<std::size_t>(done);
            count -= static_cast<std::size_t>(done);
        }
        return true;
    }

    Descriptor descriptor_;
};

DirectoryEntry EntryOf(int directory, const char* name)
{
    DirectoryEntry entry{FromUtf8(name)};
    struct stat own, target;
    if (::fstatat(directory, name, &own, AT_SYMLINK_NOFOLLOW) != 0 ||
        ::fstatat(directory, name, &target, 0) != 0)
        return entry;
    if (S_ISDIR(target.st_mode)) {
        entry.kind = S_ISLNK(own.st_mode) ? EntryKind::directoryLink : EntryKind::directory;
    } else if (S_ISREG(target.st_mode)) {
        entry.kind = EntryKind::file;
        entry.size = static_cast<std::uint64_t>(target.st_size);
    }
    return entry;
}

} // namespace

bool PosixFiles::FileExists(const Text& path)
{
    struct stat status;
    return ::stat(PathOf(path).c_str(), &status) == 0 && !S_ISDIR(status.st_mode);
}

bool PosixFiles::DirectoryExists(const Text& path)
{
    return HasKind(PathOf(path), S_IFDIR);
}

bool PosixFiles::MakeDirectory(const Text& path)
{
    return ::mkdir(PathOf(path).c_str(), 0777) == 0 || DirectoryExists(path);
}

FileError PosixFiles::ListAll(const Text& directory, std::vector<DirectoryEntry>& entries)
{
    entries.clear();
    DIR* const stream = ::opendir(PathOf(directory).c_str());
    if (!stream) return ErrorOf(errno, FileError::readFailed);
    const auto next = [stream] { return errno = 0, ::readdir(stream); };
    while (const dirent* entry = next()) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") entries.push_back(EntryOf(::dirfd(stream), entry->d_name));
    }
    const int end = errno; // 0 but for what cut it short
    ::closedir(stream);
    if (end != 0) {
        entries.clear();
        return ErrorOf(end, FileError::readFailed);
    }
    std::sort(entries.begin(), entries.end(),
              [](const DirectoryEntry& a, const DirectoryEntry& b) { return NamePrecedes(a.name, b.name); });
    return FileError::none;
}

FileError PosixFiles::ReadWhole(const Text& path, std::string& bytes)
{
    bytes.clear();
    const Descriptor file = OpenPath(PathOf(path), O_RDONLY);
    struct stat status;
    if (file.Number() < 0 || ::fstat(file.Number(), &status) != 0)
        return ErrorOf(errno, FileError::readFailed);
    try {
        // One byte more than the file has, so that its end shows without growing. What has no size of its
        // own (a pipe) and what grows meanwhile is read in larger and larger pieces.
        std::size_t filled = 0, room = static_cast<std::size_t>(status.st_size) + 1;
        for (;;) {
            bytes.resize(room);
            const ssize_t got =
                Repeated([&] { return ::read(file.Number(), bytes.data() + filled, room - filled); });
            if (got < 0) {
                bytes.clear();
                return ErrorOf(errno, FileError::readFailed);
            }
            if (got == 0) break;
            filled += static_cast<std::size_t>(got);
            if (filled == room) room += room / 2 + 4096;
        }
        bytes.resize(filled);
    } catch (const std::exception&) { // larger than memory
        std::string{}.swap(bytes);
        return FileError::outOfMemory;
    }
    return FileError::none;
}

FileError PosixFiles::Append(const Text& path, std::string_view bytes)
{
    Descriptor file = OpenPath(PathOf(path), O_WRONLY | O_APPEND | O_CREAT);
    if (file.Number() < 0 || !WriteAll(file.Number(), bytes) || !file.Close())
        return ErrorOf(errno, FileError::writeFailed);
    return FileError::none;
}

std::unique_ptr<RandomFile> PosixFiles::Open(const Text& path, OpenMode mode, FileError& error)
{
    const bool reading = mode == OpenMode::read;
    Descriptor file = OpenPath(PathOf(path), reading                       ? O_RDONLY
                                             : mode == OpenMode::createNew ? O_RDWR | O_CREAT | O_EXCL
                                                                           : O_RDWR);
    struct stat status;
    if (file.Number() < 0 || ::fstat(file.Number(), &status) != 0 ||
        Repeated([&] { return ::flock(file.Number(), (reading ? LOCK_SH : LOCK_EX) | LOCK_NB); }) != 0) {
        error = ErrorOf(errno, reading ? FileError::readFailed : FileError::writeFailed);
        return nullptr;
    }
    if (!S_ISREG(status.st_mode)) { // reading and writing at any place needs a file proper
        error = FileError::denied;
        return nullptr;
    }
    error = FileError::none;
    return std::make_unique<PosixRandomFile>(std::move(file));
}

FileError PosixFiles::Rename(const Text& from, const Text& to)
{
    const std::string source = PathOf(from), target = PathOf(to);
    if (::renameat2(AT_FDCWD, source.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0)
        return FileError::none;
    return ErrorOf(errno, FileError::writeFailed);
}

FileError PosixFiles::Replace(const Text& from, const Text& to)
{
    const bool done = ::rename(PathOf(from).c_str(), PathOf(to).c_str()) == 0;
    return done ? FileError::none : ErrorOf(errno, FileError::writeFailed);
}

bool PosixFiles::Delete(const Text& path)
{
    return ::unlink(PathOf(path).c_str()) == 0;
}

FileError PosixFiles::SetLastChange(const Text& path, double localDate)
{
    const DateFields fields = FieldsOf(localDate);
    std::tm local{};
    local.tm_year = fields.year - 1900;
    local.tm_mon = fields.month - 1;
    local.tm_mday = fields.day;
    local.tm_hour = fields.hour;
    local.tm_min = fields.minute;
    local.tm_sec = fields.second;
    local.tm_isdst = -1; // as it was on that day
    const timespec times[2] = {{0, UTIME_OMIT}, {std::mktime(&local), 0}};
    if (::utimensat(AT_FDCWD, PathOf(path).c_str(), times, 0) != 0)
        return ErrorOf(errno, FileError::writeFailed);
    return FileError::none;
}
