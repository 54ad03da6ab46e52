#include "reading/readers/StreamInput.h"

#include <algorithm>
#include <array>

namespace scenedetect {

std::size_t StreamInput::Read(std::span<std::uint8_t> target) {
    return ReadAtLeast(target, target.size());
}

std::size_t StreamInput::ReadAtLeast(std::span<std::uint8_t> target, std::size_t least) {
    std::size_t have = 0;
    if (m_position < std::ssize(m_kept)) {
        const auto rest = std::span(m_kept).subspan(static_cast<std::size_t>(m_position));
        have = std::min(rest.size(), target.size());
        std::copy_n(rest.begin(), have, target.begin());
    }
    const std::size_t kept = have;
    for (bool isEnd = false; have < least && !isEnd && m_source.Wait(m_stop);)
        have += m_source.Read(target.subspan(have), isEnd);
    m_position += static_cast<std::int64_t>(have);
    if (!IsFile() && m_isKeeping)
        m_kept.insert(m_kept.end(), target.begin() + static_cast<std::ptrdiff_t>(kept),
                      target.begin() + static_cast<std::ptrdiff_t>(have));
    else if (m_position >= std::ssize(m_kept))
        std::vector<std::uint8_t>().swap(m_kept);
    return have;
}

std::size_t StreamInput::ReadAt(std::span<std::uint8_t> target, std::int64_t offset) const {
    std::size_t have = 0;
    while (have < target.size()) {
        const std::size_t count =
            m_source.ReadAt(target.subspan(have), offset + static_cast<std::int64_t>(have));
        if (count == 0)
            break;
        have += count;
    }
    return have;
}

void StreamInput::Skip(std::int64_t bytes) {
    if (IsFile())
        return GoTo(m_position + bytes);
    std::array<std::uint8_t, 1 << 14> skipped;
    while (bytes > 0) {
        const auto wanted = std::min<std::int64_t>(bytes, skipped.size());
        const std::size_t count = Read({skipped.data(), static_cast<std::size_t>(wanted)});
        if (count == 0)
            return;
        bytes -= static_cast<std::int64_t>(count);
    }
}

void StreamInput::GoTo(std::int64_t position) {
    if (IsFile())
        m_source.GoTo(position);
    m_position = position;
}

std::string ReadTextFile(const std::string& path) {
    const std::atomic<bool> never = false;
    StreamInput file(path == "-" ? "./-" : path, never); // a file of that name
    file.Settle();
    std::string text;
    constexpr std::size_t kPiece = std::size_t{1} << 20;
    for (std::size_t got = kPiece; got == kPiece;) {
        const std::size_t size = text.size();
        text.resize(size + kPiece);
        got = file.Read({reinterpret_cast<std::uint8_t*>(text.data()) + size, kPiece});
        text.resize(size + got);
    }
    return text;
}

} // namespace scenedetect
