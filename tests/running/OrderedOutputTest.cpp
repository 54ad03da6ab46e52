#include "running/listeners/OrderedOutput.h"

#include "tests/TempFolder.h"
#include "tests/Testing.h"

#include <fcntl.h>
#include <unistd.h>

namespace {

/// Leads the standard output elsewhere.
class Redirected {
  public:
    explicit Redirected(int descriptor) : m_before(dup(STDOUT_FILENO)) {
        dup2(descriptor, STDOUT_FILENO);
        close(descriptor);
    }
    ~Redirected() {
        dup2(m_before, STDOUT_FILENO);
        close(m_before);
    }
    Redirected(const Redirected&) = delete;
    Redirected& operator=(const Redirected&) = delete;

  private:
    const int m_before;
};

class OrderedOutputTest : public Test {
  protected:
    [[nodiscard]] std::string Printed() const { return ReadWhole(m_path); }
    [[nodiscard]] int OpenFile() const { return open(m_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600); }

    TempFolder m_folder;
    const std::string m_path = m_folder / "out";
    Console m_console{"test"};
};

TEST_F(OrderedOutputTest, RunsComeInTheirOrderAndNoneWaitsForALaterOne) {
    const Redirected out(OpenFile());
    OrderedOutput output(m_console, "header\n", 3, true);
    output.Print(1, "b1 ");
    EXPECT_EQ(Printed(), "");
    output.Print(0, "a1 ");
    EXPECT_EQ(Printed(), "header\na1 ") << "at once, it is its turn";
    output.Print(2, "c1 ");
    output.Abandon(2); // failed, but what it has found counts
    output.Print(1, "b2 ");
    output.Close(0);
    EXPECT_EQ(Printed(), "header\na1 b1 b2 ");
    output.Print(1, "b3 ");
    output.Close(1);
    EXPECT_EQ(Printed(), "header\na1 b1 b2 b3 c1 ");
    EXPECT_FALSE(output.HasFailed());
}

TEST_F(OrderedOutputTest, ThreadsDoNotMixTheirLines) {
    const Redirected out(OpenFile());
    constexpr std::size_t kRuns = 8;
    OrderedOutput output(m_console, "", kRuns, true);
    std::vector<std::thread> threads;
    std::string expected;
    for (std::size_t run = 0; run < kRuns; ++run) {
        threads.emplace_back([&output, run] {
            for (int line = 0; line < 100; ++line)
                output.Print(run, std::to_string(run) + '.' + std::to_string(line) + '\n');
            output.Close(run);
        });
        for (int line = 0; line < 100; ++line)
            expected += std::to_string(run) + '.' + std::to_string(line) + '\n';
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(Printed(), expected);
}

} // namespace
