// Objects and plain bytes in a file, in the order in which they were written.
#pragma once

#include "support/Object.h"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <unordered_map>
#include <variant>
#include <vector>

namespace scenedetect {

class File;

/// What goes wrong with an archive. The numbers are those of the framework.
class ArchiveException final : public std::exception {
  public:
    enum Cause {
        genericException = 1, ///< the system refused to write, or an object is too big to be read again
        readOnly = 2,         ///< written to while loading
        endOfFile = 3,
        writeOnly = 4, ///< read from while storing
        badIndex = 5,  ///< not in the form in which it was written
        badClass = 6,  ///< a class that is not known, can't be created, or is not the wanted one
        badSchema = 7, ///< a class in a version that it doesn't read
    };

    explicit ArchiveException(Cause cause) noexcept : m_cause(cause) {}
    [[nodiscard]] Cause GetCause() const noexcept { return m_cause; }
    [[nodiscard]] const char* what() const noexcept override { return "an archive can't be read or written"; }

  private:
    Cause m_cause;
};

/// Loads from or stores to an open file, which must outlive it, from where that stands. One thread at a time.
///
/// Objects are stored as the framework does it, in 16-bit little-endian words: 0 for none; the number of an
/// object that came before; or a class and then what the object's `Serialize` writes. The class is 0xFFFF,
/// version, length of the name and the name (8-bit text) the first time, 0x8000 plus its number afterwards.
/// Classes and objects are numbered together, from 1, in order of appearance; numbers from 0x7FFF on follow
/// 0x7FFF as 32 bits, a class's with the highest bit set.
class Archive {
  public:
    enum class Mode { Load, Store };

    Archive(File& file, Mode mode) : m_file(file), m_mode(mode) {}

    [[nodiscard]] bool IsLoading() const { return m_mode == Mode::Load; }

    /// Reads up to `bytes`; fewer only where the file ends.
    [[nodiscard]] std::size_t Read(void* data, std::size_t bytes);
    void Write(const void* data, std::size_t bytes);

    /// The next object, of class `required` or derived from it; may be null. Belongs to the caller, but for
    /// one that was returned before, which is the same object again. One whose `Serialize` raises is its
    /// class's to find and destroy (as the list of orphans does for shared objects).
    [[nodiscard]] Object* ReadObject(const RuntimeClass& required);
    /// Null is an object, too.
    void WriteObject(Object* object);
    /// While an object of a versionable class is read: the version it was written in.
    [[nodiscard]] std::uint16_t GetObjectSchema() const { return m_objectSchema; }

  private:
    struct LoadedClass {
        const RuntimeClass* runtimeClass;
        std::uint16_t version;
    };
    using Entry = std::variant<std::monostate, LoadedClass, Object*>;

    template <typename Word>
    [[nodiscard]] Word ReadWord();
    template <typename Word>
    void WriteWord(Word word);
    [[nodiscard]] LoadedClass ReadClass();
    void WriteClass(const RuntimeClass& runtimeClass);
    template <typename Value>
    [[nodiscard]] Value Lookup(std::uint32_t number) const;
    void Append(const Entry& entry);
    [[nodiscard]] bool WriteKnown(const void* entry, std::uint16_t classBit);
    void NumberNext(const void* entry);

    File& m_file;
    const Mode m_mode;
    std::vector<Entry> m_entries{Entry{}};                      // loading; number 0 is none
    std::unordered_map<const void*, std::uint32_t> m_numbers{}; // storing; of classes and objects
    std::uint16_t m_objectSchema = 0;
};

} // namespace scenedetect
