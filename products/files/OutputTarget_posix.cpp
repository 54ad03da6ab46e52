#include "products/files/SystemFile.h"

#include <cerrno>
#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace scenedetect {
namespace {

namespace fs = std::filesystem;

// A second opening would begin at the start of what the stream has written so far.
std::optional<int> DescriptorNamed(std::string_view path) {
    if (path == "-" || path == "/dev/stdout")
        return kStandardOutput;
    if (path == "/dev/stderr")
        return kStandardError;
    for (const std::string_view folder : {"/dev/fd/", "/proc/self/fd/"}) {
        if (!path.starts_with(folder))
            continue;
        const std::string_view number = path.substr(folder.size());
        int descriptor = -1;
        const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), descriptor);
        if (error == std::errc() && end == number.data() + number.size())
            return descriptor;
    }
    return std::nullopt;
}

void RequireAccess(const std::string& path, const fs::path& file, int mode) {
    if (access(file.c_str(), mode) != 0)
        FailToWrite(path, errno);
}

} // namespace

OutputTarget FindNamedTarget(const std::string& path, Existing existing) {
    fs::path file = path;
    std::error_code error;
    constexpr int kMostLinks = 40; // as the system's own limit
    for (int links = 0;; ++links) {
        if (const auto descriptor = DescriptorNamed(file.native()))
            return {OutputTarget::Kind::Descriptor, *descriptor, {}};
        const fs::path target = fs::read_symlink(file, error);
        if (error)
            break;
        if (links == kMostLinks)
            FailToWrite(path, ELOOP);
        file = file.parent_path() / target;
    }
    const fs::file_status status = fs::status(file, error);
    if (status.type() == fs::file_type::none) // not even that can be known
        FailToWrite(path, error.value());
    if (fs::is_directory(status) || !file.has_filename())
        FailToWrite(path, fs::is_directory(status) ? EISDIR : ENOENT);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        RequireAccess(path, file, W_OK);
        return {OutputTarget::Kind::Device, -1, file};
    }
    if (fs::exists(status) && existing == Existing::Keep)
        FailToWrite(path, EEXIST);
    if (fs::exists(status))
        RequireAccess(path, file, W_OK);
    return {OutputTarget::Kind::File, -1, std::move(file)};
}

} // namespace scenedetect
