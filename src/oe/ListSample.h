// ListSample.h: whether the client has rebuilt its message list, where the number of rows does not tell.
#pragma once
#include "oe/OeClient.h"

// Of a list of `count` rows: the identities of the first and the last ones, of a short list all.
class ListSample {
public:
    ListSample(OeClient& client, std::int32_t count);

    // Whether the list, of `count` rows by now, is another folder's: less than half of the sample is in it,
    // wherever. A list that mail comes into or that is sorted anew stays the same. Two folders that hold
    // mostly the same e-mails pass for one, and so does a list of which a row cannot be read.
    bool IsRebuilt(std::int32_t count);

private:
    OeClient& client_;
    std::vector<Text> before_;
    std::vector<Text> sortedAnew_{}; // the sample of a list that was found to be the same one
};
