// GmimeBench.cpp: files per second beside GMime reading the same headers and searching the same mark, and
// beside just reading the files; all in one run, in turns.
//   bench-gmime [DIRECTORY [ROUNDS]]   without DIRECTORY: 5,000 messages made for the purpose
#include "mail/modEmailAnalysis.h"
#include "platform/posix/CodePage1252.h"
#include "platform/posix/EnglishLocale.h"
#include "platform/posix/PosixFiles.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <gmime/gmime.h>
#include <random>

namespace {

using Paths = std::vector<std::string>;

std::string MadeMessage(std::mt19937& random)
{
    const auto upTo = [&random](unsigned limit) { return static_cast<unsigned>(random() % limit); };
    const auto number = [&](unsigned limit) { return std::to_string(upTo(limit)); };
    const char* const subjects[] = {"Re: minutes of the meeting", "=?iso-8859-1?Q?Gr=FC=DFe_aus_K=F6ln?=",
                                    "=?utf-8?B?UsOpc3Vtw6kgZGUgbGEgcsOpdW5pb24=?=", "Fwd: [list] question",
                                    "=?windows-1252?Q?Price_=96_list?= =?windows-1252?Q?_2007?="};
    const char* const senders[] = {"Ann Lee <ann@x.example>", "\"Lee, Bob\" <bob@x.example>",
                                   "carol@x.example", "=?iso-8859-1?Q?J=F6rg?= <joerg@x.example>"};
    std::string out =
        "Return-Path: <ann@x.example>\r\nDelivery-date: Tue, 3 Apr 2007 1" + number(10) + ":15:00 +0100\r\n";
    for (unsigned hop = 2 + upTo(4); hop > 0; --hop)
        out += "Received: from relay" + number(99) + ".example ([192.0.2." + number(255) +
               "])\r\n\tby mx.example with ESMTP id l33AFx" + number(99999) +
               ";\r\n\tTue, 3 Apr 2007 10:14:5" + number(10) + " +0100 (BST)\r\n";
    out += std::string("From: ") + senders[upTo(4)] + "\r\nTo: " + senders[upTo(4)] + ",\r\n\t" +
           senders[upTo(4)] + "\r\nCc: " + senders[upTo(4)] + "\r\nSubject: " + subjects[upTo(5)] +
           "\r\nDate: Tue, 3 Apr 2007 10:0" + number(10) + ":0" + number(10) + " +0100\r\nMessage-ID: <" +
           number(999999) + "@x.example>\r\nMIME-Version: 1.0\r\nX-Mailer: some mailer 6.00.2900\r\n";
    const bool attached = upTo(10) < 3;
    out += attached
               ? "Content-Type: multipart/mixed;\r\n\tboundary=\"=_part\"\r\n\r\n--=_part\r\nContent-Type: "
                 "text/plain\r\n\r\n"
               : "Content-Type: text/plain; charset=iso-8859-1\r\n\r\n";
    for (unsigned line = 10 + upTo(120); line > 0; --line)
        out += "The minutes of meeting " + number(1000) + " are attached; please read them before " +
               number(30) + " May.\r\n";
    if (!attached) return out;
    out += "--=_part\r\nContent-Type: application/octet-stream\r\nContent-Transfer-Encoding: base64\r\n"
           "Content-Disposition: attachment;\r\n\tfilename=\"a.doc\"\r\n\r\n";
    for (unsigned line = 100 + upTo(1200); line > 0; --line) {
        for (int i = 0; i < 76; ++i)
            out += "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/"[upTo(64)];
        out += "\r\n";
    }
    return out + "--=_part--\r\n";
}

Paths MadeMessages(const std::filesystem::path& directory)
{
    std::mt19937 random(20070403);
    std::filesystem::create_directories(directory);
    Paths paths;
    for (int i = 0; i < 5000; ++i) {
        const std::filesystem::path path = directory / (std::to_string(10000 + i) + ".eml");
        std::ofstream(path, std::ios::binary) << MadeMessage(random);
        paths.push_back(path.string());
    }
    return paths;
}

Paths MessagesBelow(const std::filesystem::path& directory)
{
    Paths paths;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(directory))
        if (entry.is_regular_file() && entry.path().extension() == ".eml")
            paths.push_back(entry.path().string());
    std::sort(paths.begin(), paths.end());
    return paths;
}

PosixFiles files;
CodePage1252 codePage;
EnglishLocale locale;
std::size_t checksum = 0; // so that nothing is left out as unused

void JustRead(const std::string& path)
{
    std::string bytes;
    (void)files.ReadWhole(FromUtf8(path), bytes);
    checksum += bytes.size();
}

