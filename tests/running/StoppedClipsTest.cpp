#include "running/listeners/ClipMaker.h"
#include "running/run/SceneRun.h"
#include "tests/Testing.h"
#include "tests/kxscenes/Material.h"

namespace {

// The user stops the run with the picture of this number.
class Stopper final : public RunListener {
  public:
    Stopper(std::atomic<bool>& stop, std::int64_t last) : m_stop(stop), m_last(last) {}
    void Passed(PictureSample&, std::int64_t index) override { m_stop = index == m_last; }

  private:
    std::atomic<bool>& m_stop;
    const std::int64_t m_last;
};

TEST(StoppedRun, ItsLastClipEndsWhereItWasStopped) {
    const TempFolder folder;
    const std::filesystem::path film = folder / "film.mp4";
    RunFfmpeg({"-f", "lavfi", "-i", "testsrc2=s=160x120:r=25:d=4", "-c:v", "libx264", "-g", "24", film});
    std::atomic<bool> stop = false;
    Console console("test", Verbosity::Quiet);
    RunSettings settings;
    settings.input = film.native();
    settings.detection.methods = {KxMethodManual};
    settings.detection.marks = {30};
    settings.xmlPaths = {""};
    OutputClaims claims;
    RunProgress progress;
    SceneRun::Listeners listeners;
    listeners.push_back(std::make_unique<Stopper>(stop, 39));
    listeners.push_back(std::make_unique<ClipMaker>(
        ClipSettings{(folder / "clips").native(), NamePattern("{scene}"), Existing::Keep, ""}, claims,
        console, progress));
    EXPECT_EQ(SceneRun(settings, {stop, console}, progress, std::move(listeners)).Run(), RunEnding::Stopped);
    for (const auto& [clip, frames] : {std::pair("0001.mp4", "30\n"), std::pair("0002.mp4", "10\n")})
        EXPECT_EQ(Process({"ffprobe", "-v", "error", "-select_streams", "v", "-count_frames", "-show_entries",
                           "stream=nb_read_frames", "-of", "csv=p=0", folder / "clips" / clip})
                      .Wait()
                      .out,
                  frames);
}

} // namespace
