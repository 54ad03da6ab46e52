#include "tests/engine/LogRecorder.h"

#include "platform/WideFormat.h"
#include "support/DebugLog.h"

#include <cstdarg>

namespace scenedetect {

static testing_support::LogRecorder* g_recorder = nullptr;

static void Record(std::uint32_t category, std::uint32_t level, const wchar_t* format,
                   std::va_list arguments) {
    wchar_t text[512];
    FormatWide(text, std::size(text), format, arguments);
    if (g_recorder)
        g_recorder->lines.push_back(std::to_wstring(category) + L"/" + std::to_wstring(level) + L" " + text);
}

// These stand in for the ones of the support library, which the linker then leaves out.
void DebugPrintAt(std::uint32_t category, std::uint32_t level, const wchar_t* format, ...) noexcept {
    std::va_list arguments;
    va_start(arguments, format);
    Record(category, level, format, arguments);
    va_end(arguments);
}

void DebugPrint(const wchar_t* format, ...) noexcept {
    std::va_list arguments;
    va_start(arguments, format);
    Record(kLogCategorySupport, kLogLevelResult, format, arguments);
    va_end(arguments);
}

bool IsDebugLevelActive(std::uint32_t category, std::uint32_t level) noexcept {
    return g_recorder && category == kLogCategorySceneDetect && level <= g_recorder->highestLevel;
}

testing_support::LogRecorder::LogRecorder(std::uint32_t highest) : highestLevel(highest) {
    g_recorder = this;
}

testing_support::LogRecorder::~LogRecorder() {
    g_recorder = nullptr;
}

} // namespace scenedetect
