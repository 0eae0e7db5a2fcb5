// dates.cpp: header dates and list cells of any text.
#include "mail/HeaderDates.h"
#include "platform/posix/CodePage1252.h"
#include "platform/posix/EnglishLocale.h"
#include "tests/fuzz/Require.h"
#include "text/Numbers.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    CodePage1252 codePage;
    EnglishLocale locale;
    const Text original = codePage.FromAnsi(BytesOf(data, size));
    Text text = original;
    try {
        const double date = ParseHeaderDate(text, locale);
        Require(text == (original.empty() ? Text() : FormatDate(date, kSortableFormat)),
                "the text is the date");
        Require(DateFromSeconds(SecondsOf(date)) == date, "a date is whole seconds");
        if (original.empty()) return 0;
        Text again = u"{ts '" + FormatDate(date, u"yyyy-mm-dd hh:nn:ss") + u"'}";
        Require(ParseHeaderDate(again, locale) == date, "a date is read back");
    } catch (const ValueFault&) {
    }
    const double listDate = ParseListDate(original, locale);
    Require(FormatListDate(listDate, false).size() == 16, "a list date has a form");

    Require(LeadingNumber(original) == LeadingNumber(original + u"x"),
            "what follows a number changes nothing");
    if (IsNumericText(original))
        Require(IsNumericText(u" " + original + u"\r"), "white space changes nothing");
    return 0;
}
