#include "app/Program.h"

#include "app/DirectoryList.h"
#include "app/Version.h"

namespace {

const Text kSeparatorLine(61, u'-');

const Text kImportant =
    u"Please be aware that the exporting of emails from Outlook Express relies on\r\n"
    u"automating Outlook Express, which cannot be a background task. Therefore,\r\n"
    u"during the email export process you must not move the mouse or press any keys.\r\n"
    u"\r\n"
    u"If you plan on exporting many emails, you may wish to leave this software running and\r\n"
    u"do something else; like have a cup of coffee or read a newspaper...";

} // namespace

Text ProgramTitle()
{
    return FromAscii(QUILLBOX_TITLE);
}

Text ProgramVersion()
{
    return FromAscii(QUILLBOX_VERSION);
}

Program::Program(Surroundings& outside, ProgramWindow& window)
    : outside_(outside),
      window_(window),
      store_(outside.files, window),
      log_(outside.files, outside.clock, outside.codePage, window),
      crc_(outside.codePage),
      client_{outside.desktop,
              RemoteMemory(outside.processApi),
              outside.files,
              outside.codePage,
              outside.locale,
              outside.clock,
              crc_,
              window,
              settings_.client,
              flags_,
              settings_.words},
      run_{client_, saved_, window, outside.files, outside.clock, outside.codePage, outside.locale}
{
}

void Program::StartUp(const CommandSwitches& told)
{
    told_ = told;
    if (!told_.wrong.empty()) return RefuseSwitches();
    if (told_.captions) return NameColumns();
    store_.GoTo(outside_.programFolder);
    const Text settingsFile = outside_.programFolder + u"settings.ini";
    settingsUnread_ = WhyUnread(settingsFile);
    settings_ = LoadSettings(outside_.profile, outside_.files, settingsFile);
    const std::vector<RefusedExtra> refused =
        LoadExtras(settings_, outside_.profile, outside_.files, settingsFile);
    const RefusedCaptions captions =
        LoadCaptions(settings_.words, outside_.profile, outside_.files, settingsFile);
    if (settingsUnread_.empty()) settingsUnread_ = WhyUnread(settingsFile); // nor locked meanwhile
    store_.TakeFromSettings(settings_.store);
    window_.ShowSettings(settings_);
    Run([&, this] {
        window_.Appear(); // its buttons disabled already: they are drawn once
        log_.SetPath(outside_.programFolder + u"log.txt");
        if (!settings_.databaseInStore) OpenDatabase();
        if (!settingsUnread_.empty()) window_.ShowBox(BoxIcon::warning, settingsUnread_);
        window_.ProcessEvents(); // a click on the splash window
        if (told_.run == UnattendedRun::none) window_.ShowFirstBox(u"IMPORTANT! Please Read", kImportant);
        LogLine(kSeparatorLine, Record::yes);
        LogLine(u"Started " + ProgramTitle() + u" - " + ProgramVersion(), Record::yes);
        if (!settingsUnread_.empty()) LogLine(settingsUnread_, Record::yes);
        for (const auto& [row, stored] : refused)
            LogLine(u"settings.ini: " + WhyRefused(row, stored), Record::yes);
        if (captions.letters)
            LogLine(u"settings.ini: Sendkeys takes letters from A to Z, which these are not: " +
                        *captions.letters,
                    Record::yes);
        if (captions.title)
            LogLine(u"settings.ini: one title cannot be that of two columns: " + *captions.title,
                    Record::yes);
        for (const Text& note : saved_.notes) LogLine(note, Record::yes);
        WarnIfFolderIsReadOnly();
        if (!closeAsked_) SyncWithOe();
    });
    if (told_.run != UnattendedRun::none) DoAsTold();
}

// Each of its keys would pass for one that is not there, and closing would write that.
Text Program::WhyUnread(const Text& settingsFile)
{
    std::string unused;
    const FileError error = outside_.files.ReadWhole(settingsFile, unused);
    if (error == FileError::none || error == FileError::notFound) return {};
    return u"settings.ini cannot be read, so your choices are not known and are not written at the end; "
           u"without "
           u"a store folder chosen anew, e-mails go to Quillbox's own. Best close Quillbox, and start it "
           u"again "
           u"later: " +
           Describe(error);
}

Text Program::WhyRefused(const ExtraRow& row, const Text& value)
{
    return Text(row.key) + u" takes a number from " + DecimalText(row.least) + u" to " +
           DecimalText(row.most) + u", which this is not: " + value;
}

Text Program::DatabasePath() const
{
    const Text name = u"saved.mdb";
    return settings_.databaseInStore ? PathInDirectory(store_.Path(), name) : outside_.programFolder + name;
}

