// clsCRC.h: CRC-32 and CRC-16 of bytes and texts.
// Fails by: CalculateFile answers nothing for an empty or unreadable file; the rest cannot fail.
#pragma once
#include "platform/CodePage.h"
#include "platform/Files.h"

#include <cstdint>
#include <optional>
#include <string_view>

class clsCRC {
public:
    explicit clsCRC(CodePage& codePage); // CRC-32 is selected
    // Non-zero: CRC-32 (ISO-HDLC, as in zip); zero: CRC-16 (XMODEM). Clears.
    void SetAlgorithm(std::int32_t algorithm);
    std::int32_t Algorithm() const { return crc32_ ? -1 : 0; }
    void Clear();

    // Run the bytes through the register without clearing it; no bytes leave it as it is. Texts are turned
    // into bytes of the ANSI code page first.
    std::int32_t AddBytes(std::string_view bytes);
    std::int32_t AddString(TextView text);
    // The same after Clear.
    std::int32_t CalculateBytes(std::string_view bytes);
    std::int32_t CalculateString(TextView text);
    std::optional<std::int32_t> CalculateFile(Files& files,
                                              const Text& path); // empty file: register untouched

    std::int32_t Value() const;
    // Kept: CRC-32 is inverted on the way out only, so that writing back what was read does not go on where
    // the reading left off.
    void SetValue(std::int32_t value);

private:
    CodePage& codePage_;
    bool crc32_ = true;
    std::uint32_t register32_ = 0xFFFFFFFFu;
    std::uint32_t register16_ = 0;
};

// A CRC as the system writes it: upper-case hexadecimal of the 32 bits, without leading zeros.
Text CrcText(std::int32_t value);
