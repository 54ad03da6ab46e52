// What a host needs for steering the filter comes from the public headers alone.
#include "IKxSceneDetect.h"

#include <gtest/gtest.h>

namespace {

constexpr bool AreEqual(const IID& one, const IID& other) {
    for (int i = 0; i < 8; ++i)
        if (one.Data4[i] != other.Data4[i])
            return false;
    return one.Data1 == other.Data1 && one.Data2 == other.Data2 && one.Data3 == other.Data3;
}
static_assert(AreEqual(IID_IKxSceneDetect,
                       {0x7A5A6A86, 0x2706, 0x4160, {0xAA, 0xAD, 0x28, 0x93, 0x6E, 0x72, 0x49, 0xA9}}));
static_assert(AreEqual(IID_IKxSceneDetect2,
                       {0x908663DA, 0x46DC, 0x44EF, {0x9A, 0x05, 0xD3, 0xC4, 0xEB, 0x9B, 0x3C, 0x91}}));
static_assert(AreEqual(IID_IKxSceneDetectEx,
                       {0x6DECD64D, 0xB9AA, 0x45E3, {0x93, 0xD7, 0x53, 0x9C, 0xC0, 0xA5, 0x95, 0xA6}}));
static_assert(AreEqual(IID_IKxSceneDetectTuning,
                       {0x6769FA65, 0xC136, 0x45B3, {0xA6, 0x05, 0xAC, 0xFA, 0xC4, 0xB9, 0xD7, 0x85}}));

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
