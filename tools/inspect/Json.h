// Json.h: one JSON object per line, written to standard output.
#pragma once
#include "text/Json.h"

// The shortest text that reads back as the same number; null for what is no finite number.
std::string JsonNumber(double number);

class JsonObject {
public:
    void Add(std::string_view key, TextView text) { AddRaw(key, JsonText(text)); }
    void Add(std::string_view key, double number) { AddRaw(key, JsonNumber(number)); }
    // Not an overload of Add: a pointer must never turn into a truth value.
    void AddBool(std::string_view key, bool value) { AddRaw(key, value ? "true" : "false"); }
    void AddRaw(std::string_view key, std::string_view json); // key is plain ASCII
    void Print() const;                                       // with a line feed, whatever the system

private:
    std::string members_;
};
