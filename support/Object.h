// The root of classes that are known at run time by name, and the records that describe them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace scenedetect {

class Archive;
class Object;

/// Set in a class's schema: its objects read older versions of themselves.
inline constexpr std::uint32_t kVersionableSchema = 0x80000000;

/// What is known of a class at run time. Records live as long as the program.
struct RuntimeClass {
    const char* name;
    std::size_t objectSize;
    std::uint32_t schema; ///< version of its form in archives; with `kVersionableSchema` or without
    Object* (*create)();  ///< a new object on the heap; null for classes that archives can't create
    const RuntimeClass* base;

    [[nodiscard]] std::uint16_t Version() const { return static_cast<std::uint16_t>(schema); }
    [[nodiscard]] bool IsDerivedFrom(const RuntimeClass& other) const;

    /// The registered class of this name; null when there is none. Any thread.
    [[nodiscard]] static const RuntimeClass* Find(std::string_view name);
};

/// Makes a class known by its name. For objects of static storage; two of one name: the later one is found.
class RuntimeClassRegistration {
  public:
    explicit RuntimeClassRegistration(const RuntimeClass& runtimeClass);

  private:
    friend struct RuntimeClass;
    const RuntimeClass& m_class;
    const RuntimeClassRegistration* const m_next;
};

/// The root class.
class Object {
  public:
    static const RuntimeClass kRuntimeClass;

    [[nodiscard]] virtual const RuntimeClass& GetRuntimeClass() const { return kRuntimeClass; }
    virtual ~Object() = default;
    /// Reads the object from an archive that is loading, or writes it; the root class has nothing to keep.
    virtual void Serialize(Archive& /*archive*/) {}
    /// Asserts what always holds for an object; nothing here.
    virtual void AssertValid() const {}
    /// Appends a description for developers.
    virtual void Dump(std::wstring& text) const;

    [[nodiscard]] bool IsKindOf(const RuntimeClass& other) const {
        return GetRuntimeClass().IsDerivedFrom(other);
    }

  protected:
    Object() = default;
    Object(const Object&) = default;
    Object& operator=(const Object&) = default;
};

} // namespace scenedetect
