// MessageDates.h: dates of messages as moments. (HeaderDates.h reads them as the mail client's list is
// compared with.)
#pragma once
#include "mail/MessageFields.h"
#include "text/DayCount.h"

#include <optional>

inline constexpr std::int64_t kBefore1970 = 25569LL * 24 * 60 * 60; // seconds from day 0 to 1970

// Seconds since the beginning of 1970 in Universal Time, of a date in the form of RFC 5322, of its older ones
// or of asctime, zones by name included; one without a zone is taken for Universal Time, one without a time
// for midnight. Nothing for what is no date of the years 1900 to 9998: the next one ends beyond the calendar
// somewhere on earth.
std::optional<std::int64_t> ReadMessageDate(std::string_view value);

// When the message was sent, else when its last hop received it.
std::optional<std::int64_t> DateOfMessage(const MessageFields& message);

DateFields FieldsOfMoment(std::int64_t secondsSince1970); // in Universal Time
