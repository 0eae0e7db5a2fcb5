#include "bench/HeaderPeers.h"

#include "bench/Bench.h"
#include "mail/modEmailAnalysis.h"
#include "platform/posix/PosixFiles.h"

#include <fcntl.h>
#include <gmime/gmime.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vmime/platforms/posix/posixHandler.hpp>
#include <vmime/vmime.hpp>

#include <sstream>

namespace {

// The message, or its header block with the empty line.
std::string ReadMessage(const std::string& path, Extent extent, bool& attached)
{
    PosixFiles files;
    std::string bytes;
    if (files.ReadWhole(FromUtf8(path), bytes) != FileError::none) Fail("cannot read " + path);
    attached = HasAttachmentMark(bytes);
    if (extent == Extent::headerBlock) bytes.resize(std::min(bytes.find("\r\n\r\n"), bytes.size() - 4) + 4);
    return bytes;
}

// GMime.

std::string TextOf(InternetAddressList* list)
{
    char* const text = list != nullptr ? internet_address_list_to_string(list, nullptr, FALSE) : nullptr;
    std::string answer = text != nullptr ? text : "";
    g_free(text);
    return answer;
}

std::int64_t MomentOf(const char* date)
{
    GDateTime* const parsed = date != nullptr ? g_mime_utils_header_decode_date(date) : nullptr;
    if (parsed == nullptr) return 0;
    const std::int64_t moment = g_date_time_to_unix(parsed);
    g_date_time_unref(parsed);
    return moment;
}

// VMime.

const vmime::charset& Utf8()
{
    static const vmime::charset utf8("utf-8");
    return utf8;
}

std::string TextOf(const vmime::mailbox& mailbox)
{
    const std::string address = mailbox.getEmail().toString();
    if (mailbox.getName().isEmpty()) return address;
    return mailbox.getName().getConvertedText(Utf8()) + " <" + address + ">";
}

std::string MailboxesIn(const vmime::header& header, const char* name)
{
    if (const auto one = header.findFieldValue<vmime::mailbox>(name)) return TextOf(*one);
    const auto list = header.findFieldValue<vmime::addressList>(name);
    std::string text;
    for (std::size_t i = 0; list && i < list->getAddressCount(); ++i)
        if (const auto mailbox = vmime::dynamicCast<const vmime::mailbox>(list->getAddressAt(i)))
            text += (text.empty() ? "" : ", ") + TextOf(*mailbox);
    return text;
}

std::int64_t MomentOf(const vmime::datetime& date)
{
    const vmime::datetime universal = vmime::utility::datetimeUtils::toUniversalTime(date);
    std::tm fields{};
    fields.tm_year = universal.getYear() - 1900;
    fields.tm_mon = universal.getMonth() - 1;
    fields.tm_mday = universal.getDay();
    fields.tm_hour = universal.getHour();
    fields.tm_min = universal.getMinute();
    fields.tm_sec = universal.getSecond();
    return timegm(&fields);
}

} // namespace

Answer ReadWithGmime(const std::string& path, Extent extent)
{
    Answer answer;
    const std::string bytes = ReadMessage(path, extent, answer.attached);
    GMimeStream* const stream = g_mime_stream_mem_new_with_buffer(bytes.data(), bytes.size());
    GMimeParser* const parser = g_mime_parser_new_with_stream(stream);
    if (GMimeMessage* const message = g_mime_parser_construct_message(parser, nullptr)) {
        answer.from = TextOf(g_mime_message_get_from(message));
        answer.to = TextOf(g_mime_message_get_to(message));
        answer.cc = TextOf(g_mime_message_get_cc(message));
        answer.bcc = TextOf(g_mime_message_get_bcc(message));
        if (const char* const subject = g_mime_message_get_subject(message)) answer.subject = subject;
        GMimeObject* const object = GMIME_OBJECT(message);
        answer.sent = MomentOf(g_mime_object_get_header(object, "Date"));
        answer.delivery = MomentOf(g_mime_object_get_header(object, "Delivery-date"));
        const char* const hop = g_mime_object_get_header(object, "Received");
        const char* const semicolon = hop != nullptr ? std::strchr(hop, ';') : nullptr;
        if (semicolon != nullptr) answer.received = MomentOf(semicolon + 1);
        g_object_unref(message);
    }
    g_object_unref(parser);
    g_object_unref(stream);
    return answer;
}

Answer ReadWithVmime(const std::string& path)
{
    Answer answer;
    vmime::header header;
    header.parse(ReadMessage(path, Extent::headerBlock, answer.attached));
    answer.from = MailboxesIn(header, "From");
    answer.to = MailboxesIn(header, "To");
    answer.cc = MailboxesIn(header, "Cc");
    answer.bcc = MailboxesIn(header, "Bcc");
    if (const auto subject = header.findFieldValue<vmime::text>("Subject"))
        answer.subject = subject->getConvertedText(Utf8());
    if (const auto sent = header.findFieldValue<vmime::datetime>("Date")) answer.sent = MomentOf(*sent);
    if (const auto delivery = header.findFieldValue<vmime::text>("Delivery-date"))
        answer.delivery = MomentOf(vmime::datetime(delivery->getWholeBuffer()));
    if (const auto hop = header.findFieldValue<vmime::relay>("Received"))
        answer.received = MomentOf(hop->getDate());
    return answer;
}

PythonReader::PythonReader(const std::filesystem::path& directory)
{
    int toChild[2], fromChild[2];
    if (::pipe2(toChild, O_CLOEXEC) != 0 || ::pipe2(fromChild, O_CLOEXEC) != 0) Fail("no pipe");
    process_ = ::fork();
    if (process_ == 0) {
        ::dup2(toChild[0], STDIN_FILENO);
        ::dup2(fromChild[1], STDOUT_FILENO);
        const std::string script = QUILLBOX_BENCH_FOLDER "/headers.py";
        ::execlp("python3", "python3", script.c_str(), directory.c_str(), nullptr);
        ::_exit(127);
    }
    ::close(toChild[0]);
    ::close(fromChild[1]);
    to_ = ::fdopen(toChild[1], "w");
    from_ = ::fdopen(fromChild[0], "r");
}

PythonReader::~PythonReader()
{
    std::fclose(to_); // it ends then
    std::fclose(from_);
    ::waitpid(process_, nullptr, 0);
}

void PythonReader::Ask(const std::string& command)
{
    std::fprintf(to_, "%s\n", command.c_str());
    std::fflush(to_);
}

std::string PythonReader::Line()
{
    std::string line;
    for (int byte = std::getc(from_); byte != '\n'; byte = std::getc(from_)) {
        if (byte == EOF) Fail("python3 has ended");
        line += static_cast<char>(byte);
    }
    return line;
}

std::vector<Answer> PythonReader::Answers()
{
    Ask("answers");
    std::vector<Answer> answers;
    for (std::size_t left = std::stoul(Line()); left > 0; --left) {
        std::istringstream fields(Line());
        Answer answer;
        for (std::string* text : {&answer.from, &answer.to, &answer.cc, &answer.bcc, &answer.subject})
            std::getline(fields, *text, '\t');
        fields >> answer.delivery >> answer.sent >> answer.received >> answer.attached;
        answers.push_back(answer);
    }
    return answers;
}

void PythonReader::ReadAll()
{
    Ask("read");
    (void)Line();
}

void PreparePeers()
{
    g_mime_init();
    vmime::platform::setHandler<vmime::platforms::posix::posixHandler>();
}
