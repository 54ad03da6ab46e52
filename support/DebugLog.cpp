#include "support/DebugLog.h"

#include "platform/DynamicLibrary.h"
#include "platform/SystemError.h"
#include "platform/WideFormat.h"
#include "support/LogLibrary.h"

#include <atomic>
#include <cstdarg>
#include <memory>
#include <mutex>
#include <new>

namespace scenedetect {
namespace {

enum class Binding {
    Untried,
    Bound,
    Silent, // Deliberate: no library, an incomplete one, or torn down, and never anything else again
};

// The library and its entries. They have to outlive the static objects of other files, which may log from
// their destructors: nothing here has a destructor of its own.
constinit std::atomic<Binding> g_binding{Binding::Untried};
constinit std::atomic<int> g_callers{0};
std::mutex g_bindingLock;
constinit DynamicLibrary* g_library = nullptr;
constinit LogPrint* g_print = nullptr;
constinit LogIsLevelActive* g_isLevelActive = nullptr;

// At the module's end every message falls silent, and the library is released.
struct TearDown {
    ~TearDown() {
        // A thread that still runs at exit may be inside the library; then it stays loaded.
        if (g_binding.exchange(Binding::Silent) == Binding::Bound && g_callers.load() == 0)
            delete g_library;
    }
} g_tearDown;

// Looks for the library, once in a process; when memory runs out, the next call tries again.
Binding Bind() noexcept try {
    const std::lock_guard lock(g_bindingLock);
    Binding binding = g_binding.load();
    if (binding != Binding::Untried)
        return binding;

    auto library = std::make_unique<DynamicLibrary>();
    Binding result = Binding::Silent;
    if (library->Open(kLogLibraryFile)) {
        g_library = library.get();
        g_print = reinterpret_cast<LogPrint*>(library->Find(kLogPrintName));
        const bool hasPrintList = library->Find(kLogPrintListName) != nullptr;
        g_isLevelActive = reinterpret_cast<LogIsLevelActive*>(library->Find(kLogIsLevelActiveName));
        // Deliberate: the list form is never called, but a library without it counts as incomplete.
        if (g_print && hasPrintList && g_isLevelActive)
            result = Binding::Bound;
    }
    // The tear-down has happened meanwhile: the result comes too late.
    if (!g_binding.compare_exchange_strong(binding, result))
        return binding;
    if (result == Binding::Bound) {
        static_cast<void>(library.release());
        // Registered later than the library's own static objects, this one falls silent before they go.
        static const TearDown tearDown;
    }
    return result;
} catch (const std::bad_alloc&) {
    return Binding::Untried;
}

// Runs `call` while the library cannot be released; does nothing when there is none.
template <typename Call>
void WithLibrary(Call call) noexcept {
    Binding binding = g_binding.load(std::memory_order_acquire);
    if (binding == Binding::Untried)
        binding = Bind();
    if (binding != Binding::Bound)
        return;
    // Counted first, looked at again after: the tear-down does the same the other way round.
    g_callers.fetch_add(1);
    if (g_binding.load() == Binding::Bound)
        call();
    g_callers.fetch_sub(1);
}

void Print(std::uint32_t category, std::uint32_t level, const wchar_t* format,
           std::va_list arguments) noexcept {
    // Deliberate: even when there is no library.
    wchar_t text[kLogTextLength + 1];
    const int length = FormatWide(text, kLogTextLength + 1, format, arguments);
    // Deliberate: a text that fills the buffer, or was cut to do so, goes out without a newline.
    if (length > 0 && length < kLogTextLength && text[length - 1] != L'\n') {
        text[length] = L'\n';
        text[length + 1] = 0;
    }
    // Deliberate: the expanded text is a format once more to the library.
    WithLibrary([&] { SendLogText(g_print, category, level, text); });
}

} // namespace

void DebugPrint(const wchar_t* format, ...) noexcept {
    std::va_list arguments;
    va_start(arguments, format);
    Print(kLogCategorySupport, kLogLevelResult, format, arguments);
    va_end(arguments);
}

void DebugPrintAt(std::uint32_t category, std::uint32_t level, const wchar_t* format, ...) noexcept {
    std::va_list arguments;
    va_start(arguments, format);
    Print(category, level, format, arguments);
    va_end(arguments);
}

bool IsDebugLevelActive(std::uint32_t category, std::uint32_t level) noexcept {
    bool active = false;
    WithLibrary([&] { active = g_isLevelActive(category, level); });
    return active;
}

void GetLastErrorText(std::wstring& text) {
    constexpr std::size_t kMostCharacters = 100;
    text = LastSystemErrorText().substr(0, kMostCharacters);
}

} // namespace scenedetect
