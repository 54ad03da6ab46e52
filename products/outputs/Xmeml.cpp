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
        pugi::xml_document document = NewXml("xmeml");
        pugi::xml_node root = document.append_child("xmeml");
        root.append_attribute("version") = "5";
        pugi::xml_node sequence = root.append_child("sequence");
        sequence.append_attribute("id") = "sequence-1";
        AppendText(sequence, "name", PlainName(m_table.name));
        std::int64_t duration = 0;
        for (const EditSpan& span : m_spans)
            duration += span.frameCount;
        AppendText(sequence, "duration", duration);
        AppendRate(sequence);
        AppendTimecode(sequence, 0);
        pugi::xml_node media = sequence.append_child("media");
        pugi::xml_node video = media.append_child("video");
        AppendVideoFormat(video.append_child("format"));
        AppendTrack(video, 0);
        if (m_tracks == 1)
            return TextOf(document);
        pugi::xml_node audio = media.append_child("audio");
        AppendText(audio, "numOutputChannels", static_cast<std::int64_t>(Channels()));
        AppendAudioFormat(audio.append_child("format"));
        for (std::size_t track = 1; track < m_tracks; ++track)
            AppendTrack(audio, track);
        return TextOf(document);
    }

  private:
    [[nodiscard]] std::size_t Channels() const { return static_cast<std::size_t>(m_table.audio->channels); }

    void AppendRate(pugi::xml_node parent) const {
        pugi::xml_node rate = parent.append_child("rate");
        AppendText(rate, "timebase", m_rate.timebase);
        AppendText(rate, "ntsc", m_rate.isNtsc ? "TRUE" : "FALSE");
    }

    void AppendTimecode(pugi::xml_node parent, std::int64_t frame) const {
        const FrameNumbering numbering = SourceNumbering(m_table);
        pugi::xml_node timecode = parent.append_child("timecode");
        AppendRate(timecode);
        AppendText(timecode, "string", FrameTimecode(frame, numbering));
        AppendText(timecode, "frame", frame);
        AppendText(timecode, "displayformat", numbering.IsDropFrame() ? "DF" : "NDF");
    }

    // The format has words for square pixels and those of digital tape, and none for others.
    void AppendVideoFormat(pugi::xml_node parent) const {
        pugi::xml_node video = parent.append_child("samplecharacteristics");
        AppendRate(video);
        AppendText(video, "width", m_table.width);
        AppendText(video, "height", m_table.height);
        const Ratio pixel = m_table.pixelAspect;
        if (pixel.num == pixel.den) {
            AppendText(video, "pixelaspectratio", "square");
        } else if (m_table.width == kWidth601) {
            constexpr double kWide = 1.5; // between 4:3 and 16:9
            AppendText(video, "pixelaspectratio", m_table.height > 486 ? "PAL-601" : "NTSC-601");
            AppendText(video, "anamorphic",
                       pixel.Value() * m_table.width > kWide * m_table.height ? "TRUE" : "FALSE");
        }
    }

    void AppendAudioFormat(pugi::xml_node parent) const {
        AppendText(parent.append_child("samplecharacteristics"), "samplerate", m_table.audio->sampleRate);
    }

    // All of it once; later clips point to it by its id.
    void AppendFile(pugi::xml_node parent) {
        pugi::xml_node file = parent.append_child("file");
        file.append_attribute("id") = kFileId;
        if (std::exchange(m_hasFile, true))
            return;
        AppendText(file, "name", FileName(m_table.input));
        AppendText(file, "pathurl", PathUrl());
        AppendRate(file);
        AppendText(file, "duration", EditFrameCount(m_table));
        if (m_table.startTimecode)
            AppendTimecode(file, SourceStart(m_table));
        pugi::xml_node media = file.append_child("media");
        AppendVideoFormat(media.append_child("video"));
        if (!m_table.audio)
            return;
        pugi::xml_node audio = media.append_child("audio");
        AppendAudioFormat(audio);
        AppendText(audio, "channelcount", m_table.audio->channels);
    }

    // Readers of this format expect a host in the address.
    [[nodiscard]] std::string PathUrl() const {
        constexpr std::string_view kNoHost = "file:///";
        std::string url = MediaUrl(m_table.input);
        return url.starts_with(kNoHost) ? "file://localhost/" + url.substr(kNoHost.size()) : url;
    }

    void AppendTrack(pugi::xml_node parent, std::size_t track) {
        pugi::xml_node clips = parent.append_child("track");
        std::int64_t offset = 0;
        for (std::size_t i = 0; i < m_spans.size(); ++i) {
            const EditSpan& span = m_spans[i];
            const std::int64_t in = span.start - SourceStart(m_table);
            pugi::xml_node clip = clips.append_child("clipitem");
            clip.append_attribute("id") = ClipId(track, i).c_str();
            AppendText(clip, "name", ClipName(m_table, span.scene));
            AppendText(clip, "duration", EditFrameCount(m_table));
            AppendRate(clip);
            AppendText(clip, "start", offset);
            AppendText(clip, "end", offset + span.frameCount);
            AppendText(clip, "in", in);
            AppendText(clip, "out", in + span.frameCount);
            AppendFile(clip);
            if (track != 0) {
                pugi::xml_node source = clip.append_child("sourcetrack");
                AppendText(source, "mediatype", "audio");
                AppendText(source, "trackindex", static_cast<std::int64_t>(track));
            }
            AppendLinks(clip, i);
            offset += span.frameCount;
        }
        if (track != 0)
            AppendText(clips, "outputchannelindex", static_cast<std::int64_t>(track));
    }

    // To this scene's clips on all tracks, so that they move together.
    void AppendLinks(pugi::xml_node clip, std::size_t index) const {
        for (std::size_t track = 0; track < m_tracks && m_tracks != 1; ++track) {
            pugi::xml_node link = clip.append_child("link");
            AppendText(link, "linkclipref", ClipId(track, index));
            AppendText(link, "mediatype", track == 0 ? "video" : "audio");
            AppendText(link, "trackindex", static_cast<std::int64_t>(track == 0 ? 1 : track));
            AppendText(link, "clipindex", static_cast<std::int64_t>(index + 1));
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
