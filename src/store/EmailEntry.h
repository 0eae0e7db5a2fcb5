// EmailEntry.h: one e-mail as the mail client's message list shows it.
#pragma once
#include "text/DayCount.h"
#include "text/Text.h"

#include <cstdint>
#include <vector>

struct EmailEntry {
    std::vector<Text> From; // never without an element 0, which may be empty
    Text Subject;
    std::vector<Text> To;
    double Received = kNoListDate; // day counts; a date column that the list lacks keeps this one
    double Sent = kNoListDate;
    Text Crc;             // upper-case hexadecimal without leading zeros (store/Identity.h)
    std::int32_t row = 0; // place in the client's list, which sorting does not change: the e-mail ID
};
