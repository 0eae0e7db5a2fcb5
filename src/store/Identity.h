// Identity.h: what makes an e-mail the same e-mail: the checksum of its details in the message list.
#pragma once
#include "platform/Locale.h"
#include "store/clsCRC.h"
#include "store/EmailEntry.h"

// Received + Sent + Subject + From + To, parted by "+"; the elements of a list by "|". Dates are the user's
// locale's texts. Kept: a list whose element 0 is empty contributes nothing, whatever follows.
Text IdentityString(const EmailEntry& entry, Locale& locale);

// The entry's CRC text. Two e-mails with the same five details have the same one, by design. It depends on
// the locale's date form and on the ANSI code page of the machine.
Text EmailCrc(const EmailEntry& entry, Locale& locale, clsCRC& crc);
