// PlainSearch.h: the search for the file of an e-mail as it is told in words.
#pragma once
#include "folders/MatchScore.h"

#include <algorithm>

class PlainSearch {
public:
    explicit PlainSearch(const std::vector<EmlSummary>& records) : records_(records) {}
    int Match(const EmailEntry& entry)
    {
        for (int j = start_; j < static_cast<int>(records_.size()); ++j) {
            if (MatchScore(entry, records_[static_cast<std::size_t>(j)]) != 100) continue;
            if (j - 100 >= 0) start_ = j - 100;
            return j;
        }
        return -1;
    }
    void BeginAt(int record) { start_ = std::max(record, 0); } // as behind a match a hundred later

private:
    const std::vector<EmlSummary>& records_;
    int start_ = 0;
};
