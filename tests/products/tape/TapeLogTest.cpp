// Which rows tapes give: recordings, breaks, jumps, marks, and what is missing or damaged.
#include "products/tape/TapeLog.h"
#include "tests/DvFrame.h"
#include "tests/Testing.h"

namespace {

using Kind = IrregularityKind;

constexpr int kNoon = 43200;
constexpr int kTenOClock = 36000;

// "frame event size frames" of each row; the size only where there is one.
std::string Summary(const std::string& csv) {
    std::string rows;
    std::istringstream text(csv);
    std::string line;
    std::getline(text, line);
    while (std::getline(text, line)) {
        std::vector<std::string> fields;
        std::istringstream row(line);
        for (std::string field; std::getline(row, field, ',');)
            fields.push_back(field);
        rows += (rows.empty() ? "" : ", ") + fields[0] + ' ' + fields[7] + ' ' +
                (fields[8].empty() ? "" : fields[8] + ' ') + fields[10];
    }
    return rows;
}

// A tape on which recorder and clock run as they are told to, frame by frame: from the 31st of December 2003,
// 12:00:00, and 10:00:00:00 on.
class Tape {
  public:
    explicit Tape(bool is625) { ChangeTo(is625); }

    DvFrame& Frame() { return m_frame; }
    Tape& ChangeTo(bool is625) {
        m_frame = DvFrame(is625);
        m_frame.SetMarks(0xCF).SetAudio(0xC0);
        SetDate(31, 12, 3);
        return *this;
    }
    Tape& SetDate(std::uint8_t day, std::uint8_t month, std::uint8_t year) {
        m_frame.SetDate({0x62, 0xFF, Bcd(day), Bcd(month), Bcd(year)});
        return *this;
    }
    /// `speed` of its seconds go by in one.
    Tape& SetClock(double seconds, double speed = 1) {
        m_clock = seconds;
        m_speed = speed;
        return *this;
    }
    Tape& StopClock() {
        m_clock = -1;
        m_frame.SetTime({0x63, 0xFF, 0xFF, 0xFF, 0xFF});
        return *this;
    }
    /// Counts on from here. No drop-frame numbers are left out by themselves.
    Tape& SetTimecode(std::int64_t frames, bool isDropFrame = false) {
        m_timecode = frames;
        m_isDropFrame = isDropFrame;
        return *this;
    }
    Tape& Run(int frames) {
        for (int i = 0; i < frames; ++i)
            NoteFrame();
        return *this;
    }
    Tape& RunMarked(int marks, int frames) {
        m_frame.SetMarks(static_cast<std::uint8_t>(marks));
        return Run(frames);
    }
    Tape& RunShown(int pc2, int frames) {
        m_frame.SetSourceControl({0x61, 0x3F, static_cast<std::uint8_t>(pc2), 0xFC, 0xFF});
        return Run(frames);
    }
    Tape& RunSounding(int format, int errors, int frames) {
        m_frame.SetAudio(static_cast<std::uint8_t>(format));
        m_frame.FillAudio([count = 0, errors]() mutable {
            const int at = count++;
            return static_cast<std::uint8_t>(at / 2 < errors && at % 2 == 0 ? 0x80 : 0);
        });
        return Run(frames);
    }
    Tape& RunDamaged(int status, bool isDamaged, int frames) {
        m_frame.SetStatus(3, 77, status);
        m_frame.Bytes()[2 * 12'000 + 100 * 80] = isDamaged ? 0 : 0x9F;
        return Run(frames);
    }
    Tape& Lose(Kind kind, std::int64_t frames, std::int64_t bytes) {
        m_log.Note(Irregularity{m_place.frame, m_place.byteOffset, bytes, kind, frames});
        m_place.frame += frames;
        m_clock += static_cast<double>(frames) / 25;
        m_timecode += frames;
        return *this;
    }
    std::string Rows() {
        m_log.Finish();
        return Summary(m_text);
    }
    [[nodiscard]] const std::string& Text() const { return m_text; }

  private:
    void NoteFrame() {
        const int rate = m_frame.Is625() ? 25 : 30;
        if (m_clock >= 0) {
            m_frame.SetTime(TimePack(static_cast<std::int64_t>(m_clock + 1e-6)));
            m_clock += m_speed * (m_frame.Is625() ? 0.04 : 1.001 / 30);
        }
        m_frame.SetTimecode(TimePack(m_timecode / rate, static_cast<int>(m_timecode % rate), m_isDropFrame));
        ++m_timecode;
        Picture picture;
        picture.Hold(m_frame.Bytes(), BytesOwner(nullptr, [](void*) {}));
        picture.place = m_place;
        m_log.Note(ReadTapeFrame(picture).value());
        ++m_place.frame;
        m_place.byteOffset += static_cast<std::int64_t>(m_frame.Bytes().size());
    }

    DvFrame m_frame{true};
    FilePlace m_place;
    double m_clock = kNoon;
    double m_speed = 1;
    std::int64_t m_timecode = kTenOClock * 25;
    bool m_isDropFrame = false;
    std::string m_text;
    TapeLog m_log{TapeLogFormat::Csv, "tape", [this](std::string_view text) { m_text += text; }};
};

TEST(TapeLog, RecordingBreaks) {
    const struct {
        double before; ///< the clock, after three seconds of which the recording stops
        double after;
        std::string size;
    } cases[] = {{kNoon, kNoon + 3, ""},
                 {kNoon, kNoon + 4, "1"},
                 {kNoon, kNoon, "-3"},
                 {kNoon + .4, kNoon + 3.5, ""},
                 {kNoon + .4, kNoon + 5.4, "2"},
                 {kNoon, 40000, "-3203"},
                 {86397, 86400, ""} /* midnight */,
                 {86397, 86410, "10"},
                 {86397, 3 * 86400, "172800"}};
    for (const auto& each : cases) {
        Tape tape(true);
        tape.SetClock(each.before).Run(75);
        if (const auto days = static_cast<std::uint8_t>(each.after / 86400); days > 0)
            tape.SetDate(days, 1, 4);
        tape.SetClock(each.after).Run(75);
        EXPECT_EQ(tape.Rows(), each.size.empty() ? "0 recording 150"
                                                 : "0 recording 75, 75 recording break " + each.size +
                                                       " 1, 75 recording 75")
            << each.after;
    }
}

struct Case {
    std::string name;
    bool is625;
    std::function<void(Tape&)> film;
    std::string rows;
};
class Tapes : public TestWithParam<Case> {};

TEST_P(Tapes, GiveTheirRows) {
    Tape tape(GetParam().is625);
    GetParam().film(tape);
    EXPECT_EQ(tape.Rows(), GetParam().rows);
}

const Case kCases[] = {
    {"Nothing", true, [](Tape&) {}, ""},
    {"SlowAndFastClock", true,
     [](Tape& tape) {
         tape.SetClock(kNoon + .3, 1.002); // in four minutes half a second
         tape.Run(6000).SetClock(kNoon + 240.8, .998).Run(6000);
     },
     "0 recording 12000"},
    {"UnevenClock", false,
     [](Tape& tape) {
         for (int i = 0; i < 40; ++i)
             tape.SetClock(kNoon + i * 1.001, 0).Run(i % 2 == 0 ? 25 : 35);
     },
     "0 recording 1200"},
    {"MidnightWithoutDates", true,
     [](Tape& tape) {
         tape.Frame().SetDate({0x62, 0xFF, 0xFF, 0xFF, 0xFF});
         tape.SetClock(86399).Run(50);
     },
     "0 recording 50, 0 no recording date 50"},
    {"FramesWithoutTime", true,
     [](Tape& tape) {
         tape.Run(60);
         for (const double after : {kNoon + 4.4, 50000.}) // as if the clock had run on; and not
             tape.StopClock().Run(50).SetClock(after).Run(60);
     },
     "0 recording 220, 60 no recording time 50, 170 no recording time 50, 220 recording break 6791 1, "
     "220 recording 60"},
    {"DropFrameMinutes", false,
     [](Tape& tape) {
         for (const int minute : {600, 601}) // the tenth leaves nothing out, the next does
             tape.SetTimecode(minute * 1800 + (minute == 600 ? 0 : 2), true)
                 .Run(1800 - (minute == 600 ? 0 : 2));
     },
     "0 recording 3598"},
    {"TimecodeOfMidnight", true,
     [](Tape& tape) { tape.StopClock().SetTimecode(24 * 3600 * 25 - 10).Run(10).SetTimecode(0).Run(10); },
     "0 recording 20, 0 no recording time 20"},
    {"TimecodeJumpWhileTheClockGoesOn", true,
     [](Tape& tape) { tape.Run(50).SetTimecode(kTenOClock * 25 + 57).Run(50); },
     "0 recording 100, 50 timecode jump 7 1"},
    {"TimecodeJumpsAreAllThatTells", false,
     [](Tape& tape) {
         tape.StopClock();
         for (const int from : {1790, 3602, 0}) // up to 1,800; 1,802 numbers later are 1,798 frames
             tape.SetTimecode(from, true).Run(10);
     },
     "0 recording 10, 0 no recording time 10, 10 timecode jump 1798 1, 10 recording 10, "
     "10 no recording time 10, 20 timecode jump -3608 1, 20 recording 10, 20 no recording time 10"},
    {"OneFrameAstray", true,
     [](Tape& tape) {
         tape.Run(30)
             .SetClock(70000)
             .SetTimecode(5)
             .Run(1)
             .SetClock(kNoon + 1.24)
             .SetTimecode(kTenOClock * 25 + 31)
             .Run(30);
     },
     "0 recording 61, 30 stray timecode 1, 30 stray recording time 1"},
    {"AllStands", true,
     [](Tape& tape) {
         tape.SetClock(5, 0); // which tells nothing; the timecode falls back by one with each frame
         for (int i = 0; i < 100; ++i)
             tape.SetTimecode(7).Run(1);
     },
     "0 recording 100, 1 timecode jump -99 99"},
    {"RecorderMarks", true,
     [](Tape& tape) {
         tape.RunMarked(0x4F, 10).RunMarked(0xCF, 40).RunMarked(0x8F, 2);
         tape.RunMarked(0x4F, 1); // the clock goes on, as when the recorder paused for a moment only
         tape.RunMarked(0xCF, 40);
     },
     "0 recorder start 10, 0 recording 52, 50 recorder stop 2, 52 recorder start 1, 52 recording 41"},
    {"AspectAndLineSystem", true,
     [](Tape& tape) {
         tape.RunShown(0xC8, 20);
         tape.RunShown(0xFF, 5); // unknown is no change
         tape.RunShown(0xC8, 5).RunShown(0xCF, 20).ChangeTo(false).Run(20);
     },
     "0 recording 50, 30 aspect change 1, 50 line system change 1, 50 recording 20"},
    {"AudioFormatsAndErrors", true,
     [](Tape& tape) {
         tape.RunSounding(0xC0, 0, 20).RunSounding(0xC0, 36, 2).RunSounding(0xC0, 0, 18);
         tape.RunSounding(0xD1, 0, 30);
         tape.RunSounding(0xC0, 0, 1).RunSounding(0xD1, 0, 30); // one frame astray
         tape.RunSounding(0xFF, 0, 10);
         tape.RunSounding(0xC0, 1 << 20, 10);
     },
     "0 recording 121, 20 audio errors 72 2, 40 audio change 1, 70 stray audio format 1, "
     "101 no audio format 10, 111 audio change 1, 111 muted audio 10"},
    {"DamageIsMerged", true,
     [](Tape& tape) {
         for (int i = 0; i < 10; ++i)
             tape.RunDamaged(10, true, 1).RunDamaged(0, false, 9);
         tape.Run(25).RunDamaged(15, true, 2).RunDamaged(0, false, 2);
     },
     "0 recording 129, 0 concealed blocks 10 10, 0 damaged blocks 10 10, 125 concealed blocks 2 2, "
     "125 damaged blocks 2 2"},
    {"HolesBelongToWhatTheyAreIn", true,
     [](Tape& tape) {
         tape.Lose(Kind::UnknownBytes, 0, 100).Run(50).Lose(Kind::MissingFrames, 10, 0).Run(10);
         tape.Lose(Kind::DamagedBlocks, 0, 80); // the frame to come has none
         tape.Lose(Kind::MissingBytes, 2, 500).SetClock(60000).Run(10).Lose(Kind::CutEnd, 1, 999);
     },
     "0 unknown bytes 100 0, 0 recording 72, 50 missing frames 10, 70 missing bytes 500 2, "
     "72 recording break 16797 1, 72 recording 10, 82 cut end 999 1"},
};
INSTANTIATE_TEST_SUITE_P(Cases, Tapes, ValuesIn(kCases), kByName);

TEST(TapeLog, MemoryIsBounded) {
    Tape tape(true);
    for (int i = 0; i < 4100; ++i)
        tape.RunShown(i % 2 == 0 ? 0xC8 : 0xCA, 2);
    EXPECT_FALSE(tape.Text().empty());
    EXPECT_THAT(tape.Rows(), HasSubstr("recording continued"));
}

} // namespace
