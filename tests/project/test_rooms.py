"""Holds the table of rooms in src/README.md against the code: includes, levels and libraries."""
import pathlib
import re
import sys
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
SRC = ROOT / "src"
ROW = re.compile(r"^\| (\d) \| `(\w+)/` \| [^|]+ \| ([^|]+) \|")
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.M)
INNER_ROW = re.compile(r"^\| `(\w+)/` \| [^|]+ \| ([^|]+) \|$")
USES = re.compile(r"lumirra_room\(\s*(\w+)(?:[^)]*?\bUSES((?:\s+[a-z]+)+))?")
MODULE = re.compile(r"^lumirra_module\((\w+) (\w+)", re.M)


def table():
    rooms = {}
    for line in (SRC / "README.md").read_text().splitlines():
        match = ROW.match(line)
        if match:
            uses = match.group(3).strip()
            rooms[match.group(2)] = (
                int(match.group(1)),
                set() if uses == "none" else {u.strip() for u in uses.split(",")},
            )
    return rooms


def inner_table():
    rooms = {}
    for line in (SRC / "README.md").read_text().splitlines():
        match = INNER_ROW.match(line)
        if match:
            uses = match.group(2).strip()
            rooms[match.group(1)] = set() if uses == "none" else {u.strip() for u in uses.split(",")}
    return rooms


class Rooms(unittest.TestCase):
    def setUp(self):
        self.rooms = table()

    def test_every_folder_is_a_row_and_every_row_a_folder(self):
        folders = {p.name for p in SRC.iterdir() if p.is_dir()}
        self.assertEqual(folders, set(self.rooms))

    def test_arrows_go_down(self):
        for name, (level, uses) in self.rooms.items():
            for used in uses:
                self.assertLess(self.rooms[used][0], level, f"{name} uses {used}")

    def test_includes_keep_to_the_table(self):
        checked = 0
        for path in SRC.rglob("*"):
            if path.suffix not in (".h", ".cpp"):
                continue
            room = path.relative_to(SRC).parts[0]
            allowed = self.rooms[room][1] | {room}
            for name in INCLUDE.findall(path.read_text()):
                checked += 1
                where = f"{path.relative_to(ROOT)} includes {name}"
                if "/" not in name:
                    # made by the build from a file of the same folder (ui_*.h, *.moc)
                    self.assertRegex(name, r"^ui_\w+\.h$|\.moc$", where)
                    continue
                self.assertIn(name.split("/")[0], allowed, where)
                self.assertTrue((SRC / name).is_file(), where)
        self.assertGreater(checked, 20)

    def test_rooms_inside_the_window_keep_to_theirs(self):
        rooms = inner_table()
        home = SRC / "app"
        self.assertEqual({p.name for p in home.iterdir() if p.is_dir()}, set(rooms))
        order = list(rooms)  # a room uses only rooms above it in the table, so no circle can form
        for name, uses in rooms.items():
            for used in uses:
                self.assertLess(order.index(used), order.index(name), f"{name} uses {used}")
            for path in (home / name).rglob("*"):
                if path.suffix in (".h", ".cpp"):
                    for included in re.findall(r'#include "app/(\w+)(/?)', path.read_text()):
                        where = f"{path.relative_to(ROOT)} includes app/{included[0]}"
                        self.assertEqual(included[1], "/", where)
                        self.assertIn(included[0], uses | {name}, where)

    def test_libraries_link_no_more_than_the_table_allows(self):
        for path in SRC.glob("*/CMakeLists.txt"):
            match = USES.search(path.read_text())
            if match:
                uses = set((match.group(2) or "").split())
                self.assertLessEqual(uses, self.rooms[match.group(1)][1], str(path))

    def test_messages_are_filled_in_at_once(self):
        # Filled in one by one, a "%2" in the first part is taken for the place of the second.
        chain = re.compile(r"\.arg\((?:[^()]|\((?:[^()]|\([^()]*\))*\))*\)\s*\.arg\(")
        for path in SRC.rglob("*.cpp"):
            # What these two still chain is numbers alone.
            if not {SRC / "app/frames", SRC / "app/gif"} & set(path.parents):
                self.assertIsNone(chain.search(path.read_text()), str(path))

    def test_modules_are_entered_by_their_door_alone(self):
        modules = [(path.parent.name, *match) for path in SRC.glob("*/CMakeLists.txt")
                   for match in MODULE.findall(path.read_text())]
        self.assertGreaterEqual(len(modules), 1)
        for folder, room, name in modules:
            self.assertEqual(folder, room)
            home = SRC / room / name
            self.assertTrue((home / "Module.cpp").is_file(), home)
            for path in SRC.rglob("*"):
                if path.suffix in (".h", ".cpp") and home not in path.parents:
                    self.assertNotIn(f'#include "{room}/{name}/', path.read_text(), str(path))
        outside = [path for path in SRC.rglob("*") if path.suffix in (".h", ".cpp")
                   and SRC / "sources/video" not in path.parents]
        for path in outside:
            self.assertNotRegex(path.read_text(), r"#include <lib(av|sw)", str(path))


if __name__ == "__main__":
    sys.exit(unittest.main())
