#include "support/RefObject.h"

#include "platform/CriticalSection.h"
#include "support/Archive.h"
#include "support/DebugLog.h"

#include <algorithm>
#include <array>
#include <list>
#include <mutex>
#include <new>
#include <unordered_map>

namespace scenedetect {
namespace {

constexpr std::uint8_t kOrphan = 1;
constexpr std::uint8_t kOnHeap = 2;

enum class Storage { Heap, Placed };

// What outlives every object, static ones included: it is never destroyed.
struct Shared {
    CriticalSection lock;
    std::list<RefPtr<RefObject>> orphans;
    // Where objects were made by `new` and still are. A noted address means nothing once its object is gone.
    std::unordered_map<void*, Storage> storage;
};

Shared& TheShared() {
    static Shared& shared = *new Shared;
    return shared;
}

// Releases the orphans when the program ends.
struct OrphansEnd {
    ~OrphansEnd() {
        Shared& shared = TheShared();
        const std::lock_guard lock(shared.lock);
        const auto orphans = std::exchange(shared.orphans, {});
    }
};

// The addresses that `new` gave out on this thread and no constructor has taken yet, the newest last. Without
// a destructor: a thread may outlive the code that it would have to run.
struct RecentAllocations {
    std::array<void*, 10> addresses;
    int top;

    void Push(void* address) {
        if (top + 1 == static_cast<int>(addresses.size())) {
            std::copy(addresses.begin() + 1, addresses.end(), addresses.begin());
            --top;
        }
        addresses[static_cast<std::size_t>(++top)] = address;
    }
    [[nodiscard]] bool Pop(const void* address) {
        if (top < 0 || addresses[static_cast<std::size_t>(top)] != address)
            return false;
        --top;
        return true;
    }
};
constinit thread_local RecentAllocations t_recent = {{}, -1};

void NoteAllocation(void* address, Storage storage) {
    Shared& shared = TheShared();
    const std::lock_guard lock(shared.lock);
    shared.storage.insert_or_assign(address, storage);
    t_recent.Push(address);
}

bool IsAllocated(void* address) {
    Shared& shared = TheShared();
    const std::lock_guard lock(shared.lock);
    return shared.storage.contains(address);
}

// Whether there was storage of this kind at the address; it is forgotten.
bool ForgetAllocation(void* address, Storage kind) {
    Shared& shared = TheShared();
    const std::lock_guard lock(shared.lock);
    const auto found = shared.storage.find(address);
    if (found == shared.storage.end() || found->second != kind)
        return false;
    shared.storage.erase(found);
    return true;
}

// The list's reference to the object, taken out of the list; none when it is not there.
RefPtr<RefObject> TakeOrphan(const RefObject* object) {
    Shared& shared = TheShared();
    const std::lock_guard lock(shared.lock);
    const auto found = std::ranges::find(shared.orphans, object, &RefPtr<RefObject>::get);
    if (found == shared.orphans.end())
        return {};
    RefPtr<RefObject> orphan = std::move(*found);
    shared.orphans.erase(found);
    return orphan;
}

Object* CreateRefObject() {
    return new RefObject;
}

const RuntimeClassRegistration g_registration(RefObject::kRuntimeClass);

} // namespace

const RuntimeClass RefObject::kRuntimeClass = {"RefObject", sizeof(RefObject), 1 | kVersionableSchema,
                                               CreateRefObject, &Object::kRuntimeClass};
static_assert(sizeof(RefObject) == sizeof(void*) + 8);

// Inlined, the pair of allocations would look mismatched to GCC.
[[gnu::noinline]] void* RefObject::operator new(std::size_t bytes) {
    void* address = ::operator new(bytes);
    try {
        NoteAllocation(address, Storage::Heap);
    } catch (...) {
        ::operator delete(address);
        throw;
    }
    return address;
}

void* RefObject::operator new(std::size_t /*bytes*/, void* address) {
    NoteAllocation(address, Storage::Placed);
    return address;
}

void RefObject::operator delete(void* address) {
    // Nothing else may be freed: neither a given address nor what was never on the heap.
    if (ForgetAllocation(address, Storage::Heap))
        ::operator delete(address);
}

void RefObject::operator delete(void* address, void* /*place*/) {
    ForgetAllocation(address, Storage::Placed);
}

RefObject::RefObject() : m_count(0), m_flags(0) {
    // Only the newest address is compared, and only while its storage lives.
    if (t_recent.Pop(this) && IsAllocated(this)) {
        m_flags = kOnHeap;
        JoinOrphans();
    } else {
        AddRef();
    }
}

RefObject::RefObject(const RefObject& other) : Object(other), m_count(0), m_flags(0) {
    DebugPrint(L"RefObject copy constructor invoked\n");
}

RefObject::~RefObject() {
    if ((m_flags & kOnHeap) == 0)
        --m_count;
    if (m_count != 0)
        DebugPrint(L"RefObject: destroying object with %d references\n", m_count.load());
    // An orphan that does not end by its last reference: by `delete`, or by what a constructor throws.
    if ((m_flags & kOrphan) != 0)
        static_cast<void>(TakeOrphan(this).Detach());
    ForgetAllocation(this, Storage::Placed);
}

std::int32_t RefObject::AddRef() {
    ++m_count;
    if ((m_flags & kOrphan) != 0)
        LeaveOrphans();
    return m_count;
}

std::int32_t RefObject::Release() {
    const std::int32_t before = m_count--;
    if (before == 1) {
        delete this;
        return 0;
    }
    return before - 1;
}

void RefObject::JoinOrphans() {
    static const OrphansEnd atProgramEnd;
    Shared& shared = TheShared();
    const std::lock_guard lock(shared.lock);
    shared.orphans.emplace_front(this);
    m_flags |= kOrphan;
}

void RefObject::LeaveOrphans() {
    Shared& shared = TheShared();
    const std::lock_guard lock(shared.lock);
    // Two threads may come with the first reference; the list's is given back once.
    if ((m_flags.fetch_and(static_cast<std::uint8_t>(~kOrphan)) & kOrphan) == 0)
        return;
    const RefPtr<RefObject> held(this);
    if (!TakeOrphan(this))
        DebugPrint(L"Object missing from orphan list\n");
}

void RefObject::DeleteOrphans() {
    Shared& shared = TheShared();
    const std::lock_guard lock(shared.lock);
    for (const RefPtr<RefObject>& orphan : shared.orphans) {
        // Deliberate: the same words for every orphan, whatever its own class is.
        DebugPrint(L"Deleting orphan %s\n", L"RefObject *");
        orphan->m_flags &= static_cast<std::uint8_t>(~kOrphan);
    }
    // Their destructors may add new ones.
    const auto orphans = std::exchange(shared.orphans, {});
}

Archive& operator>>(Archive& archive, RefObject*& object) {
    object = static_cast<RefObject*>(archive.ReadObject(RefObject::kRuntimeClass));
    return archive;
}

} // namespace scenedetect
