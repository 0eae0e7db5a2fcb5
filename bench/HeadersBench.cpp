// HeadersBench.cpp: the headers of saved e-mails, beside other mail readers and beside just reading the
// files.
//   bench-headers [--files=N] [options of Google Benchmark]
#include "bench/Bench.h"
#include "bench/Corpus.h"
#include "bench/HeaderPeers.h"
#include "mail/modEmailAnalysis.h"
#include "platform/posix/CodePage1252.h"
#include "platform/posix/EnglishLocale.h"
#include "platform/posix/PosixFiles.h"
#include "text/DayCount.h"

namespace {

PosixFiles files;
CodePage1252 codePage;
EnglishLocale locale;

EmlSummary ReadHere(const std::string& path)
{
    EmlSummary summary;
    const Text fault = ReadEmlSummary(FromUtf8(path), {files, codePage, locale, u"Local Folders"}, summary);
    if (!fault.empty()) Fail(path + ": " + ToUtf8(fault));
    return summary;
}

std::int64_t MomentOf(double date)
{
    return date == kNoListDate ? 0 : SecondsOf(date) - SecondsOf(DateFromYmd(1970, 1, 1));
}

Answer AnswerOf(const EmlSummary& read)
{
    return {ToUtf8(read.From),
            ToUtf8(read.To),
            {},
            {},
            ToUtf8(read.Subject),
            MomentOf(read.DeliveryDate),
            MomentOf(read.SentDate),
            MomentOf(read.ReceivedDate),
            read.HasAttachment};
}

// Without blanks and quotes, in which programs write the same differently; Cc and Bcc stay undecoded here.
std::string Compared(const Answer& answer)
{
    std::string text = answer.from + '|' + answer.to + '|' + answer.subject + '|' +
                       std::to_string(answer.delivery) + '|' + std::to_string(answer.sent) + '|' +
                       std::to_string(answer.received) + '|' + std::to_string(answer.attached);
    std::erase_if(text, [](char c) { return c == ' ' || c == '"'; });
    return text;
}

void CheckAnswers(const std::vector<std::string>& paths, PythonReader& python)
{
    const std::vector<Answer> ofPython = python.Answers();
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const std::string here = Compared(AnswerOf(ReadHere(paths[i])));
        const auto compare = [&](const char* who, const Answer& answer) {
            if (Compared(answer) != here)
                Fail(paths[i] + ": " + who + " answers " + Compared(answer) + ", not " + here);
        };
        compare("GMime", ReadWithGmime(paths[i], Extent::headerBlock));
        compare("GMime", ReadWithGmime(paths[i], Extent::wholeMessage));
        compare("VMime", ReadWithVmime(paths[i]));
        compare("Python", ofPython.at(i));
    }
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    const std::size_t count = SizeOption(argc, argv, "--files=", 5000);
    const ScratchFolder scratch;
    const std::vector<std::string> paths = MadeMessages(scratch.Path(), count);
    PythonReader python(scratch.Path());
    PreparePeers();
    CheckAnswers(paths, python);

    const auto each = [&paths](const std::string& name, auto read) {
        Register("headers/" + name, [&paths, read](benchmark::State& state) {
            for (auto _ : state)
                for (const std::string& path : paths) benchmark::DoNotOptimize(read(path));
        });
    };
    each("read", [](const std::string& path) {
        std::string bytes;
        (void)files.ReadWhole(FromUtf8(path), bytes);
        return bytes;
    });
    each("quillbox", ReadHere);
    each("gmime-headers", [](const std::string& path) { return ReadWithGmime(path, Extent::headerBlock); });
    each("gmime-whole", [](const std::string& path) { return ReadWithGmime(path, Extent::wholeMessage); });
    each("vmime", ReadWithVmime);
    Register("headers/python", [&python](benchmark::State& state) {
        for (auto _ : state) python.ReadAll();
    });
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
