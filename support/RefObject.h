// Objects that are shared by counting references, and the list of those that nobody has taken yet.
#pragma once

#include "support/Object.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace scenedetect {

/// A base class for shared objects. On the heap they are made by `new` and live until the last reference is
/// released; until the first one is taken the list of orphans holds them. Objects on the stack, statics and
/// members hold one reference for their own storage and are destroyed by that.
///
/// References may be taken and released on any thread. `new` of this class notes the address for the
/// constructor that follows it on the same thread: allocations and constructions are to alternate there.
class RefObject : public Object {
  public:
    static const RuntimeClass kRuntimeClass;
    [[nodiscard]] const RuntimeClass& GetRuntimeClass() const override { return kRuntimeClass; }

    RefObject();
    /// A copy starts without references and is not among the orphans. Deliberate: it is not known as a heap
    /// object either, and its address stays noted, so that its destruction logs -1 references.
    RefObject(const RefObject& other);
    RefObject& operator=(const RefObject&) = delete;
    ~RefObject() override;

    /// A copy on the heap, without an owner: not even the list of orphans holds it.
    [[nodiscard]] virtual RefObject* Clone() const { return new RefObject(*this); }

    /// Takes a reference; the first one takes an orphan out of the list. The new count.
    std::int32_t AddRef();
    /// Gives one back; the last one destroys the object. The new count.
    std::int32_t Release();

    /// Destroys the orphans that nobody else holds. Any thread. At the program's end the same happens
    /// silently.
    static void DeleteOrphans();

    static void* operator new(std::size_t bytes);
    /// An object at a given address is destroyed as a heap object is; its storage stays its owner's.
    static void* operator new(std::size_t bytes, void* address);
    static void operator delete(void* address);
    static void operator delete(void* address, void* place);

  private:
    void JoinOrphans();
    void LeaveOrphans();

    std::atomic<std::int32_t> m_count;
    std::atomic<std::uint8_t> m_flags;
};

/// Holds a reference to an object of class `T`, a `RefObject`, or none.
template <class T>
class RefPtr {
  public:
    RefPtr() = default;
    RefPtr(T* object) : m_object(object) { // NOLINT: as pointers do
        if (m_object)
            m_object->AddRef();
    }
    RefPtr(const RefPtr& other) : RefPtr(other.m_object) {}
    RefPtr(RefPtr&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    RefPtr& operator=(RefPtr other) noexcept {
        std::swap(m_object, other.m_object);
        return *this;
    }
    ~RefPtr() {
        if (m_object)
            m_object->Release();
    }

    [[nodiscard]] T* get() const { return m_object; }
    /// Holds none from now on and leaves the reference to the caller.
    [[nodiscard]] T* Detach() { return std::exchange(m_object, nullptr); }
    T* operator->() const { return m_object; }
    T& operator*() const { return *m_object; }
    explicit operator bool() const { return m_object != nullptr; }
    friend bool operator==(const RefPtr&, const RefPtr&) = default;

  private:
    T* m_object = nullptr;
};

/// Reads a pointer to a `RefObject`. ArchiveException when the next object is of another class.
Archive& operator>>(Archive& archive, RefObject*& object);

} // namespace scenedetect
