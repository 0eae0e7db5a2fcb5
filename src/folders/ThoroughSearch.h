// ThoroughSearch.h: which of the saved message files is which e-mail of the client's list, by all that both
// show: for the extra "Thorough Comparison", beside the rules of MatchScore.h.
#pragma once
#include "folders/ShownEmail.h"
#include "oe/OeClient.h"

#include <span>

// For each entry the place of its file, -1 where there is none. A file is given to one entry at the most, and
// to none that differs from it in anything that both show for certain. Alike ones are given in their order.
// What is not known counts for nothing: then the rest has to fit that one e-mail and that one file alone. A
// client shows all dates by one rule, in the user's local time of each day or with today's distance from
// Universal Time: the one counts that more dates fit, and where both fit as well, what is found by both. live
// is called now and then. An entry that could not be read has no file.
std::vector<std::int32_t> SearchThoroughly(OeClient& client, std::span<const EmailEntry* const> entries,
                                           std::span<const ShownEmail> files,
                                           const std::function<void()>& live);
