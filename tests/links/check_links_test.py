"""The check of links, on small trees of which each has one fault."""

import pathlib
import tempfile
import unittest

from check_links import violations

ROOMS = "low|STATIC_LIBRARY|low|Low.cpp|house\nhigh|STATIC_LIBRARY|high|High.cpp|house;low\n"
FILES = {"low/Low.h": "", "low/Low.cpp": '#include "low/Low.h"\n', "high/High.cpp": '#include "low/Low.h"\n'}


class CheckLinks(unittest.TestCase):
    def check(self, rooms=ROOMS, **files):
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            for name, text in (FILES | {name.replace("__", "/") + ".h": text for name, text in files.items()}).items():
                path = root / name
                path.parent.mkdir(exist_ok=True)
                path.write_text(text)
            (root / "rooms").write_text(rooms)
            return violations(root / "rooms", root)

    def test_a_sound_tree_passes(self):
        self.assertEqual(self.check(), [])
        shared = "shared|SHARED_LIBRARY|low|$<TARGET_OBJECTS:low>|low\n"
        self.assertEqual(self.check(ROOMS.replace("house;low", "shared") + shared), [])

    def test_each_fault_is_told(self):
        self.assertEqual(
            self.check(low__Low='#include "high/High.h"\n', high__High=""),
            ["low/Low.h: low includes high/High.h but does not link high"],
        )
        self.assertEqual(
            self.check(low__Low="extern\n#  include <libavutil/frame.h>\n"),
            ["low/Low.h: low includes libavutil/frame.h but does not link PkgConfig::FFMPEG"],
        )
        self.assertEqual(
            self.check(low__Low='#include "elsewhere/Gone.h"\n'),
            ["low/Low.h: includes elsewhere/Gone.h, which is in no room"],
        )
        self.assertEqual(
            self.check(ROOMS + "third|STATIC_LIBRARY|third||low\n"),
            ["third: third links low but includes nothing of it"],
        )
        self.assertEqual(
            self.check(ROOMS.replace("|house\n", "|house;high\n", 1), low__Low='#include "high/High.h"\n', high__High=""),
            ["links in a circle: high -> low -> high"],
        )


if __name__ == "__main__":
    unittest.main()
