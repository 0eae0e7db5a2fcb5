// gtest_win32_threads.h: the two classes that GoogleTest asks of <mutex> and the win32 thread model of
// mingw-w64 does not have. The tests run on one thread, so they need not lock anything.
#pragma once
#ifdef __cplusplus
#include <condition_variable>
#include <mutex>
#ifndef _GLIBCXX_HAS_GTHREADS
namespace std {
struct mutex {
    void lock() {}
    void unlock() {}
};
struct condition_variable {
    void notify_all() {}
    template <class Lock, class Predicate>
    void wait(Lock&, Predicate)
    {
    }
};
} // namespace std
#endif
#endif