// One that could not be opened in a store may be free by the next press, or the right store back.
bool Program::HasTriedDatabase() const
{
    return EqualNoCase(databasePath_, DatabasePath()) && (saved_.IsOpen() || !settings_.databaseInStore);
}

// Not before it is needed: a folder that is only passed through on the page "Store" gets no database.
void Program::UseDatabase()
{
    if (HasTriedDatabase()) return;
    if (!databasePath_.empty() &&
        !EqualNoCase(databasePath_, DatabasePath())) { // nobody marks as saved here what was not found there
        window_.ClearResults();
        LogLine(kTableCleared, Record::yes);
    }
    CloseSavedEmails(saved_);
    OpenDatabase();
    for (const Text& note : saved_.notes) LogLine(note, Record::yes);
}

void Program::OpenDatabase()
{
    const Text path = databasePath_ = DatabasePath();
    const Text reasons = OpenSavedEmails(saved_, outside_.files, path, outside_.databaseMakers);
    if (saved_.IsWritable()) return;
    if (saved_.IsOpen())
        return window_.ShowBox(
            BoxIcon::warning,
            u"The database of saved emails can be read but not written, so exporting stays off:\r\n" + path +
                u"\r\n\r\n" + saved_.whyReadOnly);
    window_.ShowBox(BoxIcon::warning,
                    u"The database of saved emails cannot be opened, so exporting stays off:\r\n" + path +
                        u"\r\n\r\n" + reasons);
}

// A log.txt that alone is read-only is the user's choice and no matter for a message.
void Program::WarnIfFolderIsReadOnly()
{
    const Text probe = outside_.programFolder + u"settings.tmp";
    FileError error = FileError::none;
    if (outside_.files.Open(probe, OpenMode::createNew, error)) {
        (void)outside_.files.Delete(probe);
    } else if (error != FileError::exists) {
        LogLine(u"The program's folder cannot be written: settings and log are not kept.", Record::yes);
    }
}

bool Program::IsEnabled(Needs needs) const
{
    switch (needs) {
    case Needs::nothing:
        return true;
    case Needs::idle:
        return !running_;
    case Needs::folders:
        return !running_ && !run_.nodes.empty();
    case Needs::records:
        break;
    }
    // One that is not open yet tells its condition in a box.
    return !running_ && (saved_.IsWritable() || !HasTriedDatabase());
}

RunOptions Program::Options()
{
    window_.ReadSettings(settings_);
    settings_.options.storeFolder = store_.Path();
    return settings_.options;
}

// While it lives, a command is under way.
class Program::Bracket {
public:
    explicit Bracket(Program& program) : program_(program)
    {
        program_.running_ = true;
        program_.flags_ = {};
        program_.client_.missedExtras.clear();
    }
    ~Bracket() noexcept(false) // the window may lack memory: that is for its procedure to say
    {
        program_.running_ = false;
        program_.window_.EndCommand();
    }
    Bracket(const Bracket&) = delete;
    Bracket& operator=(const Bracket&) = delete;

private:
    Program& program_;
};

void Program::Run(const std::function<void()>& command)
{
    if (running_) return;
    {
        const Bracket bracket(*this);
        try {
            window_.BeginCommand();
            command();
        } catch (const DatabaseError& error) {
            flags_.runCompleted = false;
            ReportDatabaseError(window_, error);
        } catch (const std::exception& error) {
            flags_.runCompleted = false;
            const Text words = u"Error: " + FromUtf8(error.what());
            LogLine(words, Record::yes);
            window_.ShowBox(BoxIcon::warning, words);
        }
    }
    if (closeAsked_) Close();
}

void Program::AskToClose()
{
    closeAsked_ = true;
    if (!running_) return Close();
    flags_.stopAfterEmail = true;
    flags_.stopAfterFolder = true;
    flags_.stopRequested = true;
    flags_.closing = true;
    window_.CloseBox(); // the run may be waiting for it
}

void Program::EndSession()
{
    WriteLastRecords();
    AskToClose();
}

void Program::WriteLastRecords()
{
    if (lastRecordsWritten_) return;
    lastRecordsWritten_ = true;
    LogLine(u"Closing " + ProgramTitle(), Record::yes);
    if (!settingsUnread_.empty()) return;
    window_.ReadSettings(settings_);
    settings_.store = store_.ToRemember();
    if (told_.close) return; // the choices are the switches', not the user's
    SaveSettings(settings_, outside_.profile, outside_.programFolder + u"settings.ini");
}

void Program::Close()
{
    if (closed_) return;
    WriteLastRecords(); // without memory it throws: the window stays, and can be closed again
    CloseSavedEmails(saved_);
    closed_ = true;
    window_.Destroy();
}
