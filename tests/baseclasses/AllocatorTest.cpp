#include "tests/Testing.h"
#include "tests/baseclasses/TestFilters.h"

namespace {

ComRef<IMemAllocator> MemoryAllocator() {
    IMemAllocator* allocator = nullptr;
    EXPECT_EQ(CreateMemoryAllocator(&allocator), S_OK);
    return ComRef<IMemAllocator>(allocator);
}

HRESULT SetProperties(IMemAllocator* allocator, ALLOCATOR_PROPERTIES request) {
    ALLOCATOR_PROPERTIES actual;
    return allocator->SetProperties(&request, &actual);
}

ComRef<IMediaSample> Buffer(IMemAllocator* allocator) {
    IMediaSample* sample = nullptr;
    EXPECT_EQ(allocator->GetBuffer(&sample, nullptr, nullptr, AM_GBF_NOWAIT), S_OK);
    return ComRef<IMediaSample>(sample);
}

} // namespace

TEST(MemAllocator, PropertiesAreCheckedAndRounded) {
    const struct {
        const char* name;
        ALLOCATOR_PROPERTIES request;
        HRESULT result;
        LONG size;
    } cases[] = {
        {"plain", {2, 100, 1, 0}, S_OK, 100},
        {"rounded up to the alignment", {2, 100, 16, 0}, S_OK, 112},
        {"prefix counts in the step", {2, 100, 16, 8}, S_OK, 104},
        {"no alignment", {2, 100, 0, 0}, VFW_E_BADALIGN, 0},
        {"no power of two", {2, 100, 24, 0}, VFW_E_BADALIGN, 0},
        {"negative size", {2, -1, 1, 0}, E_INVALIDARG, 0},
        {"rounding overflows", {2, 0x7FFFFFFF, 16, 0}, E_INVALIDARG, 0},
    };
    for (auto c : cases) {
        const auto allocator = MemoryAllocator();
        ALLOCATOR_PROPERTIES actual = {};
        EXPECT_EQ(allocator->SetProperties(&c.request, &actual), c.result) << c.name;
        EXPECT_EQ(actual.cbBuffer, c.size) << c.name;
    }
    EXPECT_EQ(MemoryAllocator()->Commit(), VFW_E_SIZENOTSET);
}

TEST(MemAllocator, BuffersAreAlignedApartAndWritable) {
    const auto allocator = MemoryAllocator();
    ASSERT_EQ(SetProperties(allocator.get(), {3, 100, 64, 32}), S_OK);
    ASSERT_EQ(allocator->Commit(), S_OK);
    const ComRef<IMediaSample> samples[] = {Buffer(allocator.get()), Buffer(allocator.get()),
                                            Buffer(allocator.get())};
    for (const auto& sample : samples) {
        BYTE* data = nullptr;
        ASSERT_EQ(sample->GetPointer(&data), S_OK);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(data) % 64,
                  32u);                    // the prefix before it is what is aligned
        EXPECT_EQ(sample->GetSize(), 160); // 100 + 32 bytes fill three steps of 64, less the prefix
        std::fill(data - 32, data + sample->GetSize(), static_cast<BYTE>(1));
    }
}

TEST(MemAllocator, LifeOfItsBuffers) {
    auto allocator = MemoryAllocator();
    IMediaSample* none = nullptr;
    EXPECT_EQ(allocator->GetBuffer(&none, nullptr, nullptr, 0), VFW_E_NOT_COMMITTED);
    ASSERT_EQ(SetProperties(allocator.get(), {1, 8, 1, 0}), S_OK);
    ASSERT_EQ(allocator->Commit(), S_OK);
    EXPECT_EQ(allocator->Commit(), S_OK);
    EXPECT_EQ(SetProperties(allocator.get(), {1, 9, 1, 0}), VFW_E_ALREADY_COMMITTED);
    auto sample = Buffer(allocator.get());
    EXPECT_EQ(allocator->GetBuffer(&none, nullptr, nullptr, AM_GBF_NOWAIT), VFW_E_TIMEOUT);

    // A buffer that is out stays valid, and the allocator can be committed again meanwhile.
    EXPECT_EQ(allocator->Decommit(), S_OK);
    EXPECT_EQ(SetProperties(allocator.get(), {1, 9, 1, 0}), VFW_E_BUFFERS_OUTSTANDING);
    EXPECT_EQ(allocator->Commit(), S_OK);
    EXPECT_EQ(allocator->GetBuffer(&none, nullptr, nullptr, AM_GBF_NOWAIT), VFW_E_TIMEOUT);
    sample.reset();
    sample = Buffer(allocator.get());
    EXPECT_EQ(allocator->Decommit(), S_OK);
    sample.reset();
    EXPECT_EQ(SetProperties(allocator.get(), {2, 9, 1, 0}), S_OK);
    ASSERT_EQ(allocator->Commit(), S_OK);
    sample = Buffer(allocator.get());
    EXPECT_EQ(sample->GetSize(), 9);

    // The last reference to the allocator may be that of its sample.
    const LONG before = CBaseObject::ObjectsActive();
    allocator.reset();
    EXPECT_EQ(CBaseObject::ObjectsActive(), before);
    sample.reset();
    EXPECT_EQ(CBaseObject::ObjectsActive(), before - 1);
}

