#include "platform/CriticalSection.h"
#include "tests/Testing.h"

TEST(CriticalSection, ExcludesOtherThreadsAndAdmitsItsOwnAgain) {
    CriticalSection section;
    int count = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 10000; ++i) {
                const std::lock_guard outer(section);
                const std::lock_guard inner(section);
                ++count;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(count, 40000);
}
