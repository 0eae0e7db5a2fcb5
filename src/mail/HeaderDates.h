// HeaderDates.h: dates of message headers and of list cells, as day counts (text/DayCount.h).
// Fails by: ValueFault: Type mismatch for a day, month or year that is no number, Overflow for a number
// beyond 16 bits, Invalid procedure call or argument for a date outside the years 100 to 9999.
#pragma once
#include "platform/Clock.h"
#include "platform/Locale.h"
#include "text/DayCount.h"

// Reads any of the shapes that dates have in headers; the result is in Universal Time when the text names a
// zone, as it stands otherwise. The text is replaced by the result as "yyyy/mm/dd hh:nn:ss". Empty text:
// kNoListDate, and the text stays empty. Month names are the locale's.
double ParseHeaderDate(Text& text, Locale& locale);
double HeaderDateOf(TextView text, Locale& locale); // the same of a text without runs of spaces, which stays

// Of a month's name, 1 to 12: a text of three characters is compared with the abbreviated names, any other
// with the full ones. 0: no match.
int MonthNumber(TextView month, Locale& locale);

// "Tue, 3 2007": the first month, "1" to "12", in which that day of that year falls on the weekday; empty
// when there is none.
Text MonthFromWeekday(TextView text, Locale& locale);

// "hh:mm:ss" as a day count from 0; 0 without two colons. Each part is the number it starts with; they may
// carry over (25 hours are a day and an hour).
double TimeOfText(TextView text);

// "dd/mm/yyyy hh:nn"; with roundFirst a minute later from second 30 on.
Text FormatListDate(double date, bool roundFirst);

// A cell of a date column of the mail client's list: the user's locale first, then ParseHeaderDate.
// kNoListDate for an empty cell and for one that neither can read; never throws ValueFault.
double ParseListDate(TextView cell, Locale& locale);

// What the settings "Apply DST" and "Time Offset" do to a list date: with applyDst 1 an hour less while
// daylight saving time is in force now, then timeOffset months more when it is above 0.
double AdjustListDate(double date, int applyDst, float timeOffset, Clock& clock);
