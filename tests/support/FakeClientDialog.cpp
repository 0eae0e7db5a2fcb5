// The fake client's "Save Message As" and the boxes that come behind it.
#include "platform/posix/CodePage1252.h"
#include "store/StoreNames.h"
#include "tests/support/FakeClient.h"

namespace {

// Of a cell such as "03/04/2007 10:15", half a minute later.
std::string MailDate(const Text& cell)
{
    static const char* const kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                          "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    int day = 0, month = 0, year = 0;
    char time[6] = "";
    if (std::sscanf(ToUtf8(cell).c_str(), "%d/%d/%d %5s", &day, &month, &year, time) != 4) return "";
    return std::to_string(day) + ' ' + kMonths[month - 1] + ' ' + std::to_string(year) + ' ' + time +
           ":30 +0000";
}
} // namespace

void FakeClient::AskForDialog()
{
    if (noDialog || !windows_.count(main_)) return;
    const std::size_t ask = asks_++;
    const int delay = ask < dialogDelays.size() ? dialogDelays[ask] : dialogDelay;
    for (int copy = 0; copy < (twoDialogs ? 2 : 1); ++copy)
        if (delay == 0 && !IsSilent())
            OpenDialog(Selected());
        else
            Later(delay, [this, email = Selected()] { OpenDialog(email); });
}

std::string FakeClient::BytesOf(const std::vector<Text>& row)
{
    const auto header = [&](const char* name, std::size_t column) {
        return name + (": " + ToUtf8(row[column])) + "\r\n";
    };
    return header("From", 1) + header("To", 5) + header("Subject", 2) + "Received: from a by b; " +
           MailDate(row[3]) + "\r\nDate: " + MailDate(row[4]) + "\r\n\r\nmail\r\n";
}

FakeClient::Email FakeClient::Selected() const
{
    const int row = FirstSelected();
    if (row < 0 || row >= std::ssize(Rows()) || Rows()[static_cast<std::size_t>(row)].size() < 6)
        return {row, u"", u"", "mail"};
    const std::vector<Text>& cells = Rows()[static_cast<std::size_t>(row)];
    return {row, cells[2], folders[static_cast<std::size_t>(shown)].name, BytesOf(cells)};
}

void FakeClient::OpenDialog(Email email)
{
    const WindowHandle dialog = AddWindow(u"#32770", u"Save Message As", 0, ownerless ? 0 : main_);
    if (nameAfter > 0)
        Later(nameAfter, [&window = windows_[dialog], name = std::exchange(windows_[dialog].caption, u"")] {
            window.caption = name;
        });
    if (takesAtOpening) email = Selected();
    dialogs_[dialog] = {std::move(email), u"C:\\Proposed.eml"};
    if (!noSaveButton) AddWindow(u"Button", u"&Save", dialog);
    AddWindow(u"Button", u"Cancel", dialog);
    AddWindow(u"ComboBox", savesAs, dialog);
    if (noCombo) return;
    const WindowHandle outer = AddWindow(u"ComboBoxEx32", u"", dialog);
    const WindowHandle combo = AddWindow(u"ComboBox", u"", outer);
    if (!noEdit) AddWindow(u"Edit", u"", combo);
}

void FakeClient::PressSave(WindowHandle dialog)
{
    const SaveDialog filled = dialogs_[dialog];
    boxesLeft_ = boxes;
    if (!saveNothing && saveTo_.FileExists(filled.typed)) // asked before anything is written
        boxesLeft_ = {{u"It exists. Replace it?", {u"&Yes", u"&No"}}};
    else if (boxes.empty() && !saveTo_.TakesFile(filled.typed))
        boxesLeft_ = {{u"The path does not exist.", {u"OK"}}};
    if (!boxesLeft_.empty()) return ShowNextBox(dialog);
    const auto save = [this, path = filled.typed, email = filled.email] { SaveTo(path, email); };
    if (fileAfter > 0 && writesSilently) FallSilent(fileAfter);
    if (fileAfter > 0)
        Later(fileAfter, save);
    else if (!saveNothing)
        save();
    if (!keepDialog) RemoveWindow(dialog);
    if (onSave) onSave(static_cast<int>(saved.size()));
}

void FakeClient::SaveTo(const Text& path, const Email& email)
{
    saved.push_back({email, path});
    saveTo_.AddFile(path, wholeAfter > 0 ? email.bytes.substr(0, firstBytes) : email.bytes);
    if (wholeAfter > 0)
        Later(wholeAfter, [this, path, bytes = email.bytes] { saveTo_.AddFile(path, bytes); });
}

