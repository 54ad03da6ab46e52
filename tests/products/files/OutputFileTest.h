// A folder that outputs are written to.
#pragma once

#include "products/files/OutputFile.h"
#include "tests/MessageOf.h"
#include "tests/TempFolder.h"
#include "tests/Testing.h"

namespace scenedetect::testing_support {

/// Takes everything.
inline constexpr const char* kNothing =
    std::filesystem::path::preferred_separator == '/' ? "/dev/null" : "NUL";

class OutputFileTest : public Test {
  protected:
    [[nodiscard]] std::string In(const char* name) const { return NameOfPath(m_folder / name); }
    [[nodiscard]] std::ptrdiff_t FileCount() const { return std::ssize(FilesIn(m_folder / "")); }

    TempFolder m_folder;
    const std::string m_path = In("out.csv");
};

} // namespace scenedetect::testing_support
