// Runs of tapes damaged at random, from the file to its clips: a tape a seed.
#include "running/listeners/ClipMaker.h"
#include "running/run/SceneRun.h"
#include "tests/DvFrame.h"
#include "tests/Seeds.h"
#include "tests/TempFolder.h"
#include "tests/reading/readers/RandomDamage.h"

#include <gtest/gtest.h>

#include <map>

namespace scenedetect {
namespace {

using namespace testing_support;

constexpr int kFrames = 16;
const NamePattern kNames("{frame}");

bool IsCut(int frame) {
    return frame == 4 || frame == 8 || frame == 12;
}

std::vector<std::uint8_t> UndamagedTape(bool is625) {
    std::vector<std::uint8_t> tape;
    bool isLight = false;
    for (int i = 0; i < kFrames; ++i) {
        isLight = isLight != IsCut(i);
        DvFrame frame(is625);
        frame.SetLuma(isLight ? 40 : 200).SetTimecode(TimePack(0, i));
        tape.insert(tape.end(), frame.Bytes().begin(), frame.Bytes().end());
    }
    return tape;
}

struct Seen {
    std::map<std::int64_t, std::int64_t> scenes;   // frame numbers by byte offset
    std::map<std::int64_t, std::int64_t> pictures; // sizes likewise
};

class Witness final : public RunListener {
  public:
    explicit Witness(Seen& seen) : m_seen(seen) {}
    void Scene(const FoundScene& scene) override {
        m_seen.scenes[scene.place.byteOffset] = scene.place.frame;
    }
    void Passed(PictureSample& sample, std::int64_t) override {
        m_seen.pictures[sample.picture.place.byteOffset] = std::ssize(sample.picture.Bytes());
    }

  private:
    Seen& m_seen;
};

// With clips named after the first frames of their scenes.
Seen Run(const std::filesystem::path& tape, const std::filesystem::path& clips) {
    static const std::atomic<bool> goOn = false;
    Console console("test", Verbosity::Quiet);
    const Reading reading{goOn, console};
    RunSettings settings;
    settings.input = tape.native();
    settings.detection.methods = {KxMethodVideo};
    settings.xmlPaths = {""};
    OutputClaims claims;
    RunProgress progress;
    Seen seen;
    SceneRun::Listeners listeners;
    listeners.push_back(std::make_unique<Witness>(seen));
    listeners.push_back(std::make_unique<ClipMaker>(ClipSettings{clips.native(), kNames, Existing::Keep, ""},
                                                    claims, console, progress));
    (void)SceneRun(settings, reading, progress, std::move(listeners)).Run();
    return seen;
}

void Check(unsigned seed) {
    static const std::vector<std::uint8_t> tapes[] = {UndamagedTape(false), UndamagedTape(true)};
    const RandomDamage damage(tapes[seed % 2], kFrames, seed);
    const std::string_view stream(reinterpret_cast<const char*>(damage.Stream().data()),
                                  damage.Stream().size());
    const TempFolder folder;
    std::ofstream(folder / "tape.dv", std::ios::binary) << stream;
    const Seen seen = Run(folder / "tape.dv", folder / "clips");

    // The clips are the tape without the frames that were left out.
    std::string promised, joined;
    for (const auto& [offset, size] : seen.pictures)
        promised += stream.substr(static_cast<std::size_t>(offset), static_cast<std::size_t>(size));
    NameFields names;
    for (const auto& [offset, frame] : seen.scenes) {
        names.frame = frame;
        joined += ReadWhole(folder / "clips" / kNames.Expand(names, ".dv"));
    }
    EXPECT_TRUE(joined == promised);

    const std::vector<TapeFrame>& frames = damage.Frames();
    for (const TapeFrame& each : frames)
        EXPECT_TRUE(!each.isIntact || seen.pictures.contains(each.offset)) << each.frame;
    // A cut is judged by the three frames before it and the two after its first.
    for (int i = 3; i < kFrames - 2; ++i) {
        const auto at = frames.begin() + i;
        if (!std::all_of(at - 3, at + 3, [](const TapeFrame& each) { return each.isIntact; }))
            continue;
        const auto scene = seen.scenes.find(at->offset);
        EXPECT_EQ(scene != seen.scenes.end(), IsCut(i)) << i;
        const bool isCertain = damage.HasCertainNumber(static_cast<std::size_t>(i));
        EXPECT_TRUE(scene == seen.scenes.end() || !isCertain || scene->second == i) << i;
    }
}

TEST(DamagedRuns, KeepUndamagedCutsAndFrames) {
    ForEachSeed(100, Check);
}

} // namespace
} // namespace scenedetect
