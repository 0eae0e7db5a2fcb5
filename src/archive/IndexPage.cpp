#include "archive/IndexPage.h"

#include "archive/PageParts.h"
#include "platform/FileNames.h"
#include "text/Json.h"

namespace {

constexpr std::size_t kLongestShown = 300; // of a list of recipients; the e-mail itself has them all
constexpr std::string_view kMark = "<meta name=\"generator\" content=\"Quillbox\">";

// JSON that may stand in a page's script: without "<" nothing in it ends the script or begins a comment.
std::string PageText(TextView text)
{
    std::string json;
    for (const char byte : JsonText(text)) {
        if (byte == '<')
            json += "\\u003c";
        else
            json += byte;
    }
    return json;
}

// RFC 3986, section 2.3: what needs no escape in an address.
std::string PercentEncoded(TextView text)
{
    constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
    constexpr std::string_view kHex = "0123456789ABCDEF";
    std::string encoded;
    for (const char byte : ToUtf8(text)) {
        const auto value = static_cast<unsigned char>(byte);
        if (kPlain.find(byte) != kPlain.npos)
            encoded += byte;
        else
            encoded.append({'%', kHex[value >> 4], kHex[value & 15]});
    }
    return encoded;
}

// From the store to the directory, ended by a slash: "Local%20Folders/Inbox/".
std::string AddressOf(const Store& store, const StoreDirectory& directory)
{
    const Text inside =
        directory.path.substr(std::min(PathOf(store.directories[0], u"").size(), directory.path.size()));
    const char16_t separator =
        store.path.starts_with(u'/') || store.path.find(u'\\') == Text::npos ? u'/' : u'\\';
    std::string address;
    if (inside.empty()) return address;
    for (const Text& level : SplitAt(inside, TextView(&separator, 1))) address += PercentEncoded(level) + "/";
    return address;
}

// The digest of a part (page/, CMakeLists.txt) as a content security policy wants it.
std::string PolicyHash(std::string_view hex)
{
    constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string base64;
    unsigned bits = 0;
    int count = 0;
    for (const char digit : hex) {
        bits = bits << 4 | static_cast<unsigned>(digit <= '9' ? digit - '0' : digit - 'a' + 10);
        count += 4;
        if (count < 6) continue;
        count -= 6;
        base64 += kAlphabet[bits >> count & 63];
    }
    if (count > 0) base64 += kAlphabet[bits << (6 - count) & 63];
    while (base64.size() % 4 != 0) base64 += '=';
    return "sha256-" + base64;
}

std::string FolderRow(const Store& store, const StoreDirectory& directory)
{
    const Text label = directory.folder.substr(directory.folder.rfind(u'\\') + 1); // npos + 1 is 0
    return "{\"name\":" + PageText(directory.folder) + ",\"label\":" + PageText(label) + ",\"path\":\"" +
           AddressOf(store, directory) + "\"}";
}

// In the order that page/index.js names.
std::string EmailRow(const IndexedEmail& email)
{
    Text to = email.to;
    if (to.size() > kLongestShown) to.replace(kLongestShown, to.npos, u"\u2026");
    return "[" + std::to_string(email.directory) + "," + PageText(email.file) + "," +
           (email.date ? std::to_string(*email.date) : "null") + "," + PageText(email.from) + "," +
           PageText(to) + "," + PageText(email.subject) + "," + std::to_string(email.size) + "," +
           (email.attachment ? "1" : "0") + "]";
}

void WriteData(ReplacingFile& file, const MailIndex& index, const Text& made)
{
    const Store& store = index.store;
    const Text name = store.path.substr(0, store.path.find_last_not_of(u"\\/") + 1);
    file.Write("{\"store\":" + PageText(name.substr(name.find_last_of(u"\\/") + 1)) +
               ",\"made\":" + PageText(made) + ",\"folders\":[");
    for (std::size_t i = 0; i < store.directories.size(); ++i)
        file.Write((i == 0 ? "\n" : ",\n") + FolderRow(store, store.directories[i]));
    file.Write("],\"rows\":[");
    for (std::size_t i = 0; i < index.emails.size(); ++i)
        file.Write((i == 0 ? "\n" : ",\n") + EmailRow(index.emails[i]));
    file.Write("]}");
}

} // namespace

FileError WriteIndexPage(Files& files, const MailIndex& index, const Text& path, const Text& made)
{
    ReplacingFile file(files, path, kMark);
    std::string_view page = kPageHtml;
    for (std::size_t brace = page.find('{'); brace != page.npos; brace = page.find('{')) {
        const std::size_t end = page.find('}', brace) + 1;
        const std::string_view part = page.substr(brace, end - brace);
        file.Write(page.substr(0, brace));
        page.remove_prefix(end);
        if (part == "{SCRIPT HASH}")
            file.Write(PolicyHash(kPageScriptSha256));
        else if (part == "{STYLE HASH}")
            file.Write(PolicyHash(kPageStyleSha256));
        else if (part == "{STYLE}")
            file.Write(kPageStyle);
        else if (part == "{SCRIPT}")
            file.Write(kPageScript);
        else
            WriteData(file, index, made);
    }
    file.Write(page);
    return file.Finish();
}

Text IndexPagePath(const Text& store)
{
    return PathOf({store, {}}, u"index.html");
}

Text IndexCsvPath(const Text& store)
{
    return PathOf({store, {}}, u"index.csv");
}