void ReadHere(const std::string& path)
{
    EmlSummary summary;
    (void)ReadEmlSummary(FromUtf8(path), {files, codePage, locale, u"Local Folders"}, summary);
    checksum += summary.Subject.size() + summary.FromKey.size() + summary.HasAttachment;
}

std::size_t AddressLength(InternetAddressList* list)
{
    if (list == nullptr) return 0;
    char* text = internet_address_list_to_string(list, nullptr, FALSE);
    const std::size_t length = text != nullptr ? std::string_view(text).size() : 0;
    g_free(text);
    return length;
}

void AddDate(const char* text)
{
    GDateTime* date = text != nullptr ? g_mime_utils_header_decode_date(text) : nullptr;
    if (date == nullptr) return;
    checksum += static_cast<std::size_t>(g_date_time_to_unix(date));
    g_date_time_unref(date);
}

// The mark is searched with this program's own routine, so that only the header reading differs.
void ReadWithGmime(const std::string& path, bool headersOnly)
{
    std::string bytes;
    (void)files.ReadWhole(FromUtf8(path), bytes);
    checksum += HasAttachmentMark(bytes);
    if (headersOnly) bytes.resize(std::min(bytes.find("\r\n\r\n"), bytes.size() - 4) + 4);
    GMimeStream* stream = g_mime_stream_mem_new_with_buffer(bytes.data(), bytes.size());
    GMimeParser* parser = g_mime_parser_new_with_stream(stream);
    if (GMimeMessage* message = g_mime_parser_construct_message(parser, nullptr)) {
        checksum += AddressLength(g_mime_message_get_from(message));
        checksum += AddressLength(g_mime_message_get_to(message));
        checksum += AddressLength(g_mime_message_get_cc(message));
        checksum += AddressLength(g_mime_message_get_bcc(message));
        if (const char* subject = g_mime_message_get_subject(message))
            checksum += std::string_view(subject).size();
        GMimeObject* object = GMIME_OBJECT(message);
        AddDate(g_mime_object_get_header(object, "Date"));
        AddDate(g_mime_object_get_header(object, "Delivery-date"));
        const char* received = g_mime_object_get_header(object, "Received");
        const std::string_view hop = received != nullptr ? received : "";
        if (const std::size_t semicolon = hop.find(';'); semicolon != hop.npos)
            AddDate(received + semicolon + 1);
        g_object_unref(message);
    }
    g_object_unref(parser);
    g_object_unref(stream);
}

struct Contestant {
    const char* name;
    void (*run)(const std::string& path);
    std::vector<double> seconds{};

    // The middle of its rounds: the machine may have other work to do.
    double Median()
    {
        std::sort(seconds.begin(), seconds.end());
        return seconds[seconds.size() / 2];
    }
};

} // namespace

int main(int argc, char** argv)
{
    const std::filesystem::path made = std::filesystem::temp_directory_path() / "quillbox-bench";
    const Paths paths = argc > 1 ? MessagesBelow(argv[1]) : MadeMessages(made);
    const int rounds = argc > 2 ? std::max(1, std::atoi(argv[2])) : 11;
    if (paths.empty()) return std::fputs("no .eml files\n", stderr), 1;
    g_mime_init();
    Contestant contestants[] = {
        {"just reading", JustRead},
        {"quillbox", ReadHere},
        {"GMime, whole message", [](const std::string& path) { ReadWithGmime(path, false); }},
        {"GMime, header block only", [](const std::string& path) { ReadWithGmime(path, true); }}};
    for (const std::string& path : paths) JustRead(path); // into the system's cache
    // Each round gives every contestant its turn on the same hundred files before it goes on.
    for (int round = 0; round < rounds; ++round) {
        double spent[std::size(contestants)] = {};
        for (std::size_t start = 0; start < paths.size(); start += 100) {
            for (std::size_t who = 0; who < std::size(contestants); ++who) {
                const auto begin = std::chrono::steady_clock::now();
                for (std::size_t i = start; i < std::min(start + 100, paths.size()); ++i)
                    contestants[who].run(paths[i]);
                spent[who] += std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
            }
        }
        for (std::size_t who = 0; who < std::size(contestants); ++who)
            contestants[who].seconds.push_back(spent[who]);
    }
    const double here = contestants[1].Median();
    std::printf("%zu files, %d rounds, checksum %zu\n", paths.size(), rounds, checksum);
    for (Contestant& contestant : contestants)
        std::printf("%-26s %9.0f files/s   %5.2f times quillbox's time\n", contestant.name,
                    static_cast<double>(paths.size()) / contestant.Median(), contestant.Median() / here);
    g_mime_shutdown();
    if (argc <= 1) std::filesystem::remove_all(made);
    return 0;
}
