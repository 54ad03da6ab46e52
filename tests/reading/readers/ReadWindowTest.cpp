// The window over a file against the file, with and without a second thread.
#include "reading/readers/ReadWindow.h"
#include "reading/base/HostError.h"
#include "tests/MemoryInput.h"
#include "tests/Testing.h"

#include <deque>

namespace {

constexpr std::int64_t kFileBytes = 20'000'000;

// More than there are in the file.
const std::vector<std::uint8_t> kBytes = [] {
    std::vector<std::uint8_t> bytes(kFileBytes + 1'000'000);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::uint8_t>(i * 2'654'435'761u >> 24);
    return bytes;
}();

// Tells kFileBytes, and has as many as it is told.
struct File : MemoryInput {
    explicit File(std::int64_t has = kFileBytes)
        : MemoryInput(std::span(kBytes).first(static_cast<std::size_t>(has))) {
        Lack(kFileBytes - has);
    }
};

bool IsOfFile(std::span<const std::uint8_t> bytes, std::int64_t offset) {
    return std::equal(bytes.begin(), bytes.end(), kBytes.begin() + offset);
}

/// Bytes that are held for a while after the window.
struct Held {
    std::span<const std::uint8_t> bytes;
    std::int64_t offset;
    BytesOwner owner;
};

// To the end in steps that are mostly frames; returns where that was.
std::int64_t ReadThrough(ReadWindow& window, unsigned seed) {
    std::mt19937 random(seed);
    const auto upTo = [&random](std::size_t most) { return random() % (most + 1); };
    std::deque<Held> held;
    for (;;) {
        const std::size_t unit = window.Offset() % 5'000'000 < 2'500'000 ? 144'000 : 120'000;
        const std::size_t wanted = upTo(3) != 0 ? unit : 1 + upTo(ReadWindow::kMostBytes - 1);
        const auto bytes = window.Peek(wanted, unit);
        if (bytes.size() < wanted) {
            EXPECT_TRUE(IsOfFile(bytes, window.Offset())) << window.Offset();
            return window.Offset() + std::ssize(bytes);
        }
        held.push_back({bytes.first(wanted), window.Offset(), window.Share()});
        window.Drop(wanted);
        if (upTo(4) == 0)
            window.GoBack(upTo(ReadWindow::kBackBytes));
        if (held.size() > 5) {
            EXPECT_TRUE(IsOfFile(held.front().bytes, held.front().offset)) << held.front().offset;
            held.pop_front();
        }
    }
}

class ReadWindows : public TestWithParam<bool> {};
INSTANTIATE_TEST_SUITE_P(Threads, ReadWindows, Bool(),
                         [](const auto& each) { return each.param ? "Two" : "One"; });

TEST_P(ReadWindows, ShowTheWholeFile) {
    for (unsigned seed = 0; seed < 5; ++seed) {
        File file;
        ReadWindow window(file, GetParam());
        EXPECT_EQ(ReadThrough(window, seed), kFileBytes) << seed;
    }
}

TEST_P(ReadWindows, EndWhereTheFileDoesByNow) {
    for (const std::int64_t has : {0, 576'000, 12'345'678, 21'000'000}) {
        File file(has);
        ReadWindow window(file, GetParam());
        EXPECT_EQ(ReadThrough(window, 1), has);
    }
}

TEST_P(ReadWindows, GiveWhatComesBeforeAnError) {
    File file(10'000'000);
    file.FailAtTheEnd();
    ReadWindow window(file, GetParam());
    EXPECT_THROW(ReadThrough(window, 1), HostError);
    EXPECT_GT(window.Offset(), 8'500'000);
}

TEST_P(ReadWindows, KeepWholeUnitsInPlace) {
    File file;
    ReadWindow window(file, GetParam());
    int moved = 0;
    for (int i = 0; i < 138; ++i) {
        const auto* const bytes = window.Peek(144'000, 144'000).data();
        moved += reinterpret_cast<std::uintptr_t>(bytes) % 64 != 0;
        window.Drop(144'000);
    }
    EXPECT_LE(moved, GetParam() ? 5 : 0); // pieces begun before the first frame was known
}

TEST_P(ReadWindows, MayEndAtAnyTime) {
    File file;
    for (unsigned i = 0; i < 20; ++i) {
        ReadWindow window(file, GetParam());
        EXPECT_TRUE(i % 2 == 0 || !window.Peek(1, 144'000).empty());
    }
}

} // namespace
