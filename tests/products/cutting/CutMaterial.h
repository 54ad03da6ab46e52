// Cuts files as a run does, scenes given, and reads the clips with ffmpeg.
#pragma once

#include "products/clips/ClipCutter.h"
#include "products/cutting/CutPackets.h"
#include "reading/base/HostError.h"
#include "reading/ffmpeg/FfmpegLog.h"
#include "reading/media/OpenPictures.h"
#include "tests/MessageOf.h"
#include "tests/Testing.h"
#include "tests/kxscenes/Material.h"

#include <map>

namespace scenedetect::testing_support {
inline const std::atomic<bool> kGoOn = false;

inline NameFields SceneName(std::size_t index) {
    NameFields names;
    names.scene = static_cast<std::int64_t>(index) + 1;
    return names;
}

/// Moving pictures with noise, so that no two are equal, and audio of which no two packets are: four seconds.
inline void MakeFilm(const std::filesystem::path& target, const std::vector<std::string>& encoding) {
    auto arguments = Words("-f lavfi -i testsrc2=s=160x120:r=25:d=4,noise=alls=20:allf=t "
                           "-f lavfi -i anoisesrc=r=48000:d=4:seed=7");
    arguments.insert(arguments.end(), encoding.begin(), encoding.end());
    arguments.push_back(target.string());
    RunFfmpeg(arguments);
}

struct PacketPlace {
    double seconds;
    bool isVideo;
};

/// Into `folder`, by scene: "0001.dv"; the container's name or none, the encoder or none.
inline ClipSettings Into(const std::filesystem::path& folder, const std::string& container = "",
                         const std::string& encode = "") {
    return {folder.native(), NamePattern("{scene}"), Existing::Keep, container, ParseEncodeChoice(encode)};
}

/// Cuts DV while it is read: a clip from each of these pictures on. The pictures are as few as a graph has
/// beside one that a filter may keep; scenes but the first are told so many pictures late.
inline std::vector<WrittenClip> CutWhileReading(const std::filesystem::path& file,
                                                const std::vector<std::int64_t>& scenes,
                                                const ClipSettings& settings, OutputClaims& claims,
                                                std::int64_t delay = ClipCutter::kLookBack) {
    CaptureFfmpegLog();
    Console console("test");
    const auto reader = OpenPictures(file.native(), {kGoOn, console}, {});
    std::vector<Picture> pool(ClipCutter::kLookBack + 1);
    std::vector<Picture*> free;
    for (Picture& each : pool)
        free.push_back(&each);

    std::vector<WrittenClip> clips;
    ClipCutter cutter(settings, claims, [&](const WrittenClip& clip) { clips.push_back(clip); });
    std::size_t told = 0;
    for (std::int64_t number = 0;; ++number) {
        if (free.empty())
            throw std::logic_error("too many pictures are held");
        const std::shared_ptr<Picture> picture(free.back(), [&free](Picture* each) { free.push_back(each); });
        free.pop_back();
        if (!reader->Next(*picture))
            break;
        for (; told < scenes.size() && (told == 0 || scenes[told] + delay <= number); ++told)
            cutter.BeginScene(scenes[told], SceneName(told));
        cutter.Add(picture);
    }
    for (; told < scenes.size(); ++told)
        cutter.BeginScene(scenes[told], SceneName(told));
    cutter.Finish();
    return clips;
}

/// Cuts a file by its packets, after all of its pictures were read.
inline std::vector<WrittenClip> CutAfterReading(const std::filesystem::path& file,
                                                const std::vector<std::int64_t>& scenes,
                                                const ClipSettings& settings) {
    CaptureFfmpegLog();
    PacketCut cut;
    cut.path = file.native();
    {
        Console console("test");
        const auto reader = OpenPictures(file.native(), {kGoOn, console}, {});
        Picture picture;
        for (std::int64_t number = 0; reader->Next(picture); ++number) {
            if (number == 0)
                cut.firstPicture = picture.place;
            if (std::ranges::find(scenes, number) != scenes.end())
                cut.scenes.push_back({picture.place, SceneName(cut.scenes.size())});
            cut.end = picture.place.time;
        }
        cut.scale = reader->Scale();
    }
    std::vector<WrittenClip> clips;
    OutputClaims claims;
    CutPackets(settings, cut, claims, [&](const WrittenClip& clip) { clips.push_back(clip); });
    return clips;
}

/// What the program prints.
inline std::string OutputOf(const std::vector<std::string>& arguments) {
    const ProcessResult result = Process(arguments).Wait();
    EXPECT_EQ(result.exitCode, 0) << arguments[0] << ": " << result.err;
    return result.out;
}

/// A hash a picture, in presentation order.
inline std::vector<std::string> PictureHashes(const std::filesystem::path& file) {
    std::vector<std::string> hashes;
    for (const std::string& line : Lines(OutputOf({"ffmpeg", "-v", "error", "-i", file.string(), "-map",
                                                   "0:v", "-vsync", "passthrough", "-f", "framemd5", "-"})))
        if (!line.starts_with('#'))
            hashes.push_back(line.substr(line.rfind(' ') + 1));
    return hashes;
}

/// The audio as 16-bit samples.
inline std::string Samples(const std::filesystem::path& file) {
    return OutputOf({"ffmpeg", "-v", "error", "-i", file.string(), "-map", "0:a", "-f", "s16le", "-"});
}

/// All packets by a hash of their bytes.
inline std::map<std::string, PacketPlace> Packets(const std::filesystem::path& file) {
    std::map<std::string, PacketPlace> packets;
    std::string table =
        OutputOf({"ffprobe", "-v", "error", "-show_data_hash", "md5", "-show_entries",
                  "packet=codec_type,pts_time,dts_time,data_hash", "-of", "csv=p=0", file.string()});
    // Packets with side data have two lines.
    for (std::size_t at = 0; (at = table.find(",\n,", at)) != std::string::npos;)
        table.erase(at, 2);
    for (const std::string& line : Lines(table)) {
        std::istringstream row(line);
        std::string type, pts, dts, hash;
        std::getline(row, type, ',');
        std::getline(row, pts, ',');
        std::getline(row, dts, ',');
        std::getline(row, hash, ',');
        packets[hash] = {std::stod(pts == "N/A" ? dts : pts), type == "video"};
    }
    return packets;
}

} // namespace scenedetect::testing_support
