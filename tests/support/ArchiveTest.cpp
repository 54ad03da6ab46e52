#include "support/Archive.h"
#include "platform/File.h"
#include "tests/TempFolder.h"
#include "tests/Testing.h"

namespace {

using namespace std::string_literals;

// A class with one byte of content that notes its unfinished objects, as every class has to, and one derived
// from it that refuses other versions than its own.
class Note : public Object {
  public:
    static const RuntimeClass kRuntimeClass;
    [[nodiscard]] const RuntimeClass& GetRuntimeClass() const override { return kRuntimeClass; }
    void Serialize(Archive& archive) override {
        version = archive.GetObjectSchema();
        if (!archive.IsLoading()) {
            archive.Write(&content, 1);
        } else if (archive.Read(&content, 1) != 1) {
            unfinished.reset(this);
            throw ArchiveException(ArchiveException::endOfFile);
        }
    }

    char content = 0;
    std::uint16_t version = 0;
    static inline std::unique_ptr<Note> unfinished;
};
class Strict final : public Note {
  public:
    static const RuntimeClass kRuntimeClass;
    [[nodiscard]] const RuntimeClass& GetRuntimeClass() const override { return kRuntimeClass; }
};
const RuntimeClass Note::kRuntimeClass = {"Note", sizeof(Note), 2 | kVersionableSchema,
                                          []() -> Object* { return new Note; }, &Object::kRuntimeClass};
const RuntimeClass Strict::kRuntimeClass = {"Strict", sizeof(Strict), 7,
                                            []() -> Object* { return new Strict; }, &Note::kRuntimeClass};
const RuntimeClassRegistration g_note(Note::kRuntimeClass);
const RuntimeClassRegistration g_strict(Strict::kRuntimeClass);

class ArchiveFile : public Test {
  protected:
    template <typename Body>
    void Store(Body body) {
        File file;
        ASSERT_TRUE(file.Open(Wide(m_path), File::Mode::Write));
        Archive archive(file, Archive::Mode::Store);
        body(archive);
    }
    template <typename Body>
    void Load(const std::string& bytes, Body body) {
        std::ofstream(m_path, std::ios::binary) << bytes;
        File file;
        ASSERT_TRUE(file.Open(Wide(m_path), File::Mode::Read));
        Archive archive(file, Archive::Mode::Load);
        body(archive);
    }
    [[nodiscard]] std::string Stored() const { return ReadWhole(m_path); }
    std::unique_ptr<Note> Own(Object* object) { return std::unique_ptr<Note>(dynamic_cast<Note*>(object)); }

