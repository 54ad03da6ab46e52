// Filters beside the module's: what they do within Receive and on other threads must never hang.
#include "tests/module/Neighbour.h"
#include "tests/Seeds.h"
#include "tests/Testing.h"
#include "tests/module/LoadedModule.h"

#include <future>

namespace {

class Neighbours : public Test, protected LoadedModule {
  protected:
    void SetUp() override {
        Load();
        m_stream.emplace(MakeFilter());
        m_stream->Connect();
        m_stream->Pause();
    }

    FILTER_STATE State() {
        FILTER_STATE state{};
        EXPECT_EQ(m_stream->filter->GetState(0, &state), S_OK);
        return state;
    }

    std::optional<SceneStream> m_stream;
};

// Each question is asked when another thread has just begun to stop the filter and waits for this sample to
// end.
TEST_F(Neighbours, AskAnythingWhileTheFilterIsStopped) {
    IBaseFilter& filter = *m_stream->filter;
    for (const Question& question : QuestionsTo(*m_stream)) {
        SCOPED_TRACE(question.name);
        ASSERT_EQ(filter.Pause(), S_OK);
        std::promise<void> inside;
        std::thread stopping([&, isInside = inside.get_future()] {
            isInside.wait();
            EXPECT_EQ(filter.Stop(), S_OK);
        });
        bool asked = false;
        m_stream->sink->pin.onSample = [&](IMediaSample*) {
            inside.set_value();
            while (State() != State_Stopped)
                std::this_thread::yield();
            question.ask();
            asked = true;
        };
        EXPECT_EQ(m_stream->SendGrey(90), S_OK);
        stopping.join();
        EXPECT_TRUE(asked);
        EXPECT_EQ(filter.Stop(), S_OK);
        m_stream->in->EndFlush();
        m_stream->sink->pin.EndFlush();
    }
}

// The same from three threads at once, for as long as the states and the type of the filter change.
TEST_F(Neighbours, AskAndStopFromEveryThread) {
    IBaseFilter& filter = *m_stream->filter;
    const std::vector<Question> questions = QuestionsTo(*m_stream);
    std::atomic<std::size_t> turn = 0;
    m_stream->sink->pin.onSample = [&](IMediaSample*) { questions[turn++ % questions.size()].ask(); };
    std::atomic<bool> done = false;
    std::jthread streaming([&] {
        for (int n = 0; !done; ++n) {
            const auto sample = m_stream->Buffer();
            CMediaType type = FourccType("YUY2", kWidth, kHeight, 16, 400000 + n % 5);
            if (sample)
                sample->SetMediaType(&type);
            if (!sample || FAILED(m_stream->source->pin.Deliver(sample.get())))
                std::this_thread::yield();
        }
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
        EXPECT_EQ(m_stream->scenes->EnableDetection(n % 2), S_OK);
        EXPECT_GE(filter.Pause(), S_OK);
        EXPECT_GE(filter.Run(0), S_OK);
        while (turn == before)
            std::this_thread::yield();
        EXPECT_EQ(filter.Stop(), S_OK);
    });
    done = true;
}

} // namespace
