#include "reading/readers/FileInput.h"

#include "platform/SystemError.h"
#include "platform/Text.h"
#include "reading/base/FilePath.h"
#include "reading/base/HostError.h"

#include <system_error>
#include <utility>

namespace scenedetect {

FileInput::FileInput(std::string path, const std::atomic<bool>& stop)
    : m_path(std::move(path)), m_stop(stop) {
    const std::filesystem::path file = FilePath(m_path);
    std::error_code none;
    // Some systems open folders like files, others call that a lack of rights.
    if (std::filesystem::is_directory(file, none))
        Fail(std::make_error_code(std::errc::is_a_directory).message());
    if (!m_file.Open(WideFromUtf8(m_path), File::Mode::Read))
        Fail(Utf8FromWide(LastSystemErrorText()));
    std::error_code error;
    if (const auto size = std::filesystem::file_size(file, error); !error)
        m_size = static_cast<std::int64_t>(size);
}

void FileInput::Fail(const std::string& why) const {
    throw HostError(m_path + ": cannot be read: " + why);
}

std::size_t FileInput::Read(std::span<std::uint8_t> target) {
    const std::size_t bytes = m_file.Read(target.data(), target.size());
    m_position += static_cast<std::int64_t>(bytes);
    if (bytes < target.size() && m_position < m_size)
        Fail(Utf8FromWide(LastSystemErrorText()));
    return bytes;
}

void FileInput::Skip(std::int64_t bytes) {
    if (!m_file.SeekForward(bytes))
        Fail(Utf8FromWide(LastSystemErrorText()));
    m_position += bytes;
}

std::string ReadTextFile(const std::string& path) {
    const std::atomic<bool> never = false;
    FileInput file(path, never);
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
