#include "products/files/UnfinishedFile.h"

#include "products/files/SystemFile.h"

#include <array>
#include <atomic>

namespace scenedetect {
namespace {

enum class State { Free, Taken, Noted };
static_assert(std::atomic<State>::is_always_lock_free, "read by a signal handler");

constexpr std::size_t kRoom = 4096; // with the end mark

struct Slot {
    std::atomic<State> state = State::Free;
    std::array<char, kRoom> path{};
};

std::array<Slot, 64> g_slots;

} // namespace

UnfinishedFile::UnfinishedFile(const std::string& path) : m_slot(g_slots.size()) {
    if (path.size() >= kRoom)
        return;
    for (std::size_t i = 0; i < g_slots.size(); ++i) {
        State state = State::Free;
        if (!g_slots[i].state.compare_exchange_strong(state, State::Taken))
            continue;
        path.copy(g_slots[i].path.data(), path.size());
        g_slots[i].path[path.size()] = '\0';
        g_slots[i].state = State::Noted;
        m_slot = i;
        return;
    }
}

UnfinishedFile::~UnfinishedFile() {
    if (m_slot < g_slots.size())
        g_slots[m_slot].state = State::Free;
}

void UnfinishedFile::RemoveAll() noexcept {
    for (const Slot& slot : g_slots)
        if (slot.state == State::Noted)
            RemoveFile(slot.path.data());
}

} // namespace scenedetect
