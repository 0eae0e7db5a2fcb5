// modEmailAnalysis.h: reads one saved message file (.eml) into the values that it is recognised by.
// Fails by: the words that ReadEmlSummary returns.
#pragma once
#include "platform/CodePage.h"
#include "platform/Files.h"
#include "platform/Locale.h"

#include <span>

// Dates are day counts (text/DayCount.h) in Universal Time; a header that is absent gives kNoListDate. The
// ...Key fields are in the form that the mail client's list shows, the plain ones in the form for the user.
struct EmlSummary {
    Text FolderPath; // like "Local Folders\Inbox\Work"
    Text FileName;   // without folder
    Text From;
    Text To;
    Text Cc;  // not decoded
    Text Bcc; // not decoded
    Text Subject;
    double DeliveryDate = 0;
    double ReceivedDate = 0; // of the last hop
    double SentDate = 0;
    bool HasAttachment = false;
    Text DeliveryDateText; // "dd/mm/yyyy hh:nn"
    Text ReceivedDateText;
    Text SentDateText;
    Text FromKey;
    Text ToKey;
    Text SubjectKey;
};

struct EmlContext {
    Files& files;
    CodePage& codePage;
    Locale& locale;
    Text firstFolder; // setting "First folder": where FolderPath begins
};

// Reads the file at path, whose extension must be "eml" in any letter case; any other leaves the summary
// empty and is no failure. The answer is empty, or says what is wrong ("Type mismatch", "Overflow", the read
// error, that memory does not suffice), and then the summary is empty. While it works it holds about six
// times the bytes of the header block, or the file alone if that is more.
Text ReadEmlSummary(const Text& path, const EmlContext& context, EmlSummary& summary);

Text FileExtension(TextView path); // lower-cased; the whole name when it has no "."
Text FileNameOf(TextView path);
Text FolderOf(TextView path, TextView firstFolder);

// One header to look for: every line that starts with name, in any letter case. The values are trimmed of
// spaces, and those that are not empty joined by "; ".
struct HeaderQuery {
    std::string_view name;  // with its colon
    bool firstOnly = false; // only the first line counts, even when its value is empty
    std::string value{};
    bool closed = false;
};
// Of a message's headers, which end before the first empty line (without one all of it is headers). Lines
// that continue a header are joined with it.
void CollectHeaders(std::string_view message, std::span<HeaderQuery> queries);
std::string HeaderValue(std::string_view message, std::string_view name, bool firstOnly);

// Whether a part of the message is marked as attachment.
bool HasAttachmentMark(std::string_view message);
