"""Installs the build into an empty folder and looks whether all is in its place and of one version."""
import gzip
import os
import re
import subprocess
import tempfile
import unittest

BUILD = os.environ["TARNLINK_BUILD"]
SOURCE = os.environ["TARNLINK_SOURCE"]
VERSION = os.environ["TARNLINK_VERSION"]
ID = "org.tarnlink.TarnLink"


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


class Installed(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        run("cmake", "--install", BUILD, "--prefix", cls.folder.name)

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def path(self, name):
        return os.path.join(self.folder.name, name)

    def text(self, name):
        with open(self.path(name), encoding="utf-8") as file:
            return file.read()

    def names(self, folder):
        return sorted(os.listdir(os.path.join(SOURCE, folder)))

    def test_each_thing_is_in_its_place(self):
        wanted = ["bin/tarnlink", "bin/boiler_simulator", f"share/applications/{ID}.desktop",
                  f"share/metainfo/{ID}.metainfo.xml", f"share/mime/packages/{ID}.xml",
                  f"share/icons/hicolor/scalable/apps/{ID}.svg", "share/man/man1/tarnlink.1.gz",
                  "share/man/man1/boiler_simulator.1.gz", "share/doc/tarnlink/copyright"]
        wanted += [f"share/icons/hicolor/{size}x{size}/apps/{ID}.png" for size in (16, 32, 48, 64, 128, 256)]
        for name in wanted:
            self.assertTrue(os.path.getsize(self.path(name)) > 0, name)

    def test_nothing_is_out_of_place(self):
        self.assertEqual(sorted(os.listdir(self.folder.name)), ["bin", "share"])
        self.assertEqual(sorted(os.listdir(self.path("bin"))), ["boiler_simulator", "tarnlink"])

    def test_the_help_and_the_samples_are_whole(self):
        shipped = os.listdir(self.path("share/tarnlink"))
        self.assertEqual(sorted(os.listdir(self.path("share/tarnlink/samples"))), self.names("samples"))
        self.assertLessEqual(set(self.names("help")), set(shipped))
        self.assertEqual(sorted(os.listdir(self.path("share/tarnlink/pictures"))),
                         self.names("help/pictures"))
        for name in ("default.ids", "default.erc", "default.snf", "MBID.ids", "MBID.erc"):
            self.assertIn(name, shipped)

    def test_each_own_kind_of_file_has_a_picture(self):
        kinds = re.findall(r'mime-type type="application/(\S+)"', self.text(f"share/mime/packages/{ID}.xml"))
        self.assertGreaterEqual(len(kinds), 7)
        pictures = os.listdir(self.path("share/icons/hicolor/scalable/mimetypes"))
        self.assertEqual(sorted(f"application-{kind}.svg" for kind in kinds), sorted(pictures))

    def test_what_the_entry_opens_is_a_known_kind(self):
        known = set(re.findall(r'mime-type type="(\S+)"', self.text(f"share/mime/packages/{ID}.xml")))
        line = re.search(r"^MimeType=(.*);$", self.text(f"share/applications/{ID}.desktop"), re.M).group(1)
        opened = set(line.split(";"))
        self.assertIn("application/x-tarnlink-screen", opened)
        self.assertLessEqual(opened, known)
        told = re.findall(r"<mediatype>(\S+)</mediatype>", self.text(f"share/metainfo/{ID}.metainfo.xml"))
        self.assertEqual(set(told), opened)

    def test_one_version_stands_everywhere(self):
        said = run("env", "-u", "DISPLAY", "-u", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM=xcb",
                   self.path("bin/tarnlink"), "--version")
        self.assertEqual(said, f"TarnLink2 {VERSION}\n")
        self.assertIn(f'<release version="{VERSION}"', self.text(f"share/metainfo/{ID}.metainfo.xml"))
        for page in ("tarnlink", "boiler_simulator"):
            with gzip.open(self.path(f"share/man/man1/{page}.1.gz"), "rt", encoding="utf-8") as file:
                self.assertIn(f'"TarnLink {VERSION}"', file.readline())
        with gzip.open(self.path("share/doc/tarnlink/changelog.gz"), "rt", encoding="utf-8") as file:
            self.assertTrue(file.readline().startswith(f"tarnlink ({VERSION})"))
        with open(os.path.join(BUILD, "CPackConfig.cmake"), encoding="utf-8") as file:
            self.assertIn(f'set(CPACK_PACKAGE_VERSION "{VERSION}")', file.read())

    def test_the_version_is_written_in_one_place(self):
        found = run("git", "-C", SOURCE, "grep", "-lF", VERSION, "--", "src", "simulator", "packaging",
                    "dev", "cmake", "CMakeLists.txt").split()
        self.assertEqual(found, ["CMakeLists.txt"])

    def test_the_manual_tells_the_options_that_there_are(self):
        told = run(self.path("bin/boiler_simulator"), "--help")
        with gzip.open(self.path("share/man/man1/boiler_simulator.1.gz"), "rt", encoding="utf-8") as file:
            options = set(re.findall(r"(?:\\-\\-)([a-z\\-]+)", file.read()))
        self.assertGreaterEqual(len(options), 6)
        for option in options:
            self.assertIn("--" + option.replace("\\-", "-"), told)


unittest.main(verbosity=1)
