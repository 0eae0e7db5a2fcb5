#include "archive/Mbox.h"

#include "mail/AddressList.h"
#include "mail/MessageDates.h"

#include <algorithm>
#include <cstdio>
#include <new>
#include <set>
#include <stdexcept>

namespace {

constexpr std::size_t kEnoughToWrite = 1 << 20; // bytes

// In asctime's form, as readers of the format expect it.
std::string DateLine(std::int64_t seconds)
{
    constexpr const char* kDays[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                       "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const DateFields at = FieldsOfMoment(seconds);
    char text[64];
    std::snprintf(text, sizeof text, "%s %s %2d %02d:%02d:%02d %04d", kDays[at.weekday],
                  kMonths[at.month - 1], at.day, at.hour, at.minute, at.second, at.year);
    return text;
}

std::string SenderOf(const MessageFields& fields)
{
    const std::vector<MailAddress> senders = ReadAddresses(FieldValue(fields, "from"));
    const std::string address = senders.empty() ? std::string() : senders[0].address;
    const auto isPlain = [](char byte) { return byte > ' ' && byte < '\x7F'; };
    const bool usable = !address.empty() && std::all_of(address.begin(), address.end(), isPlain);
    return usable ? address : "MAILER-DAEMON";
}

// Of a line that begins so, the ">" are not counted.
bool BeginsWithFrom(std::string_view line)
{
    return line.substr(std::min(line.find_first_not_of('>'), line.size())).starts_with("From ");
}

class Writer {
public:
    Writer(Files& files, const Text& store, const Text& target)
        : files_(files), store_(ReadStore(files, store)), target_(target)
    {
    }

    MboxResult Write(const GoOn& goOn)
    {
        result_.failure = WhyNotUsable();
        for (const StoreDirectory& directory : store_.directories)
            taken_.insert(FoldCase(PlaceOf(directory)));
        for (const StoreDirectory& directory : store_.directories) {
            if (!result_.failure.empty() || result_.stopped) break;
            if (directory.isLink || directory.error != FileError::none)
                result_.leftOut.push_back(u"A directory is left out: " + directory.path);
            if (!directory.emails.empty()) WriteFolder(directory, goOn);
        }
        return std::move(result_);
    }

private:
    // Whatever is there already would be added to.
    Text WhyNotUsable()
    {
        std::vector<DirectoryEntry> entries;
        if (!files_.MakeDirectory(target_) || files_.ListAll(target_, entries) != FileError::none)
            return u"The directory cannot be made: " + target_;
        return entries.empty() ? Text() : u"The directory is not empty: " + target_;
    }

    // The directory in the target that the folder's own would be.
    Text PlaceOf(const StoreDirectory& directory) const
    {
        StoreDirectory place{target_, {}};
        if (directory.folder.empty()) return target_;
        for (const Text& level : SplitAt(directory.folder, u"\\")) place.path = PathOf(place, level);
        return place.path;
    }

    struct Output {
        Text path;
        std::unique_ptr<RandomFile> file; // none before the first bytes
    };

    // A new one; the directories above it are made.
    FileError Make(Output& output, const StoreDirectory& directory)
    {
        StoreDirectory above{target_, {}};
        Text name = u"store";
        if (!directory.folder.empty()) {
            const std::vector<Text> levels = SplitAt(directory.folder, u"\\");
            name = levels.back();
            for (std::size_t i = 0; i + 1 < levels.size(); ++i) {
                above.path = PathOf(above, levels[i]);
                (void)files_.MakeDirectory(above.path); // no file can be made where it fails
            }
        }
        FileError error = FileError::exists;
        for (int number = 1; error == FileError::exists; ++number) {
            const Text suffix = number == 1 ? Text() : u'_' + DecimalText(number);
            output.path = PathOf(above, name + suffix + u".mbox");
            if (taken_.insert(FoldCase(output.path)).second)
                output.file = files_.Open(output.path, OpenMode::createNew, error);
        }
        return error;
    }

    void Flush(Output& output, const StoreDirectory& directory, std::string& mbox)
    {
        FileError error = FileError::none;
        if (!mbox.empty() && !output.file) error = Make(output, directory);
        if (output.file) error = output.file->WriteAt(output.file->Size(), mbox.data(), mbox.size());
        if (error != FileError::none) result_.failure = Describe(error) + u": " + output.path;
        mbox.clear();
    }

    void WriteFolder(const StoreDirectory& directory, const GoOn& goOn)
    {
        Output output;
        std::string mbox;
        for (const DirectoryEntry& email : directory.emails) {
            result_.stopped = !goOn(done_++, store_.emails);
            if (result_.stopped) break;
            Add(mbox, directory, email);
            if (mbox.size() >= kEnoughToWrite) Flush(output, directory, mbox);
            if (!result_.failure.empty()) return;
        }
        Flush(output, directory, mbox);
        if (output.file) ++result_.folders;
    }

    void Add(std::string& mbox, const StoreDirectory& directory, const DirectoryEntry& email)
    {
        const Text path = PathOf(directory, email.name);
        if (email.kind != EntryKind::file)
            return result_.leftOut.push_back(u"What is no file is left out: " + path);
        FileError error = FileError::none;
        const std::size_t before = mbox.size();
        try {
            std::string bytes;
            error = files_.ReadWhole(path, bytes);
            if (error == FileError::none && bytes.empty())
                return result_.leftOut.push_back(u"An empty file is left out: " + path);
            if (error == FileError::none) AppendToMbox(mbox, bytes);
        } catch (const std::bad_alloc&) {
            error = FileError::outOfMemory;
        } catch (const std::length_error&) { // more than a string can hold
            error = FileError::outOfMemory;
        }
        if (error == FileError::none) {
            ++result_.emails;
        } else {
            mbox.resize(before);
            result_.leftOut.push_back(u"A file is left out: " + path + u" (" + Describe(error) + u")");
        }
    }

    Files& files_;
    const Store store_;
    const Text target_;
    std::set<Text>
        taken_; // folded: a folder may be called "Inbox.mbox", and one that cannot be read like another
    std::size_t done_ = 0;
    MboxResult result_;
};

} // namespace

MboxResult WriteMboxes(Files& files, const Text& store, const Text& target, const GoOn& goOn)
{
    return Writer(files, store, target).Write(goOn);
}

void AppendToMbox(std::string& mbox, std::string_view message)
{
    const MessageFields fields = ReadMessageFields(message);
    mbox += "From " + SenderOf(fields) + " " + DateLine(DateOfMessage(fields).value_or(0)) + "\n";
    for (std::size_t at = 0; at < message.size();) {
        const std::size_t end = std::min(message.find('\n', at), message.size());
        std::string_view line = message.substr(at, end - at);
        at = end + 1;
        if (line.ends_with('\r')) line.remove_suffix(1);
        if (BeginsWithFrom(line)) mbox += '>';
        mbox.append(line).append("\n");
    }
    mbox += '\n';
}