void FakeClient::ShowNextBox(WindowHandle dialog)
{
    if (boxesLeft_.empty()) return;
    const Box shownBox = boxesLeft_.front();
    boxesLeft_.erase(boxesLeft_.begin());
    if (shownBox.leavesPart) saveTo_.AddFile(dialogs_[dialog].typed, "a part");
    if (shownBox.ofMainWindow && dialogs_.count(dialog)) RemoveWindow(dialog);
    const WindowHandle box =
        AddWindow(u"#32770", u"Save Message As", 0, windows_.count(dialog) ? dialog : main_);
    const WindowHandle nest = AddWindow(u"DirectUIHWND", u"", box);
    Later(shownBox.fillsAfter, [this, nest, labels = shownBox.buttons] {
        for (const Text& label : labels) AddWindow(u"Button", label, nest);
    });
    Later(shownBox.wordsAfter, [this, box, words = shownBox.words] { AddWindow(u"Static", words, box); });
    Sleep(0);
    if (!shownBox.late) openBox_ = box;
    if (!boxesLeft_.empty() && boxesLeft_.front().over) ShowNextBox(box);
}

void FakeClient::PressButton(WindowHandle button)
{
    const WindowHandle dialog = TopOf(button);
    const Text label = windows_[button].english;
    pressed.push_back(label);
    if (label == u"&Save") {
        PressSave(dialog);
    } else if (!dialogs_.count(dialog)) { // a box
        const auto close = [this, dialog, owner = windows_[dialog].owner] {
            if (!windows_.count(dialog)) return;
            RemoveWindow(dialog);
            ShowNextBox(owner);
        };
        if (--lostClicks >= 0) return;
        if (boxesStay > 0)
            Later(boxesStay, close);
        else
            close();
    } else if (!keepDialog && --lostClicks < 0) {
        RemoveWindow(dialog);
    }
}

Answer FakeClient::SendGetText(WindowHandle window, int size, Text& text)
{
    constexpr std::uint32_t kGetText = 0x000D;
    const Answer answer = Send(window, kGetText, 0, 0);
    text = answer.reply == Reply::given ? CaptionOf(window, size) : Text();
    return answer;
}

Answer FakeClient::SendSetText(WindowHandle window, const std::string& ansi)
{
    constexpr std::uint32_t kSetText = 0x000C;
    const Answer answer = Send(window, kSetText, 0, 0);
    if (answer.reply != Reply::given) return answer; // late, it takes no name
    if (deafEdit || ClassOf(window, 100) != u"Edit") return {Reply::given, 0};
    const Text path = dialogs_[TopOf(window)].typed = CodePage1252().FromAnsi(ansi);
    if (onName) onName(path);
    return {Reply::given, 1};
}

bool FakeClient::IsOnDisk(const SavedEmail& email) const
{
    const auto file = saveTo_.files.find(FakeFiles::Key(email.path));
    return file != saveTo_.files.end() && file->second == email.bytes;
}

bool FakeClient::IsStored(const Text& subject, const Text& folder) const
{
    return std::any_of(saved.begin(), saved.end(), [&](const SavedEmail& each) {
        return each.subject == subject && (folder.empty() || each.folder == folder) && IsOnDisk(each);
    });
}

void FakeClient::ExpectTruth(const std::vector<std::vector<Text>>& records, bool named) const
{
    std::map<Text, const SavedEmail*> files; // by path; the last one that was saved there
    for (const SavedEmail& each : saved) files[FakeFiles::Key(each.path)] = &each;
    std::erase_if(files, [this](const auto& file) { return !IsOnDisk(*file.second); });
    for (const auto& [key, email] : files) {
        EXPECT_NE(email->path.find(u"\\" + email->folder + u"\\"), Text::npos) << ToUtf8(email->path);
        const Text name = SanitiseFileText(email->subject.substr(0, 128));
        EXPECT_TRUE(email->path.find(u"_" + name) != Text::npos || !named) << ToUtf8(email->path);
    }
    for (const auto& record : records)
        EXPECT_TRUE(std::any_of(files.begin(), files.end(),
                                [&](const auto& file) {
                                    const SavedEmail& email = *file.second;
                                    return (email.subject.substr(0, 128) == record[1] || !named) &&
                                           record[0].ends_with(u"\\" + email.folder);
                                }))
            << "a record without its file: " << ToUtf8(record[1]);
}
