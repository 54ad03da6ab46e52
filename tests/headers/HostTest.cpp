// What a host needs for steering the filter comes from the public headers alone.
#include "IKxSceneDetect.h"

#include <gtest/gtest.h>

namespace {

TEST(PublicHeaders, SufficeToSteerTheFilter) {
    void* made = nullptr;
    ASSERT_EQ(DllGetClassObject(CLSID_SceneDetectFilter, IID_IClassFactory, &made), S_OK);
    auto* factory = static_cast<IClassFactory*>(made);
    ASSERT_EQ(factory->CreateInstance(nullptr, IID_IKxSceneDetect2, &made), S_OK);
    factory->Release();
    auto* scenes = static_cast<IKxSceneDetect2*>(made);
    ASSERT_EQ(scenes->QueryInterface(IID_IKxSceneDetectEx, &made), S_OK);
    auto* scenesEx = static_cast<IKxSceneDetectEx*>(made);

    ASSERT_EQ(scenes->QueryInterface(IID_IKxSceneDetectTuning, &made), S_OK);
    auto* tuning = static_cast<IKxSceneDetectTuning*>(made);

    EXPECT_EQ(tuning->SetParameter(KxVotes, 4), S_OK);
    EXPECT_EQ(tuning->EnableFrameFigures(TRUE), S_OK);
    KxFrameFigures figures[10];
    ULONG taken = 0;
    EXPECT_EQ(tuning->GetFrameFigures(10, figures, &taken), VFW_S_NO_MORE_ITEMS);
    EXPECT_EQ(scenes->SetDetectionMethod(KxMethodInterval), S_OK);
    EXPECT_EQ(scenes->SetSceneInterval(25), S_OK);
    EXPECT_EQ(scenesEx->EnableSceneBitmaps(FALSE), S_OK);
    EXPECT_EQ(scenes->EnableDetection(TRUE), S_OK);
    BITMAPINFOHEADER* header = nullptr;
    BYTE* bits = nullptr;
    ULONG position = 0;
    EXPECT_EQ(scenes->GetNextScene(&header, &bits, &position), VFW_S_NO_MORE_ITEMS);
    EXPECT_EQ(position, 0xFFFFFFFFu);
    EXPECT_EQ(scenes->EnableDetection(FALSE), S_OK);

    tuning->Release();
    scenesEx->Release();
    scenes->Release();
    EXPECT_EQ(DllCanUnloadNow(), S_OK);
}

} // namespace
