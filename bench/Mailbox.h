// Mailbox.h: a made-up list of e-mails, and what was read of their files.
#pragma once
#include "mail/HeaderDates.h"
#include "mail/modEmailAnalysis.h"
#include "store/EmailEntry.h"

#include <random>

struct Mailbox {
    std::vector<EmailEntry> entries;
    std::vector<EmlSummary> records; // by number as the entries
};

// Seven minutes apart; one in ten comes in the minute of the one before.
inline Mailbox MadeMailbox(std::size_t count)
{
    const Text subjects[] = {u"Re: minutes of the meeting", u"Gr\u00FC\u00DFe aus K\u00F6ln",
                             u"Price \u2013 list 2007", u"Fwd: [list] question", u"holiday photos"};
    const Text people[] = {u"Ann Lee", u"\"Lee, Bob\"", u"carol@x.example", u"J\u00F6rg"};
    std::mt19937 random(20070403);
    Mailbox mailbox;
    std::int64_t minute = 60ll * 24 * 39000;
    for (std::size_t i = 0; i < count; ++i) {
        minute += random() % 10 == 0 ? 0 : 7;
        const double sent = DateFromSeconds(minute * 60), received = DateFromSeconds(minute * 60 + 120);
        const Text subject = subjects[random() % 5] + u" " + DecimalText(static_cast<int>(1000 + i % 9000));
        const Text from = people[random() % 4], to = people[random() % 4];
        EmailEntry entry{{from}, subject, {to}, received, sent, {}, static_cast<std::int32_t>(i)};
        EmlSummary record;
        record.Subject = record.SubjectKey = subject;
        record.FromKey = from;
        record.ToKey = to;
        record.DeliveryDateText = FormatListDate(kNoListDate, false);
        record.SentDateText = FormatListDate(sent, false);
        record.ReceivedDateText = FormatListDate(received, false);
        mailbox.entries.push_back(std::move(entry));
        mailbox.records.push_back(std::move(record));
    }
    return mailbox;
}
