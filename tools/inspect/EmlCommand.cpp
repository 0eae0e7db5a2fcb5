#include "tools/inspect/EmlCommand.h"

#include "mail/modEmailAnalysis.h"
#include "platform/System.h"
#include "tools/inspect/Json.h"

#include <cstdio>

namespace {

void PrintSummary(const EmlSummary& summary)
{
    JsonObject object;
    object.Add("FolderPath", summary.FolderPath);
    object.Add("FileName", summary.FileName);
    object.Add("From", summary.From);
    object.Add("To", summary.To);
    object.Add("Cc", summary.Cc);
    object.Add("Bcc", summary.Bcc);
    object.Add("Subject", summary.Subject);
    object.Add("DeliveryDate", summary.DeliveryDate);
    object.Add("ReceivedDate", summary.ReceivedDate);
    object.Add("SentDate", summary.SentDate);
    object.AddBool("HasAttachment", summary.HasAttachment);
    object.Add("DeliveryDateText", summary.DeliveryDateText);
    object.Add("ReceivedDateText", summary.ReceivedDateText);
    object.Add("SentDateText", summary.SentDateText);
    object.Add("FromKey", summary.FromKey);
    object.Add("ToKey", summary.ToKey);
    object.Add("SubjectKey", summary.SubjectKey);
    object.Print();
}

void PrintError(const Text& path, const Text& words)
{
    JsonObject object;
    object.Add("FileName", FileNameOf(path));
    object.Add("error", words);
    object.Print();
}

} // namespace

int EmlUsage()
{
    std::fputs("usage: quillbox-inspect eml [--first-folder NAME] FILE...\n", stderr);
    return 1;
}

int EmlCommand(const std::vector<std::string>& args)
{
    std::string firstFolder = "Local Folders";
    std::size_t next = 0;
    if (args.size() >= 2 && args[0] == "--first-folder") {
        firstFolder = args[1];
        next = 2;
    }
    if (next < args.size() && args[next] == "--") {
        ++next;
    } else if (next < args.size() && args[next].starts_with("--")) {
        next = args.size();
    }
    if (next >= args.size()) return EmlUsage();
    SystemFiles files;
    SystemCodePage codePage;
    SystemLocale locale;
    const EmlContext context{files, codePage, locale, FromUtf8(firstFolder)};
    for (; next < args.size(); ++next) {
        const Text path = FromUtf8(args[next]);
        EmlSummary summary;
        const Text error = ReadEmlSummary(path, context, summary);
        if (error.empty())
            PrintSummary(summary);
        else
            PrintError(path, error);
    }
    return 0;
}
