// Words.h: what the values on the command line are made of: numbers, parts, names of a table.
#pragma once
#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

// False unless all of the text is a number.
bool ParseNumber(const std::wstring& text, int& number);

std::vector<std::wstring> SplitAt(wchar_t separator, const std::wstring& text);

// The entry of a table whose member `name` is that name; null when there is none.
template <class Table>
auto FindName(const Table& table, const std::wstring& name) -> decltype(std::begin(table))
{
    const auto found = std::find_if(std::begin(table), std::end(table),
                                    [&name](const auto& entry) { return name == entry.name; });
    return found == std::end(table) ? nullptr : found;
}
