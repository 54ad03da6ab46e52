// Control calls against a streaming thread: what must neither hang nor race.
#include "tests/Testing.h"
#include "tests/baseclasses/TestFilters.h"

namespace {

/// Sends samples until the chain no longer takes them; returns the last result.
HRESULT Stream(Chain& chain) {
    for (;;) {
        IMediaSample* raw = nullptr;
        HRESULT hr = chain.source->pin.GetDeliveryBuffer(&raw, nullptr, nullptr, 0);
        if (FAILED(hr))
            return hr;
        const ComRef<IMediaSample> sample(raw);
        hr = chain.source->pin.Deliver(raw);
        if (hr != S_OK)
            return hr;
    }
}

/// What a stopped filter answers, depending on where the thread was.
bool EndedByStop(HRESULT hr) {
    return hr == VFW_E_NOT_COMMITTED || hr == VFW_E_WRONG_STATE;
}

} // namespace

TEST(Threads, StoppingWhileStreaming) {
    for (const bool copying : {false, true}) {
        Chain chain;
        chain.source->pin.readOnly = copying;
        chain.Connect();
        for (int n = 0; n < 300; ++n) {
            chain.sink->pin.samples = 0;
            chain.Pause();
            HRESULT last = S_OK;
            std::thread streaming([&] { last = Stream(chain); });
            if (n % 3 != 0)
                chain.sink->pin.WaitForSamples(n % 7);
            EXPECT_EQ(chain.filter->Stop(), S_OK);
            streaming.join();
            EXPECT_TRUE(EndedByStop(last)) << std::hex << last;
            chain.sink->Stop();
            chain.source->Stop();
        }
    }
}

TEST(Threads, StoppingWhileDownstreamKeepsTheBuffers) {
    Chain chain;
    chain.source->pin.readOnly = true;
    chain.Connect();
    for (int n = 0; n < 50; ++n) {
        std::vector<ComRef<IMediaSample>> kept;
        chain.sink->pin.samples = 0;
        chain.sink->pin.onSample = [&](IMediaSample* sample) {
            sample->AddRef();
            kept.emplace_back(sample);
        };
        chain.Pause();
        HRESULT last = S_OK;
        std::thread streaming([&] { last = Stream(chain); });
        chain.sink->pin.WaitForSamples(
            2); // the output has no more, the third waits with the receive lock held
        EXPECT_EQ(chain.filter->Stop(), S_OK);
        streaming.join();
        EXPECT_TRUE(EndedByStop(last)) << std::hex << last;
        kept.clear();
        chain.sink->Stop();
        chain.source->Stop();
    }
}

TEST(Threads, FlushingWhileDownstreamBlocks) {
    Chain chain;
    chain.Connect();
    chain.Pause();
    for (int n = 0; n < 300; ++n) {
        chain.sink->pin.samples = 0;
        chain.sink->pin.blocking = true;
        HRESULT last = S_OK;
        std::thread streaming([&] {
            do
                last = chain.Send();
            while (last == S_OK);
        });
        chain.sink->pin.WaitForSamples(1);
        EXPECT_EQ(chain.filter->In().BeginFlush(), S_OK);
        streaming.join();
        EXPECT_EQ(last, S_FALSE);
        EXPECT_EQ(chain.filter->In().EndFlush(), S_OK);
    }
    EXPECT_EQ(chain.sink->pin.flushBegins, 300);
    EXPECT_EQ(chain.sink->pin.flushEnds, 300);
}
