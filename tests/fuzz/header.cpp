// header.cpp: the whole reader on any bytes, and its values against the plain way of finding them.
#include "mail/modEmailAnalysis.h"
#include "platform/posix/CodePage1252.h"
#include "platform/posix/EnglishLocale.h"
#include "tests/fuzz/Require.h"
#include "tests/support/OneFile.h"

#include <algorithm>

namespace {

// One step after the other on a text, each with a copy.
Text PlainHeaderBlock(TextView message)
{
    Text block(message.substr(0, message.find(u"\r\n\r\n")));
    if (block.size() < message.size()) block += u'\r';
    block = ReplaceAll(block, u"\r\n\t", u"");
    block = ReplaceAll(block, u"\r\n ", u" ");
    block = ReplaceAll(block, u"\t", u" ");
    return CollapseSpaces(block);
}

Text PlainHeaderValue(TextView block, TextView name, bool firstOnly)
{
    Text joined;
    for (const Text& line : SplitAt(block, u"\r\n")) {
        if (!EqualNoCase(TextView(line).substr(0, name.size()), name)) continue;
        const TextView value = TrimSpaces(TextView(line).substr(name.size()));
        if (firstOnly) return Text(value);
        if (value.empty()) continue;
        if (!joined.empty()) joined += u"; ";
        joined += value;
    }
    return joined;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    OneFile files;
    CodePage1252 codePage;
    EnglishLocale locale;
    files.content = BytesOf(data, size);
    EmlSummary summary;
    const Text path = u"/Local Folders/Inbox/1.eml";
    const Text error = ReadEmlSummary(path, {files, codePage, locale, u"Local Folders"}, summary);
    Require(error.empty() == (summary.FileName == u"1.eml"), "a summary or an error, never both");

    const Text message = codePage.FromAnsi(files.content);
    const Text plain = PlainHeaderBlock(message);
    for (const std::string name : {"from:", "SUBJECT:", "Date:", "a"})
        for (const bool firstOnly : {true, false})
            Require(codePage.FromAnsi(HeaderValue(files.content, name, firstOnly)) ==
                        PlainHeaderValue(plain, FromAscii(name), firstOnly),
                    "the value of a header");
    if (!error.empty()) return 0;
    Require(summary.Cc == PlainHeaderValue(plain, u"Cc:", false), "Cc");
    Require(summary.Bcc == PlainHeaderValue(plain, u"Bcc:", false), "Bcc");
    const bool marked = FindNoCase(message, u"content-disposition: attachment;\r\n") != Text::npos;
    Require(summary.HasAttachment == marked, "the attachment mark");
    return 0;
}
