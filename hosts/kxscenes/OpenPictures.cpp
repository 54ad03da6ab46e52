#include "hosts/kxscenes/OpenPictures.h"

#include "hosts/kxscenes/DecodedReader.h"
#include "hosts/kxscenes/FfmpegPointers.h"
#include "hosts/kxscenes/MediaInput.h"
#include "hosts/kxscenes/PacketFormat.h"
#include "hosts/kxscenes/PacketReader.h"
#include "hosts/shared/DamageLog.h"
#include "hosts/shared/HostError.h"
#include "hosts/shared/PictureReader.h"
#include "hosts/shared/RawDvReader.h"

#include <utility>

namespace scenedetect {

std::unique_ptr<PictureReader> OpenPictures(const std::string& path, const std::atomic<bool>& stop,
                                            Console& console) {
    const DamageLog damage(console, path);
    auto input = std::make_unique<MediaInput>(path, stop);
    if (input->IsRawDv())
        return std::make_unique<RawDvReader>(std::move(input), damage);

    input->FindVideo();
    const auto first = OwnFfmpeg(av_packet_alloc());
    if (!input->ReadPacket(*first))
        throw HostError(path + ": no picture can be read");

    const AVCodecParameters& stream = *input->Video().codecpar;
    FrameClock::Setup setup = input->ClockSetup();
    if (input->IsAvi())
        setup.origin = 0; // an index counts the frames that were dropped at the beginning, too
    if (stream.codec_id == AV_CODEC_ID_DVVIDEO) {
        const auto system = IdentifyDvFrame({first->data, static_cast<std::size_t>(first->size)});
        if (system) {
            const Ratio rate = SettleDvRate(RatioOf(setup.rate), *system);
            setup.rate = {rate.num, rate.den};
            setup.constantRate = true;
            return std::make_unique<PacketReader>(std::move(input), *first, DvPictureFormat(*system), setup,
                                                  damage);
        }
    }
    if (const auto format = UncompressedFormat(stream, RatioOf(setup.rate)); format && input->IsAvi())
        return std::make_unique<PacketReader>(std::move(input), *first, *format, setup, damage);
    return std::make_unique<DecodedReader>(std::move(input), *first, damage);
}

} // namespace scenedetect