  private:
    TempFolder m_folder;
    const std::filesystem::path m_path = m_folder / "archive";
};

const std::string kNoteA = "\xFF\xFF\x02\x00\x04\x00Note"s + "a"; // class 1, object 2

TEST_F(ArchiveFile, ObjectsComeBackAsTheyWere) {
    Note a;
    Note b;
    Strict c;
    a.content = 'a';
    b.content = 'b';
    c.content = 'c';
    Store([&](Archive& archive) {
        for (Object* object : {static_cast<Object*>(&a), static_cast<Object*>(nullptr),
                               static_cast<Object*>(&b), static_cast<Object*>(&a), static_cast<Object*>(&c)})
            archive.WriteObject(object);
    });
    const std::string bytes =
        kNoteA + "\x00\x00"s + "\x01\x80"s + "b" + "\x02\x00"s + "\xFF\xFF\x07\x00\x06\x00Strict"s + "c";
    EXPECT_EQ(Stored(), bytes);
    Load(bytes, [this](Archive& archive) {
        const auto first = Own(archive.ReadObject(Note::kRuntimeClass));
        EXPECT_EQ(first->content, 'a');
        EXPECT_EQ(archive.ReadObject(Note::kRuntimeClass), nullptr);
        EXPECT_EQ(Own(archive.ReadObject(Note::kRuntimeClass))->content, 'b');
        EXPECT_EQ(archive.ReadObject(Object::kRuntimeClass), first.get());
        const auto last = Own(archive.ReadObject(Note::kRuntimeClass));
        EXPECT_EQ(last->content, 'c');
        EXPECT_TRUE(last->IsKindOf(Strict::kRuntimeClass));
        EXPECT_FALSE(first->IsKindOf(Strict::kRuntimeClass));
    });
    // A versionable class reads what another version of it wrote.
    Load("\xFF\xFF\x09\x00\x04\x00Notex"s,
         [this](Archive& archive) { EXPECT_EQ(Own(archive.ReadObject(Note::kRuntimeClass))->version, 9); });
}

TEST_F(ArchiveFile, NumbersGrowBeyondFifteenBits) {
    constexpr std::size_t kCount = 0x8001;
    const std::vector<Note> notes(kCount);
    Store([&](Archive& archive) {
        for (const Note& note : notes)
            archive.WriteObject(const_cast<Note*>(&note));
        archive.WriteObject(const_cast<Note*>(&notes[0x7FFC])); // number 0x7FFE, the last short one
        archive.WriteObject(const_cast<Note*>(&notes[0x7FFD]));
    });
    const std::string bytes = Stored();
    EXPECT_EQ(bytes.substr(bytes.size() - 8), "\xFE\x7F\xFF\x7F\xFF\x7F\x00\x00"s);
    Load(bytes, [&](Archive& archive) {
        std::vector<std::unique_ptr<Note>> read;
        for (std::size_t i = 0; i < kCount; ++i)
            read.push_back(Own(archive.ReadObject(Note::kRuntimeClass)));
        EXPECT_EQ(archive.ReadObject(Note::kRuntimeClass), read[0x7FFC].get());
        EXPECT_EQ(archive.ReadObject(Note::kRuntimeClass), read[0x7FFD].get());
    });
}

TEST_F(ArchiveFile, TellsWhatIsWrong) {
    using Cause = ArchiveException::Cause;
    struct Case {
        const char* name;
        std::string bytes; // after the object "a"
        const RuntimeClass& required;
        Cause cause;
    };
    const Case cases[] = {
        {"nothing there", "", Note::kRuntimeClass, Cause::endOfFile},
        {"half a number", "\x02", Note::kRuntimeClass, Cause::endOfFile},
        {"name cut", "\xFF\xFF\x02\x00\x04\x00Not"s, Note::kRuntimeClass, Cause::endOfFile},
        {"content missing", "\x01\x80"s, Note::kRuntimeClass, Cause::endOfFile},
        {"long name", "\xFF\xFF\x02\x00\xFF\xFF"s, Note::kRuntimeClass, Cause::badClass},
        {"unknown class", "\xFF\xFF\x02\x00\x04\x00Nope!"s, Note::kRuntimeClass, Cause::badClass},
        {"other version", "\xFF\xFF\x08\x00\x06\x00Strict!"s, Note::kRuntimeClass, Cause::badSchema},
        {"class not wanted", "\x01\x80!"s, Strict::kRuntimeClass, Cause::badClass},
        {"object not wanted", "\x02\x00"s, Strict::kRuntimeClass, Cause::badClass},
        {"object beyond", "\x03\x00"s, Note::kRuntimeClass, Cause::badIndex},
        {"class beyond", "\x03\x80!"s, Note::kRuntimeClass, Cause::badIndex},
        {"object for a class", "\x02\x80!"s, Note::kRuntimeClass, Cause::badIndex},
        {"class for an object", "\x01\x00"s, Note::kRuntimeClass, Cause::badIndex},
        {"big number beyond", "\xFF\x7F\xFF\xFF\xFF\x7F"s, Note::kRuntimeClass, Cause::badIndex},
    };
    for (const Case& test : cases)
        Load(kNoteA + test.bytes, [&](Archive& archive) {
            SCOPED_TRACE(test.name);
            const auto first = Own(archive.ReadObject(Note::kRuntimeClass));
            try {
                static_cast<void>(archive.ReadObject(test.required));
                ADD_FAILURE() << "no exception";
            } catch (const ArchiveException& error) {
                EXPECT_EQ(error.GetCause(), test.cause);
            }
        });
}

TEST_F(ArchiveFile, GoesOneWayOnly) {
    const auto causeOf = [](auto body) {
        try {
            body();
        } catch (const ArchiveException& error) {
            return int{error.GetCause()};
        }
        return 0;
    };
    char byte = 0;
    Store([&](Archive& archive) {
        EXPECT_EQ(causeOf([&] { static_cast<void>(archive.Read(&byte, 1)); }), 4);
        struct Nameless final : Object {
        } object; // no archive could make one
        EXPECT_EQ(causeOf([&] { archive.WriteObject(&object); }), 6);
    });
    Load("x", [&](Archive& archive) { EXPECT_EQ(causeOf([&] { archive.Write(&byte, 1); }), 2); });
}

} // namespace
