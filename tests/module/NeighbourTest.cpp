// Filters of another make beside the module's: what they do within Receive and on other threads must never
// hang.
#include "tests/module/Neighbour.h"
#include "tests/Seeds.h"
#include "tests/module/LoadedModule.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <mutex>
#include <thread>

namespace scenedetect {
namespace {

using namespace testing_support;

/// The name of what each thread is about to call, for whoever finds that it hangs.
class Progress {
  public:
    void Set(const std::string& name) {
        const std::lock_guard lock(m_mutex);
        m_name = name;
    }
    std::string Get() {
        const std::lock_guard lock(m_mutex);
        return m_name;
    }

  private:
    std::mutex m_mutex;
    std::string m_name;
};

class Neighbours : public testing::Test, protected LoadedModule {
  protected:
    void SetUp() override { Load(); }

    /// Runs `work` on a thread of its own. One that hangs can't be ended, and so ends the program.
    void WithinALimit(std::function<void()> work) {
        constexpr std::chrono::minutes kHang{2};
        auto done = std::async(std::launch::async, std::move(work));
        if (done.wait_for(kHang) == std::future_status::ready)
            return done.get();
        std::fprintf(stderr, "hangs at %s\n", m_progress.Get().c_str());
        std::_Exit(1);
    }

    Progress m_progress;
};

// Each question is asked when another thread has just begun to stop the filter and waits for this sample to
// end.
TEST_F(Neighbours, AskAnythingWhileTheFilterIsStopped) {
    Neighbourhood around(MakeFilter());
    WithinALimit([&] {
        for (const Question& question : around.Questions()) {
            SCOPED_TRACE(question.name);
            m_progress.Set(question.name);
            ASSERT_EQ(around.filter->Pause(), S_OK);
            std::promise<void> inside;
            std::thread stopping([&, isInside = inside.get_future()] {
                isInside.wait();
                EXPECT_EQ(around.filter->Stop(), S_OK);
            });
            bool asked = false;
            around.sink.onSample = [&] {
                inside.set_value();
                while (around.State() != State_Stopped)
                    std::this_thread::yield();
                question.ask();
                asked = true;
            };
            EXPECT_EQ(around.Send(), S_OK);
            stopping.join();
            EXPECT_TRUE(asked);
            EXPECT_EQ(around.filter->Stop(), S_OK);
            around.in->EndFlush();
        }
    });
    EXPECT_EQ(around.source.sought, 17);
}

// The same from three threads at once, for as long as the states of the filter change.
TEST_F(Neighbours, AskAndStopFromEveryThread) {
    Neighbourhood around(MakeFilter());
    const auto scenes = QueryFor<IKxSceneDetect>(around.filter.get(), IID_IKxSceneDetect);
    const std::vector<Question> questions = around.Questions();
    std::atomic<std::size_t> turn = 0;
    around.sink.onSample = [&] {
        const Question& question = questions[turn++ % questions.size()];
        m_progress.Set(question.name);
        question.ask();
    };
    WithinALimit([&] {
        std::atomic<bool> done = false;
        std::jthread streaming([&] {
            while (!done)
                if (FAILED(around.Send()))
                    std::this_thread::yield();
        });
        // Questions keep what they are answered: each thread has its own.
        std::jthread asking([&, own = questions] {
            while (!done)
                for (const Question& question : own)
                    if (!question.forStreamingThread)
                        question.ask();
        });
        ForEachSeed(200, [&](unsigned n) {
            const std::size_t before = turn;
            EXPECT_EQ(scenes->EnableDetection(n % 2), S_OK);
            EXPECT_GE(around.filter->Pause(), S_OK);
            EXPECT_GE(around.filter->Run(0), S_OK);
            while (turn == before)
                std::this_thread::yield();
            EXPECT_EQ(around.filter->Stop(), S_OK);
        });
        done = true;
    });
}

} // namespace
} // namespace scenedetect
