#include "reading/ffmpeg/DecodingThread.h"

#include "tests/Testing.h"

namespace {

TEST(DecodingThread, GivesWhatDecodingGaveOrThrewPacketByPacket) {
    DecodingThread thread([](const AVPacket* packet) {
        if (!packet)
            throw std::bad_alloc();
        Pictures pictures;
        pictures.emplace_back();
        return pictures;
    });
    thread.Send(OwnFfmpeg(av_packet_alloc()));
    thread.Send(nullptr);
    thread.Send(OwnFfmpeg(av_packet_alloc()));
    EXPECT_EQ(thread.Receive().size(), 1u);
    EXPECT_THROW((void)thread.Receive(), std::bad_alloc);
    EXPECT_EQ(thread.Receive().size(), 1u);
    EXPECT_EQ(thread.OnTheirWay(), 0u);
}

} // namespace
