// A file or stream that is written to, and what is done with files by their names: what differs from system
// to system.
#pragma once

#include "products/files/OutputTarget.h"

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <utility>

namespace scenedetect {

/// Members return 0, or the system's number of an error. One thread at a time.
class SystemFile {
  public:
    SystemFile() = default;
    ~SystemFile() { (void)Close(); }
    SystemFile(const SystemFile&) = delete;
    SystemFile& operator=(const SystemFile&) = delete;

    /// One of this process, by its number; it stays open.
    [[nodiscard]] int OpenDescriptor(int descriptor);
    [[nodiscard]] int OpenDevice(const std::filesystem::path& path);
    /// A new file, hidden from listings where the system has a mark for that.
    [[nodiscard]] int Create(const std::filesystem::path& path);

    /// All of it.
    [[nodiscard]] int Write(std::span<const std::uint8_t> bytes);
    /// Fills `target` as far as the file goes.
    [[nodiscard]] int ReadAt(std::int64_t offset, std::span<std::uint8_t> target, std::size_t& got);
    /// What lies from here on is gone, and written anew.
    [[nodiscard]] int CutAt(std::int64_t offset);
    [[nodiscard]] int Close();

    /// By which a library of this process can open it, where the system has such names.
    [[nodiscard]] std::string DescriptorPath() const;

  private:
    std::intptr_t m_handle = -1;
};

/// What that number says, in the system's words, and what to do where that helps.
[[nodiscard]] std::string WriteErrorText(int code);
/// Whether that number stands for a file that is there already.
[[nodiscard]] bool IsExistingError(int code);

/// FindOutputTarget, of a path that is not empty.
[[nodiscard]] OutputTarget FindNamedTarget(const std::string& path, Existing existing);
/// Gives a file of SystemFile's, closed by now, its name. Under `Keep` one that is there stays, and that is
/// an error. 0 or the error's number; `isMoved` tells whether the first name is gone.
[[nodiscard]] int GiveFinalName(const std::filesystem::path& from, const std::filesystem::path& to,
                                Existing existing, bool& isMoved);
/// Made for signal handlers.
void RemoveFile(const char* path) noexcept;
/// With those above it. 0 or the error's number.
[[nodiscard]] int MakeFolders(const std::filesystem::path& folder);
/// Why no files can be made in this folder, which is there; 0 when they can.
[[nodiscard]] int FolderObstacle(const std::filesystem::path& folder);
/// Stands for "that is no folder".
[[nodiscard]] int NoFolderError();

/// The same text for all names of a file that need not be there yet, as far as they can be known.
[[nodiscard]] std::string WholeName(const std::filesystem::path& path);

} // namespace scenedetect
