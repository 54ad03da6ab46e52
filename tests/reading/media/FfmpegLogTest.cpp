#include "reading/ffmpeg/FfmpegLog.h"
#include "tests/Testing.h"

extern "C" {
#include <libavutil/log.h>
}

namespace {

// As the libraries' objects begin.
struct Speaker {
    const AVClass* kind;
};

AVClass ClassOf(AVClassCategory category) {
    AVClass kind{};
    kind.class_name = "Test";
    kind.item_name = av_default_item_name;
    kind.version = LIBAVUTIL_VERSION_INT;
    kind.category = category;
    return kind;
}

TEST(FfmpegLog, KeepsErrorsOfContainersAndSurvivesWhateverSpeaks) {
    const AVClass demuxer = ClassOf(AV_CLASS_CATEGORY_DEMUXER);
    const AVClass muxer = ClassOf(AV_CLASS_CATEGORY_MUXER);
    const AVClass decoder = ClassOf(AV_CLASS_CATEGORY_DECODER);
    AVClass asked = ClassOf(AV_CLASS_CATEGORY_NA);
    asked.get_category = [](void*) { return AV_CLASS_CATEGORY_DEMUXER; };
    const std::string longText(1000, 'x');
    struct Case {
        const char* name;
        const AVClass* kind;
        bool hasSpeaker;
        int level;
        std::string text;
        std::string kept; // empty: not counted
    };
    const Case cases[] = {
        {"no object", nullptr, false, AV_LOG_ERROR, "lost", ""},
        {"an object without a class, as slice threads have", nullptr, true, AV_LOG_ERROR, "lost", ""},
        {"a decoder", &decoder, true, AV_LOG_ERROR, "ac-tex damaged at 3 4\n", ""},
        {"a warning", &demuxer, true, AV_LOG_WARNING, "hm", ""},
        {"a demuxer", &demuxer, true, AV_LOG_ERROR, "truncated.\n", "truncated"},
        {"a muxer", &muxer, true, AV_LOG_FATAL, "not supported\n", "not supported"},
        {"a class that tells by asking", &asked, true, AV_LOG_ERROR, "...end..\n\n", "...end"},
        {"more than a line holds", &demuxer, true, AV_LOG_ERROR, longText, longText.substr(0, 255)},
    };
    CaptureFfmpegLog();
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        const std::size_t before = FormatErrorCount();
        const std::string last = LastFormatError();
        Speaker speaker{each.kind};
        av_log(each.hasSpeaker ? &speaker : nullptr, each.level, "%s", each.text.c_str());
        const bool isKept = !each.kept.empty();
        EXPECT_EQ(FormatErrorCount() - before, isKept ? 1u : 0u);
        EXPECT_EQ(LastFormatError(), isKept ? each.kept : last);
    }
}

} // namespace
