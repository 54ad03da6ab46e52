// Reading where no thread can be started.
#include "tests/DvFrame.h"
#include "tests/reading/readers/WaysOfReading.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <system_error>
#include <thread>

namespace scenedetect {
namespace {

using namespace testing_support;

// As long as it lives the system has no room for any thread's stack.
class NoRoomForThreads {
  public:
    NoRoomForThreads() {
        pthread_getattr_default_np(&m_usual);
        pthread_attr_t huge;
        pthread_getattr_default_np(&huge);
        pthread_attr_setstacksize(&huge, std::size_t{1} << 46);
        pthread_setattr_default_np(&huge);
        pthread_attr_destroy(&huge);
    }
    ~NoRoomForThreads() {
        pthread_setattr_default_np(&m_usual);
        pthread_attr_destroy(&m_usual);
    }
    NoRoomForThreads(const NoRoomForThreads&) = delete;
    NoRoomForThreads& operator=(const NoRoomForThreads&) = delete;

  private:
    pthread_attr_t m_usual{};
};

TEST(ReadAhead, ReadsOnOneThreadWhereNoOtherStarts) {
    std::vector<std::uint8_t> tape;
    for (int i = 0; i < 30; ++i)
        AppendDifFrame(tape, true, i);
    const Outcome usual = ReadAll(tape, Way::TwoThreads);
    const NoRoomForThreads now;
    EXPECT_THROW(std::thread([] {}), std::system_error);
    EXPECT_EQ(ReadAll(tape, Way::TwoThreads), usual);
    EXPECT_EQ(usual.places.size(), 30u);
}

} // namespace
} // namespace scenedetect
