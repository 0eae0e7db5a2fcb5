#include "store/Identity.h"

namespace {

void AppendList(Text& out, const std::vector<Text>& list)
{
    if (list.empty() || list.front().empty()) return;
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (i > 0) out += u'|';
        out += list[i];
    }
}

} // namespace

Text IdentityString(const EmailEntry& entry, Locale& locale)
{
    Text out =
        locale.DateText(entry.Received) + u'+' + locale.DateText(entry.Sent) + u'+' + entry.Subject + u'+';
    AppendList(out, entry.From);
    out += u'+';
    AppendList(out, entry.To);
    return out;
}

Text EmailCrc(const EmailEntry& entry, Locale& locale, clsCRC& crc)
{
    return CrcText(crc.CalculateString(IdentityString(entry, locale)));
}
