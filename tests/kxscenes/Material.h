// Video files made with the ffmpeg program: flat scenes with noise, cut hard at known frames.
#pragma once

#include "tests/TempFolder.h"
#include "tests/Testing.h"
#include "tests/kxscenes/HostProcess.h"

namespace scenedetect::testing_support {

struct Clip {
    std::string size = "320x240";
    std::string rate = "25";
    std::vector<int> cuts = {20, 33, 47};
    int frames = 60;
    std::vector<std::string> encoding; ///< further arguments of ffmpeg, before the file's name
};

/// Has ffmpeg make the file that the last argument names, or copies what the same command made in an earlier
/// test; fails the test when ffmpeg does.
void RunFfmpeg(std::vector<std::string> arguments);
void MakeClip(const Clip& clip, const std::filesystem::path& target);
/// Another container for the same packets.
void Remux(const std::filesystem::path& source, const std::filesystem::path& target);

/// A DV clip: "pal-dv" or "ntsc-dv", with the time of its recording ("2004-07-17T10:30:00") and a timecode.
Clip DvClip(const std::string& target, const std::string& recorded = "2004-07-17T10:30:00",
            const std::string& timecode = "00:00:00:00");

/// A format of uncompressed pictures in AVI files.
struct RawFormat {
    const char* name;
    const char* pixelFormat;
    const char* tag; ///< null: RGB, from the top row
    std::string fourcc;
    bool isTurned = false; ///< the header says that the bottom row comes first
};
inline const RawFormat kRawFormats[] = {
    {"YUY2", "yuyv422", "YUY2", "YUY2"},
    {"UYVY", "uyvy422", "UYVY", "UYVY"},
    {"I420", "yuv420p", "I420", "I420"},
    {"IYUV", "yuv420p", "IYUV", "I420"},
    {"YV12", "yuv420p", "YV12", "YV12"},
    {"RGB24_TopDown", "bgr24", nullptr, std::string(4, '\0')},
    {"RGB24_BottomUp", "bgr24", nullptr, std::string(4, '\0'), true},
};
void MakeRawAvi(const RawFormat& format, Clip clip, const std::filesystem::path& target);

void WriteBytes(const std::filesystem::path& path, const std::string& bytes);

/// An uncompressed AVI with the clip's cuts, for what does not depend on the format.
class OneClip : public testing::Test {
  protected:
    void SetUp() override { MakeRawAvi(kRawFormats[0], {}, m_file); }

    TempFolder m_folder;
    std::filesystem::path m_file = m_folder / "clip.avi";
};

} // namespace scenedetect::testing_support
