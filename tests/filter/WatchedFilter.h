// A scene detect filter outside any graph, fed with samples straight into its transform.
#pragma once

#include "baseclasses/ComRef.h"
#include "baseclasses/MediaSample.h"
#include "filter/MediaTypes.h"
#include "filter/SceneDetectFilter.h"
#include "tests/Testing.h"
#include "tests/TypeMaking.h"

namespace scenedetect::testing_support {

/// A sample over bytes of its own, outside any allocator.
class LooseSample : public CMediaSample {
  public:
    explicit LooseSample(std::vector<std::uint8_t> bytes)
        : CMediaSample(nullptr, nullptr, &m_result, bytes.data(), static_cast<LONG>(bytes.size())),
          m_bytes(std::move(bytes)) {
        SetPointer(m_bytes.data(), static_cast<LONG>(m_bytes.size()));
        AddRef(); // the test's; never given back, since there is no allocator to return to
    }

  private:
    HRESULT m_result = S_OK;
    std::vector<std::uint8_t> m_bytes;
};

class WatchedFilter {
  public:
    explicit WatchedFilter(std::uint32_t method, const CMediaType& type) : m_type(type) {
        HRESULT hr = S_OK;
        m_filter = static_cast<SceneDetectFilter*>(SceneDetectFilter::CreateInstance(nullptr, &hr));
        EXPECT_EQ(hr, S_OK);
        m_filter->AddRef();
        m_owner.reset(static_cast<IKxSceneDetect2*>(m_filter));
        m_filter->SetDetectionMethod(method);
    }

    SceneDetectFilter* operator->() const { return m_filter; }
    IKxSceneDetectEx& Ex() const { return *m_filter; }

    /// Changes the type that the next sample brings along.
    void SetType(const CMediaType& type) {
        m_type = type;
        m_typeSent = false;
    }

    /// Streams one frame at its place in time: frame number times the type's frame duration.
    void Send(std::vector<std::uint8_t> bytes) {
        LooseSample sample(std::move(bytes));
        REFERENCE_TIME start = m_sent * GetFrameDuration(m_type);
        REFERENCE_TIME stop = start + GetFrameDuration(m_type);
        sample.SetTime(&start, &stop);
        Send(sample);
    }
    void Send(CMediaSample& sample) {
        if (!m_typeSent)
            sample.SetMediaType(&m_type);
        m_typeSent = true;
        ++m_sent;
        EXPECT_EQ(m_filter->Transform(&sample), S_OK);
    }

    std::vector<ULONG> Drain() {
        std::vector<ULONG> positions;
        ULONG position = 0;
        while (m_filter->GetNextScene(nullptr, nullptr, &position) == S_OK) {
            positions.push_back(position);
            m_filter->ReleaseScene();
        }
        return positions;
    }

    /// All figures that there are, each as "position difference level filled flags".
    std::vector<std::string> Figures() {
        std::vector<std::string> rows;
        KxFrameFigures some[7];
        ULONG taken = 0;
        while (m_filter->GetFrameFigures(7, some, &taken) == S_OK)
            for (ULONG i = 0; i < taken; ++i)
                rows.push_back(std::to_string(some[i].dwPosition) + ' ' +
                               std::to_string(some[i].nDifference) + ' ' + std::to_string(some[i].nLevel) +
                               ' ' + std::to_string(some[i].nFilled) + ' ' + std::to_string(some[i].dwFlags));
        return rows;
    }

    /// What this control method tells.
    ULONG Number(HRESULT (STDMETHODCALLTYPE SceneDetectFilter::*method)(ULONG*)) {
        ULONG number = 77;
        EXPECT_EQ((m_filter->*method)(&number), S_OK);
        return number;
    }
    ULONG FrameCount() { return Number(&SceneDetectFilter::GetFrameCount); }

  private:
    SceneDetectFilter* m_filter = nullptr;
    ComRef<IKxSceneDetect2> m_owner;
    CMediaType m_type;
    bool m_typeSent = false;
    std::int64_t m_sent = 0;
};

/// With detection switched on.
struct RunningFilter : WatchedFilter {
    RunningFilter(std::uint32_t method, const CMediaType& type) : WatchedFilter(method, type) {
        (*this)->EnableDetection(TRUE);
    }
};

using Positions = std::vector<ULONG>;

} // namespace scenedetect::testing_support
