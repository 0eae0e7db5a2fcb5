// ListSample.h: whether the client has rebuilt its message list, where the number of rows does not tell.
#pragma once
#include "oe/OeClient.h"

// The identities of the first and of the last rows, in the order of their texts; of a short list all. Empty
// when the list does not have `count` rows, or one of them could not be read.
std::vector<Text> SampleList(OeClient& client, std::int32_t count);

// Whether the samples are of two folders: less than half is in both. A list that mail comes into, or a short
// one that is sorted anew, stays the same list. Two folders that hold mostly the same e-mails pass for one.
bool AreOfTwoLists(const std::vector<Text>& before, const std::vector<Text>& now);
