// A client that knows the interfaces by their tables only: slot numbers, argument sizes, calling convention.
#include "tests/SceneStream.h"
#include "tests/TempFolder.h"
#include "tests/Testing.h"
#include "tests/module/LoadedModule.h"

namespace {

/// Calls what stands at `slot` of the object's table.
template <typename... Arguments>
std::int32_t Call(void* object, std::size_t slot, Arguments... arguments) {
    using Method = std::int32_t(STDMETHODCALLTYPE*)(void*, Arguments...);
    const Method* table = *static_cast<const Method**>(object);
    return table[slot](object, arguments...);
}

constexpr std::int32_t kOk = 0;
constexpr std::int32_t kFail = static_cast<std::int32_t>(0x80004005);
constexpr std::int32_t kNoMoreItems = 0x00040103;

class RawTable : public Test {
  protected:
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(m_module.Load());
        m_stream.emplace(m_module.MakeFilter());
        m_stream->Connect();
        m_stream->Pause();
        scenes = m_stream->scenes.get();
        scenesEx = m_stream->scenesEx.get();
    }
    void Stream(int frames) {
        for (; frames > 0; --frames)
            EXPECT_EQ(m_stream->SendGrey(90), S_OK);
    }
    /// The position of the next scene, which is released.
    std::uint32_t Drain() {
        std::uint32_t position = 77;
        Call(scenes, 4, nullptr, nullptr, &position);
        Call(scenes, 5);
        return position;
    }

    LoadedModule m_module;
    std::optional<SceneStream> m_stream;
    void* scenes = nullptr;
    void* scenesEx = nullptr;
};

TEST_F(RawTable, Unknown) {
    for (void* object : {scenes, scenesEx}) {
        const std::uint8_t iid[16] = {0x4D, 0xD6, 0xEC, 0x6D, 0xAA, 0xB9, 0xE3, 0x45,
                                      0x93, 0xD7, 0x53, 0x9C, 0xC0, 0xA5, 0x95, 0xA6};
        void* found = nullptr;
        EXPECT_EQ(Call(object, 0, &iid, &found), kOk);
        EXPECT_EQ(found, scenesEx);
        const std::int32_t count = Call(object, 1);
        EXPECT_EQ(Call(object, 2), count - 1);
        EXPECT_EQ(Call(object, 2), count - 2);
    }
}

TEST_F(RawTable, SettingsAndScenes) {
    std::uint32_t value = 77;
    EXPECT_EQ(Call(scenes, 6, nullptr), kFail) << "GetStartTimecode";
    EXPECT_EQ(Call(scenes, 6, &value), kOk);
    EXPECT_EQ(value, 0u);
    EXPECT_EQ(Call(scenes, 7, std::uint32_t{2}), kOk) << "SetDetectionMethod";
    EXPECT_EQ(Call(scenes, 8, &value), kOk) << "GetDetectionMethod";
    EXPECT_EQ(value, 2u);
    EXPECT_EQ(Call(scenes, 14), 1) << "IsTimecodeEnabled";
    EXPECT_EQ(Call(scenes, 13, std::int32_t{2}), kOk) << "EnableTimecode";
    EXPECT_EQ(Call(scenes, 14), kOk);

    EXPECT_EQ(Call(scenes, 9, std::uint32_t{3}), kOk) << "SetSceneInterval";
    EXPECT_EQ(Call(scenes, 3, std::int32_t{1}), kOk) << "EnableDetection";
    Stream(4);
    EXPECT_EQ(Call(scenes, 10), kOk) << "MarkScene";
    EXPECT_EQ(Call(scenesEx, 6, std::int32_t{0}), kOk) << "EnableSceneBitmaps";
    Stream(1);
    EXPECT_EQ(Call(scenes, 11, &value), kOk) << "GetFrameCount";
    EXPECT_EQ(value, 5u);
    EXPECT_EQ(Call(scenes, 12, &value), kOk) << "GetCurrentTimecode";
    EXPECT_EQ(value, 0u);
    EXPECT_EQ(Call(scenesEx, 5, &value), kOk) << "GetSceneCount";
    EXPECT_EQ(value, 3u);

    const std::uint8_t* header = nullptr;
    const std::uint8_t* bits = nullptr;
    EXPECT_EQ(Call(scenes, 4, &header, &bits, &value), kOk) << "GetNextScene";
    EXPECT_EQ(value, 0u);
    ASSERT_TRUE(header && bits);
    EXPECT_EQ(header[0], 40) << "a bitmap header begins with its size";
    EXPECT_EQ(bits[0], 90);
    EXPECT_EQ(Call(scenes, 5), kOk) << "ReleaseScene";
    EXPECT_EQ(Drain(), 3u);
    EXPECT_EQ(Call(scenes, 4, &header, &bits, &value), kOk);
    EXPECT_EQ(value, 4u);
    EXPECT_TRUE(!header && !bits) << "pictures were off";
    EXPECT_EQ(Call(scenes, 4, &header, &bits, &value), kNoMoreItems);
    EXPECT_EQ(value, 0xFFFFFFFFu);
    EXPECT_EQ(Call(scenes, 5), kNoMoreItems);
}

