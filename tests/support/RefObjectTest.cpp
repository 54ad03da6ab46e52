#include "support/RefObject.h"
#include "platform/File.h"
#include "support/Archive.h"
#include "tests/TempFolder.h"
#include "tests/Testing.h"
#include "tests/engine/LogRecorder.h"

namespace {

// Tells when it goes.
class Watched final : public RefObject {
  public:
    explicit Watched(int& living) : m_living(living) { ++m_living; }
    Watched(const Watched& other) : RefObject(other), m_living(other.m_living) { ++m_living; }
    ~Watched() override { --m_living; }
    [[nodiscard]] RefObject* Clone() const override { return new Watched(*this); }

  private:
    int& m_living;
};

constexpr const wchar_t* kCopied = L"700/1 RefObject copy constructor invoked\n";
constexpr const wchar_t* kOrphanDeleted = L"700/1 Deleting orphan RefObject *\n";

TEST(RefObjects, LiveUntilTheLastReferenceGoes) {
    const LogRecorder log;
    int living = 0;
    auto* object = new Watched(living);
    RefPtr<Watched> first(object);
    EXPECT_EQ(object->AddRef(), 2) << "the list of orphans has none any more";
    EXPECT_EQ(object->Release(), 1);
    RefPtr<Watched> second = first;
    first = nullptr;
    EXPECT_EQ(living, 1);
    RefObject::DeleteOrphans();
    second = std::move(first);
    EXPECT_EQ(living, 0);
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST(RefObjects, OrphansWaitInTheList) {
    const LogRecorder log;
    int living = 0;
    new Watched(living);
    auto* taken = new Watched(living);
    new Watched(living);
    taken->AddRef();
    EXPECT_EQ(living, 3);
    RefObject::DeleteOrphans();
    EXPECT_EQ(living, 1);
    EXPECT_THAT(log.lines, ElementsAre(kOrphanDeleted, kOrphanDeleted));
    EXPECT_EQ(taken->Release(), 0);
    EXPECT_EQ(living, 0);
}

TEST(RefObjects, OrphansThatEndByOtherMeansLeaveTheList) {
    struct Failing final : RefObject {
        Failing() { throw 1; }
    };
    const LogRecorder log;
    int living = 0;
    alignas(Watched) std::byte room[sizeof(Watched)];
    new Watched(living);
    delete new Watched(living);
    (new (room) Watched(living))->~Watched();
    EXPECT_THROW(new Failing, int);
    EXPECT_EQ(living, 1);
    constexpr const wchar_t* kReferenced = L"700/1 RefObject: destroying object with 1 references\n";
    EXPECT_THAT(log.lines, ElementsAre(kReferenced, kReferenced, kReferenced));
    RefObject::DeleteOrphans();
    EXPECT_EQ(living, 0);
    EXPECT_EQ(log.lines.size(), 4u) << "the first one alone was left";
}

TEST(RefObjects, OthersHoldAReferenceForTheirStorage) {
    const LogRecorder log;
    int living = 0;
    struct Holder {
        int before = 0;
        RefObject member;
    };
    const auto holder = std::make_unique<Holder>();
    EXPECT_EQ(holder->member.AddRef(), 2);
    EXPECT_EQ(holder->member.Release(), 1);
    {
        Watched local(living);
        const RefPtr<Watched> shared(&local);
        EXPECT_EQ(local.AddRef(), 3);
        EXPECT_EQ(local.Release(), 2);
    }
    RefObject::DeleteOrphans();
    EXPECT_THAT(log.lines, IsEmpty());

    std::optional<RefObject> local(std::in_place);
    local->AddRef(); // outlives it
    local.reset();
    EXPECT_THAT(log.lines, ElementsAre(L"700/1 RefObject: destroying object with 1 references\n"));
}

TEST(RefObjects, PlacedOnesLeaveTheirStorageAlone) {
    const LogRecorder log;
    int living = 0;
    alignas(Watched) std::byte room[sizeof(Watched)];
    for (int i = 0; i < 2; ++i) {
        auto* placed = new (room) Watched(living);
        EXPECT_EQ(placed->AddRef(), 1) << "it came out of the list of orphans";
        EXPECT_EQ(placed->Release(), 0);
        EXPECT_EQ(living, 0);
    }
    // A copy leaves its address noted: what follows in the same place must not be taken for it.
    {
        const Watched original(living);
        auto* copy = new (room) Watched(original);
        copy->~Watched();
        const std::unique_ptr<Watched, void (*)(Watched*)> later(
            std::construct_at(reinterpret_cast<Watched*>(room), living),
            [](Watched* object) { object->~Watched(); });
        EXPECT_EQ(later->AddRef(), 2);
        later->Release();
    }
    EXPECT_EQ(living, 0);
    EXPECT_THAT(log.lines, ElementsAre(kCopied, L"700/1 RefObject: destroying object with -1 references\n"));
}

// Storage is taken before the object's arguments are made, and so before the objects among these.
TEST(RefObjects, TenInTheMakingAreKnownToBeNew) {
    const LogRecorder log;
    int living = 0;
    std::vector<Watched*> made;
    const std::function<int&(int)> nest = [&](int more) -> int& {
        if (more > 0)
            made.push_back(new Watched(nest(more - 1)));
        return living;
    };
    nest(12);
    RefObject::DeleteOrphans();
    EXPECT_EQ(living, 2) << "the outermost two";
    delete made[10];
    delete made[11];
    EXPECT_EQ(living, 0);
}

TEST(RefObjects, CopiesCountForThemselves) {
    int living = 0;
    const RefPtr<Watched> original(new Watched(living));
    {
        const LogRecorder log;
        const RefPtr<RefObject> copy(original->Clone());
        EXPECT_EQ(copy->AddRef(), 2) << "one by the pointer, none by the list of orphans";
        EXPECT_EQ(copy->Release(), 1);
        EXPECT_THAT(log.lines, ElementsAre(kCopied));
    }
    // Many of them: far more addresses than there is room to note.
    std::vector<RefPtr<RefObject>> copies;
    for (int i = 0; i < 5000; ++i)
        copies.emplace_back(original->Clone());
    EXPECT_EQ(living, 5001);
    const LogRecorder log;
    const RefPtr<Watched> usual(new Watched(living));
    EXPECT_EQ(usual->AddRef(), 2);
    EXPECT_EQ(usual->Release(), 1);
    EXPECT_THAT(log.lines, IsEmpty());
    copies.clear();
    EXPECT_EQ(living, 2);
}

TEST(RefObjects, MemoryOfADestroyedCopyIsNotTakenForAnObject) {
    // The member lies where the copy was, whose address is still the newest noted one of this thread.
    struct alignas(RefObject) Holder {
        RefObject member;
    };
    const LogRecorder log;
    {
        const RefObject original;
        RefPtr<RefObject> copy(original.Clone());
        std::thread([&copy] { copy = nullptr; }).join();
    }
    std::vector<std::unique_ptr<Holder>> holders;
    for (int i = 0; i < 64; ++i)
        holders.push_back(std::make_unique<Holder>());
    holders.clear();
    RefObject::DeleteOrphans();
    EXPECT_EQ(log.lines.size(), 2u) << "of the copy alone";
}

TEST(RefObjects, CountsHoldAcrossThreads) {
    int living = 0;
    {
        const RefPtr<Watched> shared(new Watched(living));
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t)
            threads.emplace_back([&shared] {
                int mine = 0;
                for (int i = 0; i < 2000; ++i) {
                    const RefPtr<Watched> held = shared;
                    RefPtr<Watched> own(new Watched(mine));
                    RefPtr<Watched> other = std::move(own);
                }
                EXPECT_EQ(mine, 0);
            });
        for (std::thread& thread : threads)
            thread.join();
        EXPECT_EQ(shared->AddRef(), 2);
        shared->Release();
    }
    EXPECT_EQ(living, 0);
}

// Made before the first orphan, it sees what the program's end leaves.
struct EndReport {
    ~EndReport() {
        std::fprintf(stderr, "%d living, %d messages", living, static_cast<int>(log.lines.size()));
    }

    int living = 0;
    const LogRecorder log;
};

TEST(RefObjects, OrphansGoSilentlyAtTheEnd) {
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // in a process of its own
    EXPECT_EXIT(
        {
            static EndReport report;
            new Watched(report.living);
            std::exit(report.living == 1 ? 0 : 1);
        },
        ExitedWithCode(0), "0 living, 0 messages");
}

TEST(RefObjects, AreKnownByName) {
    const TempFolder folder;
    const auto path = folder / "archive";
    EXPECT_EQ(RuntimeClass::Find("RefObject"), &RefObject::kRuntimeClass);
    std::ofstream(path, std::ios::binary) << std::string("\xFF\xFF\1\0\x09\0RefObject", 15); // version 1
    File file;
    ASSERT_TRUE(file.Open(Wide(path), File::Mode::Read));
    Archive archive(file, Archive::Mode::Load);
    RefObject* read = nullptr;
    archive >> read;
    ASSERT_NE(read, nullptr);
    const RefPtr<RefObject> owned(read);
    EXPECT_EQ(owned->AddRef(), 2);
    EXPECT_EQ(owned->Release(), 1);
    EXPECT_THROW(archive >> read, ArchiveException);
}

} // namespace
