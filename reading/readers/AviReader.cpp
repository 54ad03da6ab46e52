#include "reading/readers/AviReader.h"

#include "reading/base/HostError.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace scenedetect {
namespace {

using Fourcc = std::array<char, 4>;

constexpr Fourcc kRiff = {'R', 'I', 'F', 'F'};
constexpr Fourcc kList = {'L', 'I', 'S', 'T'};
constexpr Fourcc kAvi = {'A', 'V', 'I', ' '};
constexpr Fourcc kMovi = {'m', 'o', 'v', 'i'};
// Lists whose chunks are of interest; the chunks of all others are stepped over with them.
constexpr std::array<Fourcc, 4> kEnteredLists = {Fourcc{'h', 'd', 'r', 'l'}, Fourcc{'s', 't', 'r', 'l'},
                                                 kMovi, Fourcc{'r', 'e', 'c', ' '}};

constexpr std::size_t kChunkHeaderBytes = 8;
constexpr std::size_t kListHeaderBytes = kChunkHeaderBytes + sizeof(Fourcc);

// Fields of the stream header.
constexpr std::size_t kStreamScale = 20;
constexpr std::size_t kStreamRate = 24;
constexpr std::size_t kStreamHeaderBytes = 28;

// A bitmap header with the longest colour table, and as much again for headers that are longer.
constexpr std::size_t kMostFormatBytes = 2 * (sizeof(BITMAPINFOHEADER) + 256 * sizeof(RGBQUAD));
constexpr WORD kMostPaletteBits = 8;

std::uint32_t Word(std::span<const std::uint8_t> bytes, std::size_t at) {
    return bytes[at] | bytes[at + 1] << 8 | bytes[at + 2] << 16 | std::uint32_t{bytes[at + 3]} << 24;
}

Fourcc FourccAt(std::span<const std::uint8_t> bytes, std::size_t at) {
    Fourcc fourcc;
    std::memcpy(fourcc.data(), &bytes[at], fourcc.size());
    return fourcc;
}

bool IsText(const Fourcc& fourcc) {
    return std::ranges::all_of(fourcc, [](char each) { return each >= ' ' && each <= '~'; });
}

// From a frame an hour to more than any camera gives; nothing for what is only damage.
std::optional<Ratio> PlausibleRate(std::uint32_t rate, std::uint32_t scale) {
    constexpr std::uint32_t kMostTerm = std::numeric_limits<std::int32_t>::max();
    constexpr double kSlowest = 1.0 / 3600;
    constexpr double kFastest = 1e6;
    if (rate == 0 || scale == 0 || rate > kMostTerm || scale > kMostTerm)
        return std::nullopt;
    const Ratio ratio{static_cast<std::int32_t>(rate), static_cast<std::int32_t>(scale)};
    return ratio.Value() >= kSlowest && ratio.Value() <= kFastest ? std::optional(ratio) : std::nullopt;
}

// The table after the header, of as many colours as the depth has room for; missing ones are black.
std::vector<std::uint32_t> ColourTable(std::span<const std::uint8_t> format, const BITMAPINFOHEADER& header) {
    if (header.biCompression != BI_RGB || header.biBitCount == 0 || header.biBitCount > kMostPaletteBits)
        return {};
    const std::uint32_t most = 1u << header.biBitCount;
    const std::uint32_t used = header.biClrUsed == 0 ? most : std::min<std::uint32_t>(header.biClrUsed, most);
    std::vector<std::uint32_t> colours(used);
    const std::size_t begin = std::max<std::size_t>(header.biSize, sizeof header);
    for (std::size_t i = 0; i < used && begin + (i + 1) * sizeof(RGBQUAD) <= format.size(); ++i)
        colours[i] = Word(format, begin + i * sizeof(RGBQUAD));
    return colours;
}

} // namespace

bool AviReader::IsAvi(std::span<const std::uint8_t> start) {
    return start.size() >= kListHeaderBytes && FourccAt(start, 0) == kRiff &&
           FourccAt(start, kChunkHeaderBytes) == kAvi;
}

AviReader::AviReader(ByteInput& input) : m_input(input) {
    ReadHeader();
    if (m_video.stream < 0)
        throw HostError(m_input.Path() + ": no video stream");
}

// Goes to the next chunk; into it, where that is a list to be entered. False at the end.
bool AviReader::NextChunk(Chunk& chunk) {
    m_input.Skip(m_nextChunk - m_input.Position());
    std::array<std::uint8_t, kListHeaderBytes> header{};
    const std::size_t have = m_input.Read(std::span(header).first(kChunkHeaderBytes));
    if (m_input.IsStopped())
        return false;
    chunk = {FourccAt(header, 0), {}, Word(header, sizeof(Fourcc))};
    const bool isRiff = chunk.id == kRiff;
    // What follows the last part is not the file's.
    if (have == 0 || (m_partEnd != 0 && m_nextChunk >= m_partEnd && !isRiff)) {
        if (m_partEnd > m_nextChunk)
            m_breakOffReason = "the end that it announces is missing";
        return false;
    }
    if (have < kChunkHeaderBytes || !IsText(chunk.id)) {
        m_breakOffReason = "no chunk at byte " + std::to_string(m_nextChunk);
        return false;
    }
    const std::int64_t data = m_nextChunk + static_cast<std::int64_t>(kChunkHeaderBytes);
    m_nextChunk = data + chunk.bytes + chunk.bytes % 2;
    if (!isRiff && chunk.id != kList)
        return true;
    if (m_input.Read(std::span(header).subspan(kChunkHeaderBytes)) == sizeof(Fourcc))
        chunk.listType = FourccAt(header, kChunkHeaderBytes);
    if (isRiff)
        m_partEnd = chunk.bytes == 0 ? 0 : m_nextChunk;
    if (isRiff || std::ranges::count(kEnteredLists, chunk.listType) != 0)
        m_nextChunk = data + static_cast<std::int64_t>(sizeof(Fourcc));
    return true;
}

