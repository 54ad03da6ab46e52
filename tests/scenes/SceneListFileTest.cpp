#include "scenes/SceneListFile.h"

#include "tests/TempFolder.h"
#include "tests/Testing.h"

#include <clocale>

namespace {

TEST(SceneListFile, HasTheBytesOfTheFormat) {
    const struct {
        std::vector<std::int32_t> positions;
        std::uint32_t method;
        const char* text;
    } cases[] = {
        {{0, 118, 403},
         1,
         "<SceneList count=\"3\" method=\"Video\">\r\n<Scene pos=\"0\"/>\r\n<Scene pos=\"118\"/>\r\n"
         "<Scene pos=\"403\"/>\r\n</SceneList>\r\n"},
        {{}, 3, "<SceneList count=\"0\" method=\"Manual\">\r\n</SceneList>\r\n"},
        {{-5}, 0, "<SceneList count=\"1\" method=\"Timestamp\">\r\n<Scene pos=\"-5\"/>\r\n</SceneList>\r\n"},
        {{2147483647},
         2,
         "<SceneList count=\"1\" method=\"Interval\">\r\n<Scene pos=\"2147483647\"/>\r\n</SceneList>\r\n"},
        {{}, 4, "<SceneList count=\"0\">\r\n</SceneList>\r\n"},
        {{}, 4294967295u, "<SceneList count=\"0\">\r\n</SceneList>\r\n"},
    };
    const TempFolder folder;
    const auto path = folder / "scenes.xml"; // each case replaces the file before it
    for (const auto& one : cases) {
        WriteSceneListFile(Wide(path), one.positions, one.method);
        EXPECT_EQ(ReadWhole(path), one.text);
    }
}

TEST(SceneListFile, TakesAnyNameAndSurvivesAMissingFolder) {
    const TempFolder folder;
    const auto path = folder / std::filesystem::path(u8"Szenen \u00e4\u20ac\u65e5.xml");
    for (const char* locale : {"", "C.UTF-8", "de_DE", "Japanese_Japan.932", "C"}) {
        if (!std::setlocale(LC_ALL, locale))
            continue; // not every system has them all; the last one stays
        SCOPED_TRACE(locale);
        WriteSceneListFile(Wide(path), {}, 0);
        EXPECT_EQ(ReadWhole(path), "<SceneList count=\"0\" method=\"Timestamp\">\r\n</SceneList>\r\n");
        EXPECT_TRUE(std::filesystem::remove(path));
    }

    const auto missing = folder / "none" / "scenes.xml";
    WriteSceneListFile(Wide(missing), {1}, 0);
    EXPECT_FALSE(std::filesystem::exists(missing));
}

} // namespace
