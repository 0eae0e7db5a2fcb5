#include "platform/FileNames.h"

#include <algorithm>

namespace {

// The number that a name begins with, as its digits without leading zeros.
TextView NumberIn(TextView name)
{
    const TextView digits = name.substr(0, std::min(name.find_first_not_of(u"0123456789"), name.size()));
    return digits.substr(std::min(digits.find_first_not_of(u'0'), digits.size()));
}

bool BeginsWithDigit(TextView name)
{
    return !name.empty() && name[0] >= u'0' && name[0] <= u'9';
}

bool PrecedesByName(TextView a, TextView b)
{
    const auto [atA, atB] = std::mismatch(a.begin(), a.end(), b.begin(), b.end(), [](char16_t x, char16_t y) {
        return x == y || FoldCase(x) == FoldCase(y);
    });
    if (atA != a.end() && atB != b.end()) return FoldCase(*atA) < FoldCase(*atB);
    if ((atA == a.end()) != (atB == b.end())) return atA == a.end();
    return a < b;
}

} // namespace

bool IsEmlName(TextView name)
{
    constexpr TextView kEnd = u"eml";
    if (name.size() <= kEnd.size()) return false;
    const TextView before = name.substr(0, name.size() - kEnd.size());
    return EqualNoCase(name.substr(before.size()), kEnd) && before.find(u'.') != TextView::npos;
}

bool NamePrecedes(TextView a, TextView b)
{
    if (!BeginsWithDigit(a) || !BeginsWithDigit(b)) return PrecedesByName(a, b);
    const TextView numberA = NumberIn(a), numberB = NumberIn(b);
    if (numberA.size() != numberB.size()) return numberA.size() < numberB.size();
    return numberA != numberB ? numberA < numberB : PrecedesByName(a, b);
}
