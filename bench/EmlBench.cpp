// EmlBench.cpp: the time to read one message stays linear in its size, whatever is in it.
#include "mail/modEmailAnalysis.h"
#include "platform/posix/CodePage1252.h"
#include "platform/posix/EnglishLocale.h"
#include "tests/support/OneFile.h"

#include <benchmark/benchmark.h>

namespace {

constexpr std::string_view kHeaders = "Received: from a by b; Sun, 14 Nov 2004 08:31:05 +0000\r\n"
                                      "From: =?iso-8859-1?Q?J=F6rg?= <j@x.example>\r\nTo: ann@x.example\r\n"
                                      "Subject: plain\r\nDate: Sun, 14 Nov 2004 09:30:59 +0100\r\nX:\r\n\r\n";

// A message of about that size: what begins it, what is repeated, what ends it.
std::string Message(std::size_t size, std::string_view begin, std::string_view part, std::string_view end)
{
    std::string message(begin);
    message.reserve(size + part.size() + end.size());
    while (message.size() < size) message += part;
    return message += end;
}

void ReadIt(benchmark::State& state, std::string_view begin, std::string_view part, std::string_view end)
{
    OneFile files;
    CodePage1252 codePage;
    EnglishLocale locale;
    files.content = Message(static_cast<std::size_t>(state.range(0)), begin, part, end);
    const EmlContext context{files, codePage, locale, u"Local Folders"};
    for (auto _ : state) {
        EmlSummary summary;
        benchmark::DoNotOptimize(ReadEmlSummary(u"/1.eml", context, summary));
        benchmark::DoNotOptimize(summary);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(files.content.size()));
    state.SetComplexityN(state.range(0));
}

} // namespace

#define EML_BENCHMARK(name, ...)                                                                             \
    BENCHMARK_CAPTURE(ReadIt, name, __VA_ARGS__)                                                             \
        ->RangeMultiplier(16)                                                                                \
        ->Range(1 << 10, 64 << 20)                                                                           \
        ->Unit(benchmark::kMicrosecond)                                                                      \
        ->Complexity(benchmark::oN)

EML_BENCHMARK(base64_body, kHeaders,
              "TWFuIGlzIGRpc3Rpbmd1aXNoZWQsIG5vdCBvbmx5IGJ5IGhpcyByZWFzb24sIGJ1dCBieSB0\r\n", "");
EML_BENCHMARK(prose_body, kHeaders, "Dear Ann, the content of the tin disappoints; attach no hope to it.\r\n",
              "");
EML_BENCHMARK(repeated_header, "", "To: \"Lee, Ann\" <ann@x.example>\r\n", "\r\n");
EML_BENCHMARK(one_subject_line, "Subject: ", "hello  world ", "\r\n\r\n");
EML_BENCHMARK(encoded_words, "Subject:", " =?iso-8859-1?Q?caf=E9?=", "\r\n\r\n");
EML_BENCHMARK(one_base64_word, "Subject: =?utf-8?B?", "w6nigqzD", "?=\r\n\r\n");
EML_BENCHMARK(quoted_commas, "To: ", "'a, b' <a@b>, \"c; d\" ", "\r\n\r\n");
EML_BENCHMARK(folded_lines, "Subject: x", "\r\n\tx", "\r\n\r\n");
EML_BENCHMARK(line_ends, "", "\r\n ", "");
EML_BENCHMARK(almost_marks, kHeaders, "Content-Disposition: attachment;\r", "");
EML_BENCHMARK(words_never_closed, "Subject: ", "=?a?b?c", "");
EML_BENCHMARK(brackets_before_an_address, "To: ", "<a>", "@");
EML_BENCHMARK(brackets_behind_an_address, "To: <a@b>", "<>", "");
EML_BENCHMARK(words_of_a_date, "Date: ", "a ", "");