// A "Video" run has its first scene at its first frame, moved by the offset and two frames back.
TEST_F(RawTable, Offsets) {
    Call(scenes, 7, std::uint32_t{1});
    Call(scenes, 3, std::int32_t{1});
    EXPECT_EQ(Call(scenesEx, 3, std::int32_t{9}), kOk) << "SetFrameOffset, for samples without times";
    Stream(1);
    EXPECT_EQ(Drain(), 7u);

    Call(scenes, 3, std::int32_t{1});
    const std::int64_t longTime = 20000 * SceneStream::kFrame; // more than 32 bits
    EXPECT_EQ(Call(scenesEx, 4, longTime), kOk) << "SetTimeOffset, for samples with times";
    EXPECT_EQ(m_stream->Send(Picture(kYuy2Bytes), 0), S_OK);
    EXPECT_EQ(Drain(), 19998u);
}

TEST_F(RawTable, Tuning) {
    const std::uint8_t iid[16] = {0x65, 0xFA, 0x69, 0x67, 0x36, 0xC1, 0xB3, 0x45,
                                  0xA6, 0x05, 0xAC, 0xFA, 0xC4, 0xB9, 0xD7, 0x85};
    void* tuning = nullptr;
    ASSERT_EQ(Call(scenes, 0, &iid, &tuning), kOk);
    std::int32_t value = 77;
    EXPECT_EQ(Call(tuning, 3, std::uint32_t{0}, std::int32_t{40}), kOk) << "SetParameter, cut threshold";
    EXPECT_EQ(Call(tuning, 3, std::uint32_t{3}, std::int32_t{5}), static_cast<std::int32_t>(0x80070057));
    EXPECT_EQ(Call(tuning, 4, std::uint32_t{0}, &value), kOk) << "GetParameter";
    EXPECT_EQ(value, 40);
    std::int32_t range[3] = {};
    EXPECT_EQ(Call(tuning, 5, std::uint32_t{1}, &range[0], &range[1], &range[2]), kOk) << "GetParameterRange";
    EXPECT_TRUE(range[0] == -1 && range[1] == 255 && range[2] == 25);
    EXPECT_EQ(Call(tuning, 6), kOk) << "ResetParameters";
    EXPECT_EQ(Call(tuning, 4, std::uint32_t{0}, &value), kOk);
    EXPECT_EQ(value, 13);

    EXPECT_EQ(Call(tuning, 7, std::int32_t{2}), kOk) << "EnableFrameFigures";
    Call(scenes, 7, std::uint32_t{1});
    Call(scenes, 3, std::int32_t{1});
    Stream(4);
    std::int32_t figures[4][5] = {}; // position, difference, level, filled, flags
    std::uint32_t taken = 77;
    EXPECT_EQ(Call(tuning, 8, std::uint32_t{4}, &figures, &taken), kOk) << "GetFrameFigures";
    EXPECT_EQ(taken, 2u);
    const std::int32_t expected[4][5] = {{0, 90, 90, 90, 4}, {1, 0, 90, 0, 0}};
    EXPECT_EQ(std::memcmp(figures, expected, sizeof figures), 0);
    EXPECT_EQ(Call(tuning, 8, std::uint32_t{4}, &figures, &taken), kNoMoreItems);
    Call(tuning, 2);
}

TEST_F(RawTable, SceneListFile) {
    const TempFolder folder;
    const auto path = folder / "scenes.xml";
    const std::wstring name = Wide(path);
    EXPECT_EQ(Call(scenes, 15, name.c_str()), kOk) << "EnableSceneListFile";
    EXPECT_EQ(Call(scenes, 16), kOk) << "DisableSceneListFile";
    Call(scenes, 3, std::int32_t{0});
    EXPECT_FALSE(std::filesystem::exists(path));
    Call(scenes, 15, name.c_str());
    Call(scenes, 3, std::int32_t{0});
    EXPECT_TRUE(std::filesystem::exists(path));
}

} // namespace
