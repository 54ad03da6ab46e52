// AVI files put together byte by byte: what the header says, which chunks are frames, where a file breaks
// off.
#include "reading/readers/AviReader.h"
#include "reading/base/HostError.h"
#include "reading/readers/AviPictures.h"
#include "tests/MemoryInput.h"
#include "tests/Testing.h"

namespace {

using namespace std::string_literals;

std::string Word(std::int64_t value, int bytes = 4) {
    std::string text;
    for (int i = 0; i < bytes; ++i)
        text += static_cast<char>(value >> 8 * i & 0xFF);
    return text;
}
std::string Chunk(const std::string& id, const std::string& data) {
    return id + Word(static_cast<std::int64_t>(data.size())) + data + std::string(data.size() % 2, '\0');
}
std::string List(const std::string& type, const std::string& chunks) {
    return Chunk("LIST", type + chunks);
}

std::string StreamHeader(const std::string& type, int rate, int scale) {
    return Chunk("strh", type + std::string(16, '\0') + Word(scale) + Word(rate) + std::string(28, '\0'));
}
std::string Format(int width, int height, int bits, const std::string& fourcc,
                   const std::string& colours = "", int used = 0) {
    return Chunk("strf", Word(40) + Word(width) + Word(height) + Word(1, 2) + Word(bits, 2) + fourcc +
                             std::string(12, '\0') + Word(used) + Word(0) + colours);
}
std::string Stream(const std::string& header, const std::string& format) {
    return List("strl", header + format);
}

const std::string kRgb(4, '\0');
// 4 x 2 pixels of YUY2: 16 bytes a frame.
const std::string kYuy2 = Stream(StreamHeader("vids", 25, 1), Format(4, 2, 16, "YUY2"));
const std::string kFrame = Chunk("00dc", std::string(16, 'x'));

std::string Avi(const std::string& streams, const std::string& chunks, const std::string& after = "") {
    return Chunk("RIFF", "AVI " + List("hdrl", Chunk("avih", std::string(56, '\0')) + streams) +
                             List("INFO", Chunk("00dc", "not here")) + List("movi", chunks) + after);
}

std::unique_ptr<MemoryInput> Input(const std::string& bytes) {
    return std::make_unique<MemoryInput>(std::vector<std::uint8_t>(bytes.begin(), bytes.end()));
}

TEST(AviReader, ReadsTheFirstVideoStreamsHeader) {
    const std::string colours = "\x01\x02\x03"s + '\0' + "\x04\x05\x06"s + '\0';
    const auto input =
        Input(Avi(Stream(StreamHeader("auds", 48000, 1), Chunk("strf", std::string(18, '\0'))) +
                      Stream(StreamHeader("vids", 30000, 1001), Format(6, -3, 8, kRgb, colours, 3)) +
                      Stream(StreamHeader("vids", 10, 1), Format(8, 8, 24, kRgb)),
                  ""));
    const AviReader reader(*input);
    const AviVideo& video = reader.Video();
    EXPECT_EQ(video.stream, 1);
    EXPECT_EQ(video.rate, (Ratio{30000, 1001}));
    EXPECT_EQ(video.format.frameDuration, 333'667);
    EXPECT_EQ(video.format.width, 6);
    EXPECT_EQ(video.format.height, -3);
    EXPECT_EQ(video.format.bitCount, 8);
    EXPECT_EQ(video.format.fourcc, DWORD{BI_RGB});
    // Three announced, two there.
    EXPECT_THAT(video.format.colours, ElementsAre(0x00030201, 0x00060504, 0));
}

TEST(AviReader, RatesWithoutSenseBecome25) {
    for (const auto& [rate, scale] :
         {std::pair{0, 1}, {25, 0}, {-1, 1}, {1, 2'000'000'000}, {2'000'000'000, 1}}) {
        const auto input =
            Input(Avi(Stream(StreamHeader("vids", rate, scale), Format(4, 2, 16, "YUY2")), ""));
        EXPECT_EQ(AviReader(*input).Video().rate, (Ratio{25, 1})) << rate << '/' << scale;
    }
}

TEST(AviReader, RefusesWhatIsNoVideoInAvi) {
    const struct {
        std::string bytes;
        const char* message;
    } cases[] = {
        {"", "is no AVI file"},
        {Chunk("RIFF", "WAVE" + Chunk("fmt ", "")), "is no AVI file"},
        {Avi(Stream(StreamHeader("auds", 48000, 1), ""), ""), "no video stream"},
        {Chunk("RIFF", "AVI " + List("hdrl", kYuy2)), "no picture can be read"},
        {Avi(kYuy2, "").substr(0, 90), "no picture can be read"},
    };
    for (const auto& each : cases) {
        const auto input = Input(each.bytes);
        try {
            const AviReader reader(*input);
            ADD_FAILURE() << each.message;
        } catch (const HostError& error) {
            EXPECT_THAT(error.what(), HasSubstr(each.message));
        }
    }
}

struct Walk {
    const char* name;
    std::string bytes;
    std::vector<std::int64_t> frames;
    const char* breakOff = ""; // part of the reason; empty: none
};

void PrintTo(const Walk& walk, std::ostream* stream) {
    *stream << walk.name;
}

class AviWalk : public TestWithParam<Walk> {};

TEST_P(AviWalk, FindsFrames) {
    const auto input = Input(GetParam().bytes);
    AviReader reader(*input);
    std::vector<std::int64_t> frames;
    while (const auto frame = reader.Next()) {
        frames.push_back(frame->number);
        EXPECT_EQ(frame->bytes, 16u);
        EXPECT_EQ(GetParam().bytes.substr(static_cast<std::size_t>(frame->offset), 16), std::string(16, 'x'));
    }
    EXPECT_EQ(frames, GetParam().frames);
    EXPECT_THAT(reader.BreakOffReason(), HasSubstr(GetParam().breakOff));
    EXPECT_EQ(reader.BreakOffReason().empty(), *GetParam().breakOff == '\0');
}

const std::string kEmpty = Chunk("00dc", "");
const std::string kThree = Avi(kYuy2, kFrame + kFrame + kFrame);

std::string WithMoviSizeZero(std::string bytes) {
    bytes.replace(bytes.find("movi") - 4, 4, 4, '\0');
    return bytes.replace(4, 4, 4, '\0');
}

const Walk kWalks[] = {
    {"Plain", kThree, {0, 1, 2}},
    {"BothKindsOfPicture", Avi(kYuy2, kFrame + Chunk("00db", std::string(16, 'x'))), {0, 1}},
    {"EmptyChunksAreDroppedFrames", Avi(kYuy2, kEmpty + kFrame + kEmpty + kEmpty + kFrame + kEmpty), {1, 4}},
    {"OtherChunksAreNoFrames",
     Avi(kYuy2,
         Chunk("01wb", "odd") + kFrame + Chunk("00pc", "ab") + Chunk("ix00", "cd") + Chunk("01dc", "ef") +
             Chunk("JUNK", kFrame) + kFrame,
         Chunk("idx1", kFrame)),
     {0, 1}},
    {"ListsOfRecords", Avi(kYuy2, List("rec ", kFrame + Chunk("01wb", "x")) + List("rec ", kFrame)), {0, 1}},
    {"FurtherParts",
     kThree + Chunk("RIFF", "AVIX" + List("movi", kFrame)) + Chunk("RIFF", "AVIX" + List("movi", kFrame)),
     {0, 1, 2, 3, 4}},
    {"WhatFollowsIsForeign", kThree + std::string(100, '\0'), {0, 1, 2}},
    {"SizesNeverWritten", WithMoviSizeZero(kThree), {0, 1, 2}},
    {"CutInsideAFrame", kThree.substr(0, kThree.size() - 1), {0, 1}, "the end of frame 2 is missing"},
    {"CutInsideAHeader", kThree.substr(0, kThree.size() - 20), {0, 1}, "no chunk at byte"},
    {"CutBetweenFrames",
     kThree.substr(0, kThree.size() - 24),
     {0, 1},
     "the end that it announces is missing"},
    {"Garbage", Avi(kYuy2, kFrame + std::string(8, '\x01') + kFrame), {0}, "no chunk at byte"},
    {"ChunkBeyondAnyFile", Avi(kYuy2, kFrame + "00dc" + std::string(4, '\xFF')), {0}, "the end of frame 1"},
};

INSTANTIATE_TEST_SUITE_P(Cases, AviWalk, ValuesIn(kWalks), kByName);

std::vector<FilePlace> Places(AviPictures& pictures) {
    std::vector<FilePlace> places;
    for (Picture picture; pictures.Next(picture);)
        places.push_back(picture.place);
    return places;
}

TEST(AviPictures, ShortFramesAreLeftOutAndLongOnesCut) {
    const std::string bytes =
        Avi(kYuy2, Chunk("00db", std::string(15, 'x')) + Chunk("00db", std::string(40, 'x')));
    Console console("test");
    AviPictures pictures(Input(bytes), DamageLog(console, "file"));
    Picture picture;
    ASSERT_TRUE(pictures.Next(picture));
    EXPECT_EQ(picture.place, (FilePlace{1, 1, static_cast<std::int64_t>(bytes.size()) - 40}));
    EXPECT_EQ(picture.Bytes().size(), 16u);
    EXPECT_FALSE(pictures.Next(picture));
}

// Blocks of zeros with the headers that a frame is known by.
std::string DvFrame525() {
    std::string frame(kDifFrameBytes525, '\0');
    for (std::size_t sequence = 0; sequence < kDifSequences525; ++sequence)
        frame.replace(sequence * kDifSequenceBytes, 4,
                      Word(0x3F000700 | 0x1F | std::int64_t(sequence) << 12));
    return frame;
}

TEST(AviPictures, DvIsKnownByItsFramesInBothKindsOfFile) {
    const std::string frame = DvFrame525();
    const struct {
        std::string header;
        std::string format;
        std::string id;
    } cases[] = {
        {StreamHeader("vids", 30000, 1001), Format(720, 480, 24, "dvsd"), "00db"},
        {StreamHeader("iavs", 2997, 100), Chunk("strf", std::string(32, '\0')), "00__"},
        {StreamHeader("vids", 15, 1), Format(0, 0, 0, "????"), "00dc"},
    };
    for (const auto& each : cases) {
        Console console("test");
        AviPictures pictures(
            Input(Avi(Stream(each.header, each.format),
                      Chunk(each.id, frame) + Chunk(each.id, "damaged") + Chunk(each.id, frame))),
            DamageLog(console, "file"));
        EXPECT_EQ(pictures.Format(), DvPictureFormat({}, DvSystem::Lines525));
        EXPECT_TRUE(IsSameRate(pictures.Scale().rate, {30000, 1001})) << each.id;
        const auto places = Places(pictures);
        ASSERT_EQ(places.size(), 2u);
        EXPECT_EQ(places[1].frame, 2);
    }
}

TEST(AviPictures, CompressedVideoIsRefused) {
    Console console("test");
    const std::string stream = Stream(StreamHeader("vids", 25, 1), Format(4, 2, 24, "MJPG"));
    EXPECT_THROW(AviPictures(Input(Avi(stream, kFrame)), DamageLog(console, "file")), HostError);
}

TEST(PictureFormat, SizesOfUncompressedPictures) {
    const struct {
        DWORD fourcc;
        WORD bits;
        LONG width;
        LONG height;
        std::uint32_t bytes; // 0: not taken
        LONG heightThen;
    } cases[] = {
        // Rows of RGB are padded to 4 bytes; only RGB can be top-down.
        {BI_RGB, 1, 33, 2, 16, 2},
        {BI_RGB, 4, 9, 2, 16, 2},
        {BI_RGB, 8, 5, -3, 24, -3},
        {BI_RGB, 24, 3, 2, 24, 2},
        {BI_RGB, 32, 3, 2, 24, 2},
        {BI_RGB, 12, 3, 2, 0, 0},
        {MAKEFOURCC('Y', 'U', 'Y', '2'), 0, 6, -2, 24, 2},
        {MAKEFOURCC('I', 'Y', 'U', 'V'), 24, 4, 2, 12, 2},
        {MAKEFOURCC('M', 'J', 'P', 'G'), 24, 4, 2, 0, 0},
        {BI_RGB, 24, 0, 2, 0, 0},
        {BI_RGB, 24, 4, 0, 0, 0},
        {BI_RGB, 24, -4, 2, 0, 0},
        {BI_RGB, 32, INT32_MAX, INT32_MAX, 0, 0},
        {BI_RGB, 24, 4, INT32_MIN, 0, 0},
    };
    for (const auto& each : cases) {
        PictureFormat declared;
        declared.fourcc = each.fourcc;
        declared.bitCount = each.bits;
        declared.width = each.width;
        declared.height = each.height;
        const auto format = UncompressedFormat(declared);
        EXPECT_EQ(format ? format->imageBytes : 0, each.bytes)
            << each.bits << ' ' << each.width << ' ' << each.height;
        EXPECT_EQ(format ? format->height : 0, each.heightThen);
    }
}

} // namespace