std::vector<std::uint8_t> AviReader::ReadData(std::uint32_t bytes, std::size_t atMost) {
    std::vector<std::uint8_t> data(std::min<std::size_t>(bytes, atMost));
    data.resize(m_input.Read(data));
    return data;
}

void AviReader::ReadHeader() {
    Chunk chunk;
    if (!NextChunk(chunk) || chunk.id != kRiff || chunk.listType != kAvi)
        throw HostError(m_input.Path() + ": is no AVI file");
    while (chunk.listType != kMovi) {
        if (!NextChunk(chunk))
            throw HostError(m_input.Path() + ": no picture can be read");
        if (chunk.id == Fourcc{'s', 't', 'r', 'h'})
            ReadStreamHeader(chunk);
        else if (chunk.id == Fourcc{'s', 't', 'r', 'f'})
            ReadStreamFormat(chunk);
    }
}

void AviReader::ReadStreamHeader(const Chunk& chunk) {
    const int stream = m_streamCount++;
    const std::vector<std::uint8_t> header = ReadData(chunk.bytes, kStreamHeaderBytes);
    m_streamType = {};
    if (header.size() < kStreamHeaderBytes)
        return;
    const Fourcc type = m_streamType = FourccAt(header, 0);
    if (m_video.stream >= 0)
        return;
    m_video.isInterleavedDv = type == Fourcc{'i', 'a', 'v', 's'};
    if (type != Fourcc{'v', 'i', 'd', 's'} && !m_video.isInterleavedDv)
        return;
    m_video.stream = stream;
    m_video.rate =
        PlausibleRate(Word(header, kStreamRate), Word(header, kStreamScale)).value_or(m_video.rate);
    m_video.format.frameDuration = FrameDurationOf(m_video.rate);
}

void AviReader::ReadAudioFormat(const Chunk& chunk) {
    // Of the system's wave format.
    constexpr std::size_t kChannels = 2;
    constexpr std::size_t kRate = 4;
    constexpr std::uint32_t kMostRate = 1'000'000;
    const std::vector<std::uint8_t> format = ReadData(chunk.bytes, kRate + 4);
    if (format.size() < kRate + 4 || m_audio)
        return;
    const int channels = format[kChannels] | format[kChannels + 1] << 8;
    if (const std::uint32_t rate = Word(format, kRate); rate != 0 && rate <= kMostRate)
        m_audio = {channels, static_cast<int>(rate)};
}

void AviReader::ReadStreamFormat(const Chunk& chunk) {
    if (m_streamType == Fourcc{'a', 'u', 'd', 's'})
        return ReadAudioFormat(chunk);
    if (m_video.stream != m_streamCount - 1 || m_video.isInterleavedDv)
        return;
    const std::vector<std::uint8_t> format = ReadData(chunk.bytes, kMostFormatBytes);
    BITMAPINFOHEADER header{};
    if (format.size() < sizeof header)
        return;
    std::memcpy(&header, format.data(), sizeof header);
    m_video.format.fourcc = header.biCompression;
    m_video.format.width = header.biWidth;
    m_video.format.height = header.biHeight;
    m_video.format.bitCount = header.biBitCount;
    m_video.format.colours = ColourTable(format, header);
}

// Two digits for the stream, two letters for what the chunk holds: a picture, compressed or not.
bool AviReader::IsOfVideo(const Fourcc& id) const {
    const bool isPicture = m_video.isInterleavedDv ? id[2] == '_' && id[3] == '_'
                                                   : id[2] == 'd' && (id[3] == 'b' || id[3] == 'c');
    return isPicture && id[0] == '0' + m_video.stream / 10 && id[1] == '0' + m_video.stream % 10;
}

bool AviReader::IsCut(const Chunk& chunk) const {
    return m_input.Size() >= 0 && m_input.Position() + chunk.bytes > m_input.Size();
}

std::optional<AviReader::Frame> AviReader::Next() {
    Chunk chunk;
    while (NextChunk(chunk)) {
        if (!IsOfVideo(chunk.id))
            continue;
        const Frame frame{m_nextFrame++, m_input.Position(), chunk.bytes};
        if (IsCut(chunk)) {
            m_breakOffReason = "the end of frame " + std::to_string(frame.number) + " is missing";
            return std::nullopt;
        }
        if (frame.bytes != 0)
            return frame;
    }
    return std::nullopt;
}

} // namespace scenedetect
