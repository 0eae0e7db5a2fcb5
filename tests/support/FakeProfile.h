// FakeProfile.h: one initialisation file in memory, which may refuse to be written.
#pragma once
#include "platform/ProfileFile.h"

#include <gtest/gtest.h>

#include <map>
#include <new>
#include <utility>
#include <vector>

struct FakeProfile final : ProfileFile {
    explicit FakeProfile(Text path) : file(std::move(path)) {}

    Text file;
    std::map<Text, Text> values;                // by "section/key"
    std::vector<std::pair<Text, Text>> written; // likewise, in order
    bool refuse = false;
    bool outOfMemory = false;

    Text Read(const Text& section, const Text& key, const Text& from) override
    {
        EXPECT_EQ(from, file);
        const auto found = values.find(section + u"/" + key);
        return found == values.end() ? Text() : found->second;
    }
    bool Write(const Text& section, const Text& key, const Text& value, const Text& to) override
    {
        EXPECT_EQ(to, file);
        if (outOfMemory) throw std::bad_alloc();
        written.emplace_back(section + u"/" + key, value);
        if (!refuse) values[section + u"/" + key] = value;
        return !refuse;
    }
};
