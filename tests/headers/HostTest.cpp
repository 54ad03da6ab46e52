// What a host needs for steering the filter comes from the public headers alone.
#include "IKxSceneDetect.h"

#include <gtest/gtest.h>

#include <cstring>

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
static_assert(AreEqual(IID_IKxSceneDetectDistances,
                       {0x56104B2B, 0xA1BD, 0x4A80, {0xBD, 0x06, 0x26, 0x29, 0x1E, 0x56, 0x8D, 0xEF}}));

// With these types, in memory and as arguments, other languages call the methods.
static_assert(sizeof(ULONG) == 4 && sizeof(LONG) == 4 && sizeof(BOOL) == 4 && sizeof(LONGLONG) == 8);
static_assert(sizeof(KxFrameFigures) == 20 && sizeof(KxFrameDistances) == 40);

/// The place of a method in its interface's table, if its arguments are of these types. The compilers of both
/// systems make of a pointer to a virtual method one more than its offset there.
template <typename Interface, typename... Arguments>
std::size_t SlotOf(HRESULT (STDMETHODCALLTYPE Interface::*method)(Arguments...)) {
    std::size_t words[2];
    static_assert(sizeof words == sizeof method);
    std::memcpy(words, &method, sizeof words);
    return (words[0] - 1) / sizeof(void*);
}

TEST(PublicHeaders, MethodsHaveTheirSlotsAndArguments) {
    using Scenes = IKxSceneDetect;
    EXPECT_EQ((SlotOf<Scenes, BOOL>(&Scenes::EnableDetection)), 3u);
    EXPECT_EQ((SlotOf<Scenes, BITMAPINFOHEADER**, BYTE**, ULONG*>(&Scenes::GetNextScene)), 4u);
    EXPECT_EQ((SlotOf<Scenes>(&Scenes::ReleaseScene)), 5u);
    EXPECT_EQ((SlotOf<Scenes, ULONG*>(&Scenes::GetStartTimecode)), 6u);
    EXPECT_EQ((SlotOf<Scenes, ULONG>(&Scenes::SetDetectionMethod)), 7u);
    EXPECT_EQ((SlotOf<Scenes, ULONG*>(&Scenes::GetDetectionMethod)), 8u);
    EXPECT_EQ((SlotOf<Scenes, ULONG>(&Scenes::SetSceneInterval)), 9u);
    EXPECT_EQ((SlotOf<Scenes>(&Scenes::MarkScene)), 10u);
    EXPECT_EQ((SlotOf<Scenes, ULONG*>(&Scenes::GetFrameCount)), 11u);
    EXPECT_EQ((SlotOf<Scenes, ULONG*>(&Scenes::GetCurrentTimecode)), 12u);
    EXPECT_EQ((SlotOf<Scenes, BOOL>(&Scenes::EnableTimecode)), 13u);
    EXPECT_EQ((SlotOf<Scenes>(&Scenes::IsTimecodeEnabled)), 14u);
    using Scenes2 = IKxSceneDetect2;
    EXPECT_EQ((SlotOf<Scenes2, LPCWSTR>(&Scenes2::EnableSceneListFile)), 15u);
    EXPECT_EQ((SlotOf<Scenes2>(&Scenes2::DisableSceneListFile)), 16u);
    using Ex = IKxSceneDetectEx;
    EXPECT_EQ((SlotOf<Ex, LONG>(&Ex::SetFrameOffset)), 3u);
    EXPECT_EQ((SlotOf<Ex, LONGLONG>(&Ex::SetTimeOffset)), 4u);
    EXPECT_EQ((SlotOf<Ex, ULONG*>(&Ex::GetSceneCount)), 5u);
    EXPECT_EQ((SlotOf<Ex, BOOL>(&Ex::EnableSceneBitmaps)), 6u);
    using Tuning = IKxSceneDetectTuning;
    EXPECT_EQ((SlotOf<Tuning, ULONG, LONG>(&Tuning::SetParameter)), 3u);
    EXPECT_EQ((SlotOf<Tuning, ULONG, LONG*>(&Tuning::GetParameter)), 4u);
    EXPECT_EQ((SlotOf<Tuning, ULONG, LONG*, LONG*, LONG*>(&Tuning::GetParameterRange)), 5u);
    EXPECT_EQ((SlotOf<Tuning>(&Tuning::ResetParameters)), 6u);
    EXPECT_EQ((SlotOf<Tuning, BOOL>(&Tuning::EnableFrameFigures)), 7u);
    EXPECT_EQ((SlotOf<Tuning, ULONG, KxFrameFigures*, ULONG*>(&Tuning::GetFrameFigures)), 8u);
    using Distances = IKxSceneDetectDistances;
    EXPECT_EQ((SlotOf<Distances, BOOL>(&Distances::EnableFrameDistances)), 3u);
    EXPECT_EQ(
        (SlotOf<Distances, ULONG, KxFrameFigures*, KxFrameDistances*, ULONG*>(&Distances::GetFrameDistances)),
        4u);
}

TEST(PublicHeaders, SufficeToMakeTheFilter) {
    void* made = nullptr;
    ASSERT_EQ(DllGetClassObject(CLSID_SceneDetectFilter, IID_IClassFactory, &made), S_OK);
    auto* factory = static_cast<IClassFactory*>(made);
    ASSERT_EQ(factory->CreateInstance(nullptr, IID_IKxSceneDetect2, &made), S_OK);
    factory->Release();
    auto* scenes = static_cast<IKxSceneDetect2*>(made);
    EXPECT_EQ(scenes->SetDetectionMethod(KxMethodInterval), S_OK);
    scenes->Release();
    EXPECT_EQ(DllCanUnloadNow(), S_OK);
}

} // namespace
