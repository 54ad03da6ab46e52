#include "tests/kxscenes/Material.h"

#include "tests/Testing.h"

namespace scenedetect::testing_support {

void RunFfmpeg(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), MAKE_MATERIAL);
    const ProcessResult result = Process(arguments).Wait();
    ASSERT_EQ(result.exitCode, 0) << result.err;
}

void MakeClip(const Clip& clip, const std::filesystem::path& target) {
    const char* const greys[] = {"464646", "B4B4B4", "6E6E6E", "DCDCDC"};
    std::vector<int> ends = clip.cuts;
    ends.push_back(clip.frames);
    std::string scenes;
    std::string names;
    int begin = 0;
    for (std::size_t i = 0; i < ends.size(); ++i) {
        const std::string name = "[s" + std::to_string(i) + "]";
        scenes += "color=c=0x" + std::string(greys[i % 4]) + ":s=" + clip.size + ":r=" + clip.rate +
                  ",trim=end_frame=" + std::to_string(ends[i] - begin) + name + ";";
        names += name;
        begin = ends[i];
    }
    std::vector<std::string> arguments = {"-f", "lavfi", "-i",
                                          scenes + names + "concat=n=" + std::to_string(ends.size()) +
                                              ",noise=alls=8:allf=t"};
    arguments.insert(arguments.end(), clip.encoding.begin(), clip.encoding.end());
    arguments.push_back(target.string());
    RunFfmpeg(arguments);
}

void Remux(const std::filesystem::path& source, const std::filesystem::path& target) {
    RunFfmpeg({"-i", source.string(), "-map", "0:v", "-c", "copy", target.string()});
}

Clip DvClip(const std::string& target, const std::string& recorded, const std::string& timecode) {
    Clip clip;
    clip.size = target == "pal-dv" ? "720x576" : "720x480";
    clip.rate = target == "pal-dv" ? "25" : "30000/1001";
    clip.encoding = {"-target",   target,  "-an", "-metadata", "creation_time=" + recorded,
                     "-timecode", timecode};
    return clip;
}

void MakeRawAvi(const RawFormat& format, Clip clip, const std::filesystem::path& target) {
    clip.encoding = {"-c:v", "rawvideo", "-pix_fmt", format.pixelFormat};
    if (format.tag)
        clip.encoding.insert(clip.encoding.end(), {"-vtag", format.tag});
    MakeClip(clip, target);
    if (!format.isTurned)
        return;
    // The sign of the height is where the stream's bitmap header says which row comes first.
    std::string bytes = ReadWhole(target);
    const std::size_t height = bytes.find("strf") + 16;
    std::int32_t value = 0;
    std::memcpy(&value, &bytes[height], 4);
    value = -value;
    std::memcpy(&bytes[height], &value, 4);
    WriteBytes(target, bytes);
}

void WriteBytes(const std::filesystem::path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

} // namespace scenedetect::testing_support
