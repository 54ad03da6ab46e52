#include "products/outputs/NameText.h"
#include "products/outputs/SceneTable.h"
#include "products/outputs/SceneWriters.h"
#include "products/outputs/XmlText.h"

#include <string_view>
#include <utility>
#include <vector>

namespace scenedetect {
namespace {

constexpr const char* kFileId = "file-1";
constexpr int kWidth601 = 720;

std::string ClipId(std::size_t track, std::size_t clip) {
    return "clipitem-" + std::to_string(track + 1) + '-' + std::to_string(clip + 1);
}

// One list of one file: the sequence, and on each track (the video's, then one for each channel of the audio)
// the same clips.
class Writer {
  public:
    Writer(const SceneTable& table, NominalRate rate)
        : m_table(table),
          m_rate(rate),
          m_spans(EditSpans(table)),
          m_tracks(table.audio ? 1u + Channels() : 1u) {}

    [[nodiscard]] std::string Write() {
        XmlElement root("xmeml");
        root.Set("version", "5");
        XmlElement& sequence = root.Append("sequence");
        sequence.Set("id", "sequence-1");
        sequence.AppendText("name", PlainName(m_table.name));
        std::int64_t duration = 0;
        for (const EditSpan& span : m_spans)
            duration += span.frameCount;
        sequence.AppendText("duration", duration);
        AppendRate(sequence);
        AppendTimecode(sequence, 0);
        XmlElement& media = sequence.Append("media");
        XmlElement& video = media.Append("video");
        AppendVideoFormat(video.Append("format"));
        AppendTrack(video, 0);
        if (m_tracks == 1)
            return root.Document(true);
        XmlElement& audio = media.Append("audio");
        audio.AppendText("numOutputChannels", static_cast<std::int64_t>(Channels()));
        AppendAudioFormat(audio.Append("format"));
        for (std::size_t track = 1; track < m_tracks; ++track)
            AppendTrack(audio, track);
        return root.Document(true);
    }

  private:
    [[nodiscard]] std::size_t Channels() const { return static_cast<std::size_t>(m_table.audio->channels); }

    void AppendRate(XmlElement& parent) const {
        XmlElement& rate = parent.Append("rate");
        rate.AppendText("timebase", m_rate.timebase);
        rate.AppendText("ntsc", m_rate.isNtsc ? "TRUE" : "FALSE");
    }

    void AppendTimecode(XmlElement& parent, std::int64_t frame) const {
        const FrameNumbering numbering = SourceNumbering(m_table);
        XmlElement& timecode = parent.Append("timecode");
        AppendRate(timecode);
        timecode.AppendText("string", FrameTimecode(frame, numbering));
        timecode.AppendText("frame", frame);
        timecode.AppendText("displayformat", numbering.IsDropFrame() ? "DF" : "NDF");
    }

    // The format has words for square pixels and those of digital tape, and none for others.
    void AppendVideoFormat(XmlElement& parent) const {
        XmlElement& video = parent.Append("samplecharacteristics");
        AppendRate(video);
        video.AppendText("width", m_table.width);
        video.AppendText("height", m_table.height);
        const Ratio pixel = m_table.pixelAspect;
        if (pixel.num == pixel.den) {
            video.AppendText("pixelaspectratio", "square");
        } else if (m_table.width == kWidth601) {
            constexpr double kWide = 1.5; // between 4:3 and 16:9
            video.AppendText("pixelaspectratio", m_table.height > 486 ? "PAL-601" : "NTSC-601");
            video.AppendText("anamorphic",
                             pixel.Value() * m_table.width > kWide * m_table.height ? "TRUE" : "FALSE");
        }
    }

    void AppendAudioFormat(XmlElement& parent) const {
        parent.Append("samplecharacteristics").AppendText("samplerate", m_table.audio->sampleRate);
    }

    // All of it once; later clips point to it by its id.
    void AppendFile(XmlElement& parent) {
        XmlElement& file = parent.Append("file");
        file.Set("id", kFileId);
        if (std::exchange(m_hasFile, true))
            return;
        file.AppendText("name", FileName(m_table.input));
        file.AppendText("pathurl", PathUrl());
        AppendRate(file);
        file.AppendText("duration", EditFrameCount(m_table));
        if (m_table.startTimecode)
            AppendTimecode(file, SourceStart(m_table));
        XmlElement& media = file.Append("media");
        AppendVideoFormat(media.Append("video"));
        if (!m_table.audio)
            return;
        XmlElement& audio = media.Append("audio");
        AppendAudioFormat(audio);
        audio.AppendText("channelcount", m_table.audio->channels);
    }

    // Readers of this format expect a host in the address.
    [[nodiscard]] std::string PathUrl() const {
        constexpr std::string_view kNoHost = "file:///";
        std::string url = MediaUrl(m_table.input);
        return url.starts_with(kNoHost) ? "file://localhost/" + url.substr(kNoHost.size()) : url;
    }

    void AppendTrack(XmlElement& parent, std::size_t track) {
        XmlElement& clips = parent.Append("track");
        std::int64_t offset = 0;
        for (std::size_t i = 0; i < m_spans.size(); ++i) {
            const EditSpan& span = m_spans[i];
            const std::int64_t in = span.start - SourceStart(m_table);
            XmlElement& clip = clips.Append("clipitem");
            clip.Set("id", ClipId(track, i));
            clip.AppendText("name", ClipName(m_table, span.scene));
            clip.AppendText("duration", EditFrameCount(m_table));
            AppendRate(clip);
            clip.AppendText("start", offset);
            clip.AppendText("end", offset + span.frameCount);
            clip.AppendText("in", in);
            clip.AppendText("out", in + span.frameCount);
            AppendFile(clip);
            if (track != 0) {
                XmlElement& source = clip.Append("sourcetrack");
                source.AppendText("mediatype", "audio");
                source.AppendText("trackindex", static_cast<std::int64_t>(track));
            }
            AppendLinks(clip, i);
            offset += span.frameCount;
        }
        if (track != 0)
            clips.AppendText("outputchannelindex", static_cast<std::int64_t>(track));
    }

    // To this scene's clips on all tracks, so that they move together.
    void AppendLinks(XmlElement& clip, std::size_t index) const {
        for (std::size_t track = 0; track < m_tracks && m_tracks != 1; ++track) {
            XmlElement& link = clip.Append("link");
            link.AppendText("linkclipref", ClipId(track, index));
            link.AppendText("mediatype", track == 0 ? "video" : "audio");
            link.AppendText("trackindex", static_cast<std::int64_t>(track == 0 ? 1 : track));
            link.AppendText("clipindex", static_cast<std::int64_t>(index + 1));
        }
    }

    const SceneTable& m_table;
    const NominalRate m_rate;
    const std::vector<EditSpan> m_spans;
    const std::size_t m_tracks;
    bool m_hasFile = false;
};

} // namespace

std::string Xmeml(const SceneTable& table) {
    RequireMediaUrl(table, "FCP 7 XML");
    return Writer(table, NominalRateOf(table, "FCP 7 XML")).Write();
}

} // namespace scenedetect
