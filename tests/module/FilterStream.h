// The module's filter between a source and a sink of the test's own, and small pictures to stream through it.
#pragma once

#include "scenes/IKxSceneDetect.h"
#include "tests/baseclasses/TestFilters.h"
#include "tests/filter/TypeMaking.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace scenedetect::testing_support {

using Picture = std::vector<std::uint8_t>;

struct FilterStream {
    static constexpr LONG kPictureBytes = 64 * 48 * 2;
    static constexpr REFERENCE_TIME kFrame = 400000;

    explicit FilterStream(ComRef<IBaseFilter> made) : filter(std::move(made)) {
        scenes = QueryFor<IKxSceneDetect2>(filter.get(), IID_IKxSceneDetect2);
        scenesEx = QueryFor<IKxSceneDetectEx>(filter.get(), IID_IKxSceneDetectEx);
        in = Pin(L"In");
        out = Pin(L"Out");
        source->AddRef();
        sink->AddRef();
        source->pin.types = {{FourccType("YUY2", 64, 48, 16, kFrame)}};
        source->pin.properties = {3, kPictureBytes, 1, 0};
    }
    ~FilterStream() {
        Stop();
        for (IPin* pin :
             {static_cast<IPin*>(&source->pin), in.get(), out.get(), static_cast<IPin*>(&sink->pin)})
            pin->Disconnect();
        EXPECT_EQ(source->Release() + sink->Release(), 0u);
    }
    FilterStream(const FilterStream&) = delete;
    FilterStream& operator=(const FilterStream&) = delete;

    void Connect() {
        ASSERT_EQ(source->pin.Connect(in.get(), nullptr), S_OK);
        ASSERT_EQ(out->Connect(&sink->pin, nullptr), S_OK);
    }
    /// Streaming begins with this.
    void Pause() {
        for (IMediaFilter* one : Filters())
            ASSERT_EQ(one->Pause(), S_OK);
    }
    /// Downstream first, as a graph does.
    void Stop() {
        for (IMediaFilter* one : Filters())
            one->Stop();
    }
    /// Delivers a sample, timed if `start` is not negative.
    HRESULT Send(const Picture& picture, REFERENCE_TIME start = -1) {
        IMediaSample* raw = nullptr;
        const HRESULT hr = source->pin.GetDeliveryBuffer(&raw, nullptr, nullptr, 0);
        if (FAILED(hr))
            return hr;
        const ComRef<IMediaSample> sample(raw);
        BYTE* data = nullptr;
        sample->GetPointer(&data);
        std::copy(picture.begin(), picture.end(), data);
        REFERENCE_TIME stop = start + kFrame;
        if (start >= 0)
            sample->SetTime(&start, &stop);
        lastSent = raw;
        return source->pin.Deliver(raw);
    }
    HRESULT SendGrey(std::uint8_t level) { return Send(Picture(kPictureBytes, level)); }

    ComRef<IBaseFilter> filter;
    ComRef<IKxSceneDetect2> scenes;
    ComRef<IKxSceneDetectEx> scenesEx;
    ComRef<IPin> in;
    ComRef<IPin> out;
    SourceFilter* source = new SourceFilter;
    SinkFilter* sink = new SinkFilter;
    const IMediaSample* lastSent = nullptr;

  private:
    ComRef<IPin> Pin(const wchar_t* id) const {
        IPin* pin = nullptr;
        EXPECT_EQ(filter->FindPin(id, &pin), S_OK);
        return ComRef<IPin>(pin);
    }
    std::vector<IMediaFilter*> Filters() const { return {sink, filter.get(), source}; }
};

} // namespace scenedetect::testing_support
