#include "products/files/OutputFile.h"

#include "reading/base/FileFacts.h"
#include "reading/base/HostError.h"
#include "reading/base/StandardStreams.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <random>
#include <utility>

namespace scenedetect {
namespace {

constexpr std::size_t kPendingBytes = 1 << 16;

std::filesystem::path FolderOf(const std::filesystem::path& file) {
    return file.has_parent_path() ? file.parent_path() : ".";
}

// Short, whatever the final name's length. The dot hides it from listings and from patterns of the shell.
std::string HiddenName() {
    static std::atomic<unsigned> counter = 0;
    std::random_device random;
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), ".kxscenes-%08x-%x.part", random(), counter++);
    return text.data();
}

} // namespace

OutputFile::OutputFile(std::string path, Existing existing)
    : m_path(std::move(path)), m_existing(existing), m_target(FindOutputTarget(m_path, existing)) {
    switch (m_target.kind) {
    case OutputTarget::Kind::Descriptor:
        Require(m_file.OpenDescriptor(m_target.descriptor));
        m_writingPath = m_file.DescriptorPath();
        break;
    case OutputTarget::Kind::Device:
        Require(m_file.OpenDevice(m_target.file));
        m_writingPath = NameOfPath(m_target.file);
        break;
    case OutputTarget::Kind::File:
        OpenBeside();
        break;
    }
}

OutputFile::~OutputFile() {
    (void)m_file.Close();
    if (m_unfinished)
        RemoveFile(m_writingPath.c_str());
}

void OutputFile::Require(int code) const {
    if (code != 0)
        Fail(code);
}

void OutputFile::Fail(int code) const {
    if (IsClosedPipeError(code) && m_target.descriptor == kStandardOutput)
        throw OutputClosed();
    FailToWrite(m_path, code);
}

void OutputFile::OpenBeside() {
    Require(MakeFolders(FolderOf(m_target.file)));
    int code = 0;
    do {
        const std::filesystem::path file = FolderOf(m_target.file) / HiddenName();
        m_writingPath = NameOfPath(file);
        code = m_file.Create(file);
    } while (IsExistingError(code));
    Require(code);
    m_unfinished.emplace(m_writingPath);
}

void OutputFile::Write(std::span<const std::uint8_t> bytes) {
    if (m_pending.size() + bytes.size() > kPendingBytes)
        Flush();
    if (bytes.size() > kPendingBytes)
        Require(m_file.Write(bytes));
    else
        m_pending.insert(m_pending.end(), bytes.begin(), bytes.end());
    m_size += static_cast<std::int64_t>(bytes.size());
}

void OutputFile::Write(std::string_view text) {
    Write({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

void OutputFile::Flush() {
    Require(m_file.Write(m_pending));
    m_pending.clear();
}

void OutputFile::MoveTail(std::int64_t offset, OutputFile& target) {
    Flush();
    std::vector<std::uint8_t> piece(kPendingBytes);
    for (std::int64_t from = offset; from < m_size;) {
        std::size_t got = 0;
        Require(m_file.ReadAt(from, piece, got));
        if (got == 0)
            throw HostError(m_path + ": somebody else has made it shorter");
        target.Write(std::span(piece).first(got));
        from += static_cast<std::int64_t>(got);
    }
    Require(m_file.CutAt(offset));
    m_size = offset;
}

void OutputFile::Commit() {
    Flush();
    Require(m_file.Close()); // some file systems tell only now that there was no room
    if (!m_unfinished)
        return;
    // One that has got a second name loses the first with this object.
    bool isMoved = false;
    const int code = GiveFinalName(FilePath(m_writingPath), m_target.file, m_existing, isMoved);
    if (isMoved)
        m_unfinished.reset();
    Require(code);
}

void WriteFile(const std::string& path, Existing existing, std::string_view text) {
    OutputFile file(path, existing);
    file.Write(text);
    file.Commit();
}

namespace {

// `path` is what the folder is wanted for.
void RequireFolder(const std::filesystem::path& folder, const std::string& path) {
    std::filesystem::path nearest = folder;
    FileFacts facts = FactsOf(NameOfPath(nearest));
    while (!facts.isThere && nearest.has_relative_path() && nearest != ".") {
        nearest = FolderOf(nearest);
        facts = FactsOf(NameOfPath(nearest));
    }
    if (!facts.isFolder)
        FailToWrite(path, NoFolderError());
    if (const int code = FolderObstacle(nearest); code != 0)
        FailToWrite(path, code);
}

} // namespace

void RequireWritable(const std::string& path, Existing existing) {
    const OutputTarget target = FindOutputTarget(path, existing);
    if (target.kind != OutputTarget::Kind::File)
        return;
    if (const auto folder = FolderOf(target.file); FactsOf(NameOfPath(folder)).isThere)
        OutputFile(path, existing); // trying tells more than asking, and leaves nothing
    else
        RequireFolder(folder, path);
}

void RequireWritableFolder(const std::string& folder) {
    RequireFolder(FilePath(folder), folder);
}

} // namespace scenedetect
