// Dates.h: the dates of header fields, read and shown.
#pragma once
#include <optional>
#include <string>
#include <string_view>

// A moment as a header field tells it.
struct Moment {
    int year, month, day, hour, minute, second;
    int minutesEast; // of Universal Time, of the zone that the other fields are in
};

// Any order of day, month name, year and time ("Tue, 3 Apr 2007 10:15:00 +0100", "Tue Apr  3 10:15:00 2007"),
// "2007-04-03 10:15", and "4/3/2007 10:15 PM" with the month first. Without a zone it is Universal Time.
std::optional<Moment> ParseDate(std::string_view text);

// In the user's short date and time format without seconds, in local time; empty for a date that Windows
// does not know.
std::wstring ShowDate(const Moment& moment);
