// Summary.cpp: reads a message's headers for the list.
#include "demo/client/Summary.h"

#include "demo/client/Addresses.h"
#include "demo/client/Dates.h"
#include "demo/mailbox/Headers.h"

namespace {

std::wstring DateCell(std::string_view text)
{
    const std::optional<Moment> moment = ParseDate(text);
    return moment ? ShowDate(*moment) : std::wstring();
}

bool IsUrgent(std::string_view headers)
{
    const std::string priority = HeaderValue(headers, "X-Priority");
    return priority.starts_with('1') || priority.starts_with('2') ||
           EqualNoCase(HeaderValue(headers, "Importance"), "high");
}

} // namespace

Summary Summarise(std::string_view message)
{
    const std::string_view headers = HeaderBlock(message);
    const std::string type = HeaderValue(headers, "Content-Type");
    const std::string received = HeaderValue(headers, "Received"); // the topmost: the last hop
    const RawCharset raw{CodePageOf(Parameter(type, "charset"))};

    Summary summary;
    summary.from = DisplayNames(HeaderValue(headers, "From"), raw);
    summary.subject = DecodeHeader(HeaderValue(headers, "Subject"), raw);
    summary.to = DisplayNames(HeaderValue(headers, "To"), raw);
    summary.sent = DateCell(HeaderValue(headers, "Date"));
    const std::size_t semicolon = received.rfind(';');
    if (semicolon != std::string::npos) summary.received = DateCell(received.substr(semicolon + 1));
    summary.attachment = EqualNoCase(std::string_view(type).substr(0, 15), "multipart/mixed");
    summary.urgent = IsUrgent(headers);
    return summary;
}
