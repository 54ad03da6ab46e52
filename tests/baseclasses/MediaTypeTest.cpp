#include "tests/Testing.h"
#include "tests/baseclasses/TestFilters.h"

TEST(MediaType, CopiesOwnTheirFormat) {
    CMediaType first = VideoType(MEDIASUBTYPE_YUY2, 100);
    CMediaType second;
    EXPECT_FALSE(second.IsValid());
    second = first;
    EXPECT_TRUE(second == first);
    second.Format()[48 + 4] = 101; // biWidth
    EXPECT_FALSE(second == first);
    EXPECT_EQ(second.Set(second), S_OK);
    EXPECT_EQ(second.FormatLength(), 88u);

    // What is not part of the comparison.
    second = first;
    second.SetSampleSize(4711);
    second.SetTemporalCompression(true);
    EXPECT_TRUE(second == first);
    EXPECT_EQ(second.GetSampleSize(), 4711u);
    second.SetSampleSize(0);
    EXPECT_EQ(second.GetSampleSize(), 0u);
    second.InitMediaType();
    EXPECT_EQ(second.Format(), nullptr);
    EXPECT_EQ(second.GetSampleSize(), 1u);
}

TEST(MediaType, FormatBlocksGrowAndShrink) {
    CMediaType mt;
    const BYTE bytes[] = {1, 2, 3, 4};
    ASSERT_TRUE(mt.SetFormat(bytes, sizeof bytes));
    ASSERT_TRUE(mt.ReallocFormatBuffer(6));
    EXPECT_EQ(mt.Format()[3], 4);
    ASSERT_TRUE(mt.ReallocFormatBuffer(2));
    EXPECT_EQ(mt.FormatLength(), 2u);
    EXPECT_EQ(mt.Format()[1], 2);
    EXPECT_TRUE(mt.SetFormat(nullptr, 0));
    EXPECT_EQ(mt.Format(), nullptr);
}

TEST(MediaType, ReferencesItsUnknown) {
    Chain chain;
    CMediaType mt;
    mt.pUnk = static_cast<IBaseFilter*>(chain.filter);
    mt.pUnk->AddRef();
    AM_MEDIA_TYPE* copy = CreateMediaType(&mt);
    EXPECT_EQ(chain.filter->AddRef(), 6u); // three of the chain, the two types, this one
    DeleteMediaType(copy);
    DeleteMediaType(nullptr);
    EXPECT_EQ(chain.filter->Release(), 4u);
}

TEST(MediaType, PartialTypesMatchWhatTheyLeaveOpen) {
    const CMediaType full = VideoType(MEDIASUBTYPE_YUY2);
    CMediaType otherFormat = VideoType(MEDIASUBTYPE_YUY2, 321);
    CMediaType majorOnly(&MEDIATYPE_Video);
    CMediaType subtypeToo = majorOnly;
    subtypeToo.SetSubtype(&MEDIASUBTYPE_YUY2);
    CMediaType wrongSubtype = majorOnly;
    wrongSubtype.SetSubtype(&MEDIASUBTYPE_UYVY);
    CMediaType noFormatBytes = subtypeToo;
    noFormatBytes.SetFormatType(&FORMAT_VideoInfo);
    const struct {
        const char* name;
        CMediaType partial;
        bool isPartial;
        bool matches;
    } cases[] = {
        {"all open", CMediaType(), true, true},
        {"major type", majorOnly, true, true},
        {"other major type", CMediaType(&MEDIATYPE_Audio), true, false},
        {"subtype", subtypeToo, true, true},
        {"other subtype", wrongSubtype, true, false},
        {"format type without its block", noFormatBytes, false, false},
        {"the same", full, false, true},
        {"other format bytes", otherFormat, false, false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.partial.IsPartiallySpecified(), c.isPartial) << c.name;
        EXPECT_EQ(full.MatchesPartial(&c.partial), c.matches) << c.name;
    }
}
