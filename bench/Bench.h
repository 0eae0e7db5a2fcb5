// Bench.h: what the measurements share. Each program first sees that all answers are the same, and ends with
// 2 when they are not: who answers otherwise does other work.
#pragma once
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iostream>
#include <string>

[[noreturn]] inline void Fail(const std::string& why)
{
    std::cerr << "bench: " << why << '\n';
    std::exit(2);
}

using Work = std::function<void(benchmark::State&)>;

inline void Register(const std::string& name, Work work, benchmark::TimeUnit unit = benchmark::kMillisecond)
{
    benchmark::RegisterBenchmark(name.c_str(),
                                 [work = std::move(work)](benchmark::State& state) { work(state); })
        ->UseRealTime()
        ->Unit(unit);
}

// "--rows=1000" of what is left of a command line behind benchmark::Initialize.
inline std::size_t SizeOption(int argc, char** argv, const std::string& option, std::size_t otherwise)
{
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (!argument.starts_with(option)) Fail("what is " + argument + "?");
        otherwise = std::max<std::size_t>(100, std::strtoul(argument.c_str() + option.size(), nullptr, 10));
    }
    return otherwise;
}

// For the files of one run, in the system's place for temporary ones.
class ScratchFolder {
public:
    ScratchFolder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "quillbox-bench.XXXXXX").string();
        if (!mkdtemp(name.data())) Fail("no directory for temporary files");
        path_ = name;
    }
    ~ScratchFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    const std::filesystem::path& Path() const { return path_; }

private:
    std::filesystem::path path_;
};
