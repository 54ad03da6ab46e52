#include "support/Archive.h"

#include "platform/File.h"

#include <array>
#include <cstring>
#include <string_view>
#include <utility>

namespace scenedetect {
namespace {

constexpr std::uint16_t kNewClass = 0xFFFF;
constexpr std::uint16_t kClassBit = 0x8000;
constexpr std::uint16_t kBigNumber = 0x7FFF;
constexpr std::uint32_t kBigClassBit = 0x80000000;
constexpr std::uint32_t kMostEntries = 0x3FFFFFFE;
constexpr std::size_t kLongestName = 64;

[[noreturn]] void Fail(ArchiveException::Cause cause) {
    throw ArchiveException(cause);
}

} // namespace

std::size_t Archive::Read(void* data, std::size_t bytes) {
    if (!IsLoading())
        Fail(ArchiveException::writeOnly);
    return m_file.Read(data, bytes);
}

void Archive::Write(const void* data, std::size_t bytes) {
    if (IsLoading())
        Fail(ArchiveException::readOnly);
    if (!m_file.Write(data, bytes))
        Fail(ArchiveException::genericException);
}

template <typename Word>
Word Archive::ReadWord() {
    std::array<std::uint8_t, sizeof(Word)> bytes{};
    if (Read(bytes.data(), bytes.size()) != bytes.size())
        Fail(ArchiveException::endOfFile);
    Word word = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i)
        word = static_cast<Word>(word | Word{bytes[i]} << (8 * i));
    return word;
}

template <typename Word>
void Archive::WriteWord(Word word) {
    std::array<std::uint8_t, sizeof(Word)> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::uint8_t>(word >> (8 * i));
    Write(bytes.data(), bytes.size());
}

template <typename Value>
Value Archive::Lookup(std::uint32_t number) const {
    const auto* value = number < m_entries.size() ? std::get_if<Value>(&m_entries[number]) : nullptr;
    if (value == nullptr)
        Fail(ArchiveException::badIndex);
    return *value;
}

void Archive::Append(const Entry& entry) {
    if (m_entries.size() > kMostEntries)
        Fail(ArchiveException::badIndex);
    m_entries.push_back(entry);
}

Archive::LoadedClass Archive::ReadClass() {
    const auto version = ReadWord<std::uint16_t>();
    const auto length = ReadWord<std::uint16_t>();
    std::array<char, kLongestName> name{};
    if (length > name.size())
        Fail(ArchiveException::badClass);
    if (Read(name.data(), length) != length)
        Fail(ArchiveException::endOfFile);
    const RuntimeClass* found = RuntimeClass::Find({name.data(), length});
    if (found == nullptr || found->create == nullptr)
        Fail(ArchiveException::badClass);
    if (version != found->Version() && (found->schema & kVersionableSchema) == 0)
        Fail(ArchiveException::badSchema);
    const LoadedClass loaded{found, version};
    Append(loaded);
    return loaded;
}

Object* Archive::ReadObject(const RuntimeClass& required) {
    const auto tag = ReadWord<std::uint16_t>();
    LoadedClass loaded{};
    if (tag == kNewClass) {
        loaded = ReadClass();
    } else {
        const bool isBig = tag == kBigNumber;
        const std::uint32_t number = isBig ? ReadWord<std::uint32_t>() : tag;
        const std::uint32_t classBit = isBig ? kBigClassBit : std::uint32_t{kClassBit};
        if (number == 0)
            return nullptr;
        if ((number & classBit) == 0) {
            auto* object = Lookup<Object*>(number);
            if (!object->IsKindOf(required))
                Fail(ArchiveException::badClass);
            return object;
        }
        loaded = Lookup<LoadedClass>(number & ~classBit);
    }
    // Before it is created: nobody would own an object of another class.
    if (!loaded.runtimeClass->IsDerivedFrom(required))
        Fail(ArchiveException::badClass);
    Object* object = loaded.runtimeClass->create();
    Append(object);
    const std::uint16_t outerSchema = std::exchange(m_objectSchema, loaded.version);
    object->Serialize(*this);
    m_objectSchema = outerSchema;
    return object;
}

// Writes the number of a class or an object that came before; false when it is new.
bool Archive::WriteKnown(const void* entry, std::uint16_t classBit) {
    const auto found = m_numbers.find(entry);
    if (found == m_numbers.end())
        return false;
    const std::uint32_t number = found->second;
    if (number < kBigNumber) {
        WriteWord(static_cast<std::uint16_t>(number | classBit));
    } else {
        WriteWord(kBigNumber);
        WriteWord(number | (classBit != 0 ? kBigClassBit : 0u));
    }
    return true;
}

void Archive::NumberNext(const void* entry) {
    if (m_numbers.size() >= kMostEntries)
        Fail(ArchiveException::badIndex);
    m_numbers.emplace(entry, static_cast<std::uint32_t>(m_numbers.size() + 1));
}

void Archive::WriteClass(const RuntimeClass& runtimeClass) {
    if (WriteKnown(&runtimeClass, kClassBit))
        return;
    const std::string_view name = runtimeClass.name;
    WriteWord(kNewClass);
    WriteWord(runtimeClass.Version());
    WriteWord(static_cast<std::uint16_t>(name.size()));
    Write(name.data(), name.size());
    NumberNext(&runtimeClass);
}

void Archive::WriteObject(Object* object) {
    if (object == nullptr) {
        WriteWord(std::uint16_t{0});
        return;
    }
    if (WriteKnown(object, 0))
        return;
    const RuntimeClass& runtimeClass = object->GetRuntimeClass();
    if (runtimeClass.create == nullptr || std::strlen(runtimeClass.name) > kLongestName)
        Fail(ArchiveException::badClass);
    WriteClass(runtimeClass);
    NumberNext(object);
    object->Serialize(*this);
}

} // namespace scenedetect
