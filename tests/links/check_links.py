"""Checks that includes cross rooms along declared links only, and that links have no circle.

    check_links.py ROOMS ROOT

ROOMS is what write_room_links has written, ROOT the folder of the sources. A header belongs to the target that has
a source of its name, or else to the first target of its folder. Prints each violation; exit code 1 if there is any.
"""

import pathlib
import re
import sys

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)
# A library of another's objects: who links it may include what is the other's.
OBJECTS = re.compile(r"\$<TARGET_OBJECTS:(\w+)>")

# Libraries from outside: what their headers' names begin with.
LIBRARIES = {
    "PkgConfig::FFMPEG": ("libav", "libsw"),
    "PkgConfig::GSTREAMER": ("gst/",),
    "CLI11::CLI11": ("CLI/",),
    "nlohmann_json::nlohmann_json": ("nlohmann/",),
    "pugixml::pugixml": ("pugixml",),
}


class Room:
    def __init__(self, line):
        self.name, self.kind, self.folder, sources, links = line.rstrip("\n").split("|")
        self.of_objects = set(OBJECTS.findall(sources))
        self.sources = [pathlib.PurePosixPath(self.folder, source) for source in sources.split(";")]
        self.links = set(links.split(";")) if links != "links-NOTFOUND" else set()


def stem(path):
    """The name that a header and its sources for each system share."""
    return path.parent / re.sub(r"_(posix|win32|none|sse2)$", "", path.stem)


def owners(rooms, root):
    """The room of each header below the rooms' folders."""
    by_stem, by_folder = {}, {}
    for room in rooms:
        for source in room.sources:
            by_stem.setdefault(stem(source), room)
            by_folder.setdefault(source.parent, room)
        by_folder.setdefault(pathlib.PurePosixPath(room.folder), room)
    result = {}
    for path in sorted(root.rglob("*.h")):
        header = pathlib.PurePosixPath(path.relative_to(root).as_posix())
        room = by_stem.get(stem(header)) or by_folder.get(header.parent)
        if room:
            result[header] = room
    return result


def wrong_includes(rooms, root):
    """Of all sources, and of the headers that they include."""
    header_rooms = owners(rooms, root)
    used = {room.name: set(room.of_objects) for room in rooms}
    files = {}
    for room in rooms:
        for source in room.sources:
            # Those of other systems, too.
            same = (root / source.parent).glob(stem(source).name + "*.cpp")
            files |= {source.parent / path.name: room for path in same if stem(source.parent / path.name) == stem(source)}
    pending = sorted(files)
    while pending:
        file = pending.pop()
        room = files[file]
        for mark, name in INCLUDE.findall((root / file).read_text()):
            if mark == '"':
                if (root / "platform/native" / name).exists():
                    continue  # a header of the system's
                header = pathlib.PurePosixPath(name)
                other = header_rooms.get(header)
                if other is None:
                    yield f"{file}: includes {name}, which is in no room"
                    continue
                if header not in files:
                    files[header] = other
                    pending.append(header)
                if other is not room:
                    used[room.name].add(other.name)
                    if other.name not in room.links:
                        yield f"{file}: {room.name} includes {name} but does not link {other.name}"
                continue
            for library, beginnings in LIBRARIES.items():
                if name.startswith(beginnings):
                    used[room.name].add(library)
                    if library not in room.links:
                        yield f"{file}: {room.name} includes {name} but does not link {library}"
    kinds = {room.name: room.kind for room in rooms}
    for room in rooms:
        for link in sorted(room.links - used[room.name]):
            if kinds.get(link) == "STATIC_LIBRARY" or link in LIBRARIES:
                yield f"{room.folder}: {room.name} links {link} but includes nothing of it"


def circles(rooms):
    links = {room.name: room.links for room in rooms}
    done = set()

    def visit(name, way):
        if name in way:
            yield "links in a circle: " + " -> ".join(way[way.index(name) :] + [name])
        elif name not in done:
            for link in sorted(links.get(name, ())):
                yield from visit(link, way + [name])
            done.add(name)

    for name in sorted(links):
        yield from visit(name, [])


def violations(rooms_file, root):
    lines = pathlib.Path(rooms_file).read_text().splitlines()
    rooms = [Room(line) for line in lines]
    if not rooms:
        return [f"{rooms_file}: no rooms"]
    of_objects = {room.name: room.of_objects for room in rooms}
    for room in rooms:
        room.links |= {other for link in room.links for other in of_objects.get(link, ())}
    return [*wrong_includes(rooms, pathlib.Path(root)), *circles(rooms)]


if __name__ == "__main__":
    found = violations(sys.argv[1], sys.argv[2])
    print("\n".join(found) or "every include crosses rooms along a declared link")
    sys.exit(1 if found else 0)