TEST(MediaSample, Times) {
    const auto allocator = MemoryAllocator();
    ASSERT_EQ(SetProperties(allocator.get(), {1, 8, 1, 0}), S_OK);
    ASSERT_EQ(allocator->Commit(), S_OK);
    auto sample = Buffer(allocator.get());
    REFERENCE_TIME start = 70;
    REFERENCE_TIME stop = 90;
    REFERENCE_TIME gotStart = 0;
    REFERENCE_TIME gotStop = 0;
    EXPECT_EQ(sample->GetTime(&gotStart, &gotStop), VFW_E_SAMPLE_TIME_NOT_SET);
    EXPECT_EQ(sample->SetTime(&start, &stop), S_OK);
    EXPECT_EQ(sample->GetTime(&gotStart, &gotStop), S_OK);
    EXPECT_EQ(gotStop, 90);
    EXPECT_EQ(sample->SetTime(&start, nullptr), S_OK);
    EXPECT_EQ(sample->GetTime(&gotStart, &gotStop), VFW_S_NO_STOP_TIME);
    EXPECT_EQ(gotStart, 70);
    EXPECT_EQ(gotStop, 71);
    EXPECT_EQ(sample->SetTime(nullptr, &stop), E_INVALIDARG);
    EXPECT_EQ(sample->GetMediaTime(&gotStart, &gotStop), VFW_E_MEDIA_TIME_NOT_SET);
    EXPECT_EQ(sample->SetMediaTime(&start, &stop), S_OK);
    EXPECT_EQ(sample->GetMediaTime(&gotStart, &gotStop), S_OK);
    EXPECT_EQ(gotStop, 90);

    // Nothing of this is left for the next user.
    CMediaType mt = VideoType(MEDIASUBTYPE_YUY2);
    sample->SetMediaType(&mt);
    sample->SetSyncPoint(TRUE);
    sample->SetActualDataLength(3);
    sample.reset();
    sample = Buffer(allocator.get());
    AM_MEDIA_TYPE* attached = &mt;
    EXPECT_EQ(sample->GetMediaType(&attached), S_FALSE);
    EXPECT_EQ(attached, nullptr);
    EXPECT_EQ(sample->IsSyncPoint(), S_FALSE);
    EXPECT_EQ(sample->GetActualDataLength(), 8);
    EXPECT_EQ(sample->GetTime(&gotStart, &gotStop), VFW_E_SAMPLE_TIME_NOT_SET);
    EXPECT_EQ(sample->GetMediaTime(&gotStart, &gotStop), VFW_E_MEDIA_TIME_NOT_SET);
    EXPECT_EQ(sample->SetActualDataLength(9), VFW_E_BUFFER_OVERFLOW);
    EXPECT_EQ(sample->SetActualDataLength(-1), VFW_E_BUFFER_OVERFLOW);
}

TEST(MediaSample, PropertiesInOnePiece) {
    const auto allocator = MemoryAllocator();
    ASSERT_EQ(SetProperties(allocator.get(), {1, 8, 1, 0}), S_OK);
    ASSERT_EQ(allocator->Commit(), S_OK);
    const auto plain = Buffer(allocator.get());
    const auto sample = QueryFor<IMediaSample2>(plain.get(), IID_IMediaSample2);
    CMediaType mt = VideoType(MEDIASUBTYPE_YUY2);
    AM_SAMPLE2_PROPERTIES set = {};
    const auto* bytes = reinterpret_cast<const BYTE*>(&set);
    set.dwSampleFlags = AM_SAMPLE_TIMEVALID | AM_SAMPLE_PREROLL | AM_SAMPLE_TYPECHANGED;
    set.dwTypeSpecificFlags = 5;
    set.lActual = 7;
    set.tStart = 40;
    set.dwStreamId = AM_STREAM_CONTROL;
    set.pMediaType = &mt;
    ASSERT_EQ(sample->SetProperties(sizeof set, bytes), S_OK);
    AM_SAMPLE2_PROPERTIES got = {};
    ASSERT_EQ(sample->GetProperties(sizeof got, reinterpret_cast<BYTE*>(&got)), S_OK);
    EXPECT_EQ(got.cbData, sizeof got);
    EXPECT_EQ(got.dwSampleFlags, set.dwSampleFlags);
    EXPECT_EQ(got.lActual, 7);
    EXPECT_EQ(got.tStart, 40);
    EXPECT_EQ(got.dwStreamId, static_cast<DWORD>(AM_STREAM_CONTROL));
    EXPECT_TRUE(CMediaType(*got.pMediaType) == mt);
    EXPECT_EQ(got.cbBuffer, 8);
    EXPECT_EQ(plain->IsPreroll(), S_OK);

    // A field that is cut does not count, and the type stays when only flags are given.
    set.dwSampleFlags = 0;
    set.lActual = 2;
    ASSERT_EQ(sample->SetProperties(offsetof(AM_SAMPLE2_PROPERTIES, lActual) + 2, bytes), S_OK);
    EXPECT_EQ(plain->GetActualDataLength(), 7);
    EXPECT_EQ(plain->IsPreroll(), S_FALSE);
    AM_MEDIA_TYPE* attached = nullptr;
    EXPECT_EQ(plain->GetMediaType(&attached), S_OK);
    DeleteMediaType(attached);

    set.lActual = 9;
    EXPECT_EQ(sample->SetProperties(sizeof set, bytes), VFW_E_BUFFER_OVERFLOW);
    set.lActual = 0;
    set.cbBuffer = 8;
    EXPECT_EQ(sample->SetProperties(sizeof set, bytes), E_INVALIDARG);
    EXPECT_EQ(sample->SetProperties(4, nullptr), E_POINTER);
}
