#include "gstreamer/Properties.h"

#include "engine/decision/DetectionParameters.h"
#include "gstreamer/MethodType.h"

#include <gst/gst.h>

#include <cstdint>
#include <iterator>

namespace scenedetect {
namespace {

constexpr auto kSettable = static_cast<GParamFlags>(G_PARAM_READWRITE | G_PARAM_STATIC_STRINGS);
constexpr auto kAnyTime = static_cast<GParamFlags>(kSettable | GST_PARAM_MUTABLE_PLAYING);
constexpr auto kBeforeRun = static_cast<GParamFlags>(kSettable | GST_PARAM_MUTABLE_READY);
constexpr auto kReadable = static_cast<GParamFlags>(G_PARAM_READABLE | G_PARAM_STATIC_STRINGS);

/// In the order of their identifiers.
constexpr std::int32_t kxscenes_settings::*kSettings[] = {
    &kxscenes_settings::method,        &kxscenes_settings::interval,      &kxscenes_settings::read_timecode,
    &kxscenes_settings::cut_threshold, &kxscenes_settings::dark_level,    &kxscenes_settings::clamp,
    &kxscenes_settings::votes,         &kxscenes_settings::longest_scene, &kxscenes_settings::area_left,
    &kxscenes_settings::area_top,      &kxscenes_settings::area_width,    &kxscenes_settings::area_height};
static_assert(std::size(kSettings) + 1 == kFirstCount);

/// A parameter of the picture comparison, in the order of kDetectionParameters.
struct Text {
    const char* name;
    const char* nick;
    const char* blurb;
};
constexpr Text kParameterTexts[] = {
    {"cut-threshold", "Cut threshold",
     "By how much a frame's difference must exceed its neighbours' to be a cut (from the next run on)"},
    {"dark-level", "Dark level",
     "Mean level up to which a frame is dark; the darkest of a fade starts a scene, -1 = none (from the next "
     "run on)"},
    {"clamp", "Clamp", "The most that one block adds to a frame's difference (from the next run on)"},
    {"votes", "Votes",
     "How many of its four neighbours, two on either side, a cut must exceed (from the next run on)"},
    {"longest-scene", "Longest scene",
     "Frames after which a scene ends without a cut, 0 = never (from the next run on)"},
    {"area-left", "Area left",
     "Where the compared part of the picture begins, in per mille of the width (from the next run on)"},
    {"area-top", "Area top",
     "Where the compared part of the picture begins, in per mille of the height (from the next run on)"},
    {"area-width", "Area width",
     "How much of the picture is compared, in per mille of the width (from the next run on)"},
    {"area-height", "Area height",
     "How much of the picture is compared, in per mille of the height (from the next run on)"},
};
static_assert(std::size(kParameterTexts) == kDetectionParameters.size());

} // namespace

void InstallProperties(GObjectClass* elementClass) {
    kxscenes_settings defaults{};
    defaults.struct_size = sizeof defaults;
    kxscenes_default_settings(&defaults);

    guint id = 1;
    const auto install = [&](GParamSpec* property) {
        g_object_class_install_property(elementClass, id++, property);
    };
    install(g_param_spec_enum("method", "Method", "How scenes are found; a change to video begins a new run",
                              MethodType(), defaults.method, kAnyTime));
    install(g_param_spec_int("interval", "Interval", "Frames per scene of method interval, 0 = no scenes", 0,
                             G_MAXINT32, defaults.interval, kAnyTime));
    install(g_param_spec_boolean("read-timecode", "Read timecode",
                                 "Scenes of DV tell their timecode and when they were recorded",
                                 defaults.read_timecode != 0, kAnyTime));
    for (std::size_t i = 0; i < kDetectionParameters.size(); ++i) {
        const Text& text = kParameterTexts[i];
        const ParameterRange& range = kDetectionParameters[i];
        install(g_param_spec_int(text.name, text.nick, text.blurb, range.least, range.most,
                                 defaults.*kSettings[id - 1], kBeforeRun));
    }
    install(g_param_spec_int("frames", "Frames", "Frames watched in this run", 0, G_MAXINT32, 0, kReadable));
    install(g_param_spec_int("scenes", "Scenes", "Scenes told in this run", 0, G_MAXINT32, 0, kReadable));
}

void SetSetting(kxscenes_settings& settings, guint id, const GValue& value) {
    std::int32_t& setting = settings.*kSettings[id - 1];
    if (G_VALUE_HOLDS_ENUM(&value))
        setting = g_value_get_enum(&value);
    else if (G_VALUE_HOLDS_BOOLEAN(&value))
        setting = g_value_get_boolean(&value);
    else
        setting = g_value_get_int(&value);
}

void GetSetting(const kxscenes_settings& settings, guint id, GValue& value) {
    const std::int32_t setting = settings.*kSettings[id - 1];
    if (G_VALUE_HOLDS_ENUM(&value))
        g_value_set_enum(&value, setting);
    else if (G_VALUE_HOLDS_BOOLEAN(&value))
        g_value_set_boolean(&value, setting);
    else
        g_value_set_int(&value, setting);
}

} // namespace scenedetect
