#!/usr/bin/env python3
"""The zip file for Windows: unpacked into a folder with a blank in its name, it runs under Wine without anything else of this machine."""

import os
import re
import shlex
import shutil
import sqlite3
import subprocess
import tempfile
import unittest
import zipfile
from pathlib import Path

TREE = Path(__file__).resolve().parents[2]
BUILD = TREE / "build/windows"
PROGRAMS = ("qmxdatacopy.exe", "qmxadmin.exe", "orvan-sandbox.exe")
SERVERS = ("orvan_com.dll", "orvan_sandbox.dll", "qmx_sandbox_server.dll")
CONNECTION = r"Provider=SQLite;Data Source=X:\data\größe Ж.db"
# The Debian packages of what is linked in, or consists of headers, and the file with their notices.
NOTICES = {"gcc-mingw-w64-x86-64-posix": "gcc-runtime.txt", "gcc-mingw-w64-x86-64-posix-runtime": "gcc-runtime.txt",
           "g++-mingw-w64-x86-64-posix": "gcc-runtime.txt", "mingw-w64-x86-64-dev": "mingw-w64-runtime.txt",
           "mingw-w64-common": "mingw-w64-runtime.txt", "libz-mingw-w64-dev": "zlib.txt", "libsqlite3": "SQLite.txt",
           "libfmt-dev": "fmt.txt", "libutfcpp-dev": "utfcpp.txt", "nlohmann-json3-dev": "nlohmann-json.txt", "libcli11-dev": "CLI11.txt"}
# Headers that scripts/windows_libraries.sh has copied.
COPIED = {"fmt": "libfmt-dev", "nlohmann": "nlohmann-json3-dev", "CLI": "libcli11-dev", "utf8": "libutfcpp-dev", "utf8.h": "libutfcpp-dev",
          "sqlite3.h": "libsqlite3"}


def output(*command, **more):
    return subprocess.run(command, check=True, capture_output=True, **more).stdout.decode("utf-8", "backslashreplace")


def package_of(file):
    """The Debian package of a file of the compiler or of its libraries."""
    found = subprocess.run(["dpkg", "-S", os.path.realpath(file)], capture_output=True, check=False).stdout.decode()
    return found.partition(":")[0] or f"no package has {file}"


class ZipFile(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        place = Path(tempfile.mkdtemp(prefix="qmx-zip-"))
        cls.addClassCleanup(shutil.rmtree, place)
        output("cpack", "--config", BUILD / "CPackConfig.cmake", "-B", place / "made")
        (cls.zip,) = (place / "made").glob("*.zip")
        cls.folder = place / "QMX Data Copy"
        with zipfile.ZipFile(cls.zip) as packed:
            packed.extractall(place / "unpacked")
        (top,) = (place / "unpacked").iterdir()
        cls.top = top.name
        top.rename(cls.folder)
        (cls.folder / "data").mkdir()
        # A prefix whose only drives are its own C: and the unpacked folder, so nothing of the build is in reach.
        prefix = place / "prefix"
        prefix.mkdir()
        cls.environment = {"PATH": "/usr/bin:/bin", "HOME": str(place), "LC_ALL": "C.UTF-8", "WINEPREFIX": str(prefix), "WINEDEBUG": "-all",
                           "WINEDLLOVERRIDES": "mscoree,mshtml="}
        cls.addClassCleanup(subprocess.run, ["wineserver", "-w"], env=cls.environment, check=False)
        cls.addClassCleanup(subprocess.run, ["wineserver", "-k"], env=cls.environment, check=False)
        subprocess.run(["wineserver", "-p"], env=cls.environment, check=True)  # starting it for each program takes seconds
        subprocess.run(["wineboot", "--init"], env=cls.environment, check=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL)
        (prefix / "dosdevices/z:").unlink()
        (prefix / "dosdevices/x:").symlink_to(cls.folder)
        cls.system = prefix / "drive_c/windows/system32"

    def wine(self, program, *arguments, status=0, **variables):
        with tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as err:  # Wine's services would keep a pipe open
            ended = subprocess.run(["wine", f"X:\\{program}", *arguments], cwd=self.folder / "data", env=self.environment | variables, check=False,
                                   stdin=subprocess.DEVNULL, stdout=out, stderr=err, timeout=120)
            out.seek(0)
            err.seek(0)
            out, err = (file.read().decode("utf-8", "backslashreplace") for file in (out, err))
        self.assertEqual(ended.returncode, status, out + err)
        return out if status == 0 else out + err

    def test_is_named_after_the_version_and_the_system_and_has_one_folder(self):
        self.assertEqual(self.zip.name, "qmxdatacopy-0.1.0-windows-x64.zip")
        self.assertEqual(self.top, "qmxdatacopy-0.1.0-windows-x64")

    def test_has_what_an_operator_needs_and_nothing_else(self):
        files = sorted(str(file.relative_to(self.folder)) for file in self.folder.rglob("*") if file.is_file() and file.parent.name != "data")
        within = lambda folder: [file.partition("/")[2] for file in files if file.startswith(folder + "/")]
        self.assertEqual([file for file in files if "/" not in file], ["ARCHITECTURE.md", "README.md", *sorted(PROGRAMS)])
        self.assertEqual(within("sandbox"), ["README.md", "orvan_com.dll", "orvan_sandbox.component", "orvan_sandbox.dll", "qmx_sandbox_server.component",
                                             "qmx_sandbox_server.dll"])
        self.assertEqual(within("include"), ["qmx/component_server.h"])
        for page in ("windows.md", "operating.md", "troubleshooting.md", "databases.md", "components.md", "examples/messages.c"):
            self.assertIn(page, within("docs"))
        self.assertNotIn("java.md", within("docs"))
        self.assertEqual({file.partition("/")[0] for file in files if "/" in file}, {"docs", "include", "licences", "sandbox"})

    def test_the_pages_that_its_pages_refer_to_are_in_it(self):
        for page in [self.folder / "README.md", *(self.folder / "docs").glob("*.md")]:
            for link in re.findall(r"\]\(([^)#:]+\.(?:md|svg))[^)]*\)", page.read_text()):
                if link != "java.md":
                    self.assertTrue((page.parent / link).exists(), (page.name, link))

    def test_programs_and_libraries_import_from_windows_alone(self):
        for file in (*PROGRAMS, *("sandbox/" + name for name in SERVERS)):
            names = re.findall(r"DLL Name: (\S+)", output("x86_64-w64-mingw32-objdump", "-p", self.folder / file))
            self.assertIn("KERNEL32.dll", names, file)
            foreign = [name for name in names if not (self.system / name.lower()).exists()]
            self.assertEqual(foreign, [], file)

    def test_texts_go_to_odbc_through_its_wide_functions_alone(self):
        for name in ("qmxdatacopy.exe", "qmxadmin.exe"):
            imports = output("x86_64-w64-mingw32-objdump", "-p", self.folder / name)
            table = imports.partition("DLL Name: ODBC32.dll")[2].partition("DLL Name:")[0]
            functions = set(re.findall(r"\b(SQL\w+)\b", table))
            self.assertIn("SQLDriverConnectW", functions)
            without_texts = {"SQLAllocHandle", "SQLBindParameter", "SQLDisconnect", "SQLEndTran", "SQLExecute", "SQLFetch", "SQLFreeHandle", "SQLFreeStmt",
                             "SQLGetData", "SQLNumResultCols", "SQLRowCount", "SQLSetEnvAttr"}
            self.assertEqual({function for function in functions if not function.endswith("W")} - without_texts, set(), name)
            self.assertNotIn("ODBCCP32", imports)

    def test_programs_have_version_manifest_and_icon(self):
        for name in PROGRAMS:
            resources = output("x86_64-w64-mingw32-windres", "-i", self.folder / name, "-O", "rc")
            self.assertEqual(resources.count("/* RT_GROUP_ICON */") + resources.count("GROUPICON"), 1, name)
            self.assertGreater(resources.count("/* RT_ICON */"), 2, name)
            self.assertRegex(resources, r"FILEVERSION 0, 1, 0, 0", name)
            self.assertIn(f'VALUE "OriginalFilename", "{name}"', resources)
            bytes_of = (self.folder / name).read_bytes()
            self.assertRegex(bytes_of, rb"<activeCodePage [^>]*>UTF-8</activeCodePage>", name)
            self.assertRegex(bytes_of, rb"<longPathAware [^>]*>true</longPathAware>", name)

    def notices_of(self, name, dependencies):
        """Those of the works whose code is in a program or library."""
        link_map = (BUILD / (name.rpartition(".")[0] + ".map")).read_text()
        # What a link takes out of archives is listed before the first address; objects are loaded whole.
        members = link_map.partition("Memory Configuration")[0]
        files = set(re.findall(r"^(/\S+\.a)\(", members, re.M)) | set(re.findall(r"^LOAD (/\S+\.o)$", link_map, re.M))
        self.assertGreater(len(files), 3, name)
        packages = {"libsqlite3" if file.endswith("/libsqlite3.a") else package_of(file) for file in files}
        for entry in dependencies:
            folder, _, rest = entry.partition("/CMakeFiles/")
            target = rest.partition(".dir/")[0]
            if f"{folder}/lib{target}.a(" in members or f"LOAD {folder}/CMakeFiles/{target}.dir/" in link_map:
                headers = set(re.findall(r"/windows-libraries/include/([^/\s]+)", entry))
                packages |= {COPIED.get(header, f"nobody knows {header}") for header in headers}
        self.assertEqual({package for package in packages if package not in NOTICES}, set(), name)
        return {NOTICES[package] for package in packages}

    def test_every_work_in_it_has_its_notice(self):
        dependencies = output("ninja", "-C", BUILD, "-t", "deps").split("\n\n")
        held = {name: self.notices_of(name, dependencies) for name in (*PROGRAMS, *SERVERS)}
        notices = set().union(*held.values())
        self.assertIn("zlib.txt", held["qmxadmin.exe"])
        self.assertEqual(notices | {"README.txt"}, {file.name for file in (self.folder / "licences").glob("*.txt")})
        table = (self.folder / "licences/README.txt").read_text()
        for notice in notices:
            (where,) = re.findall(f"(?m)^{re.escape(notice)} .*  (\\S.*)$", table)
            named = set(re.findall(r"[\w-]+\.(?:exe|dll)", where))
            self.assertEqual(named if not where.startswith("all") else set(held) - named, {name for name in held if notice in held[name]}, notice)
            text = (self.folder / "licences" / notice).read_text()
            self.assertGreater(len(text), 1000, notice)
            for licence in re.findall(r"/usr/share/common-licenses/([\w.-]*\w)", text):
                self.assertGreater((self.folder / f"licences/common-licenses/{licence}.txt").stat().st_size, 5000, licence)
        self.assertIn("GCC RUNTIME LIBRARY EXCEPTION", (self.folder / "licences/gcc-runtime.txt").read_text())
        self.assertIn("winpthreads", (self.folder / "licences/mingw-w64-runtime.txt").read_text())

    def test_programs_say_their_version(self):
        for name in PROGRAMS[:2]:
            self.assertEqual(self.wine(name, "--version"), f"{name[:-4]} 0.1.0\n")

    def test_a_table_is_copied_from_a_sandbox_erp(self):
        self.wine("orvan-sandbox.exe", "make", r"X:\data\orvan Δ.db")
        self.wine("qmxadmin.exe", "init", CONNECTION + ";Mode=Create", "")
        line = CONNECTION + r",,tsmdm030,X:\data,OrvanSandbox,X:\data\orvan Δ.db,7"
        self.wine("qmxdatacopy.exe", line, QMX_COMPONENTS=r"X:\sandbox", QMX_MESSAGE_BOARD=r"X:\data\board.txt")
        with sqlite3.connect(self.folder / "data/orvan Δ.db") as erp, sqlite3.connect(self.folder / "data/größe Ж.db") as local:
            expected = erp.execute('select cstp, "desc" from tsmdm030 order by 1').fetchall()
            self.assertEqual(len(expected), 12)
            self.assertEqual(local.execute("select cstp, dsca from tsmdm030 order by 1").fetchall(), expected)
        self.assertIn("Copy result. Added - 12", (self.folder / "data/board.txt").read_text())

    def test_the_first_steps_of_the_page_copy_every_table(self):
        page = (self.folder / "docs/windows.md").read_text()
        trial = re.search(r"^## Try it.*?^## ", page, re.M | re.S)[0]
        steps = re.findall(r"^    (orvan-sandbox|qmxadmin) (\w+) (.*)$", trial, re.M)
        self.assertEqual([command for _, command, _ in steps], ["make", "init", "copy"])
        for program, command, arguments in steps:
            said = self.wine(program + ".exe", command, *shlex.split(arguments), QMX_COMPONENTS=r"X:\sandbox")
        self.assertEqual(len(re.findall(r"^t[sc]\w+ .* copied .* 0$", said, re.M)), 17, said)

    def test_manifests_are_looked_for_beside_the_program_where_no_folder_is_named(self):
        said = self.wine("qmxadmin.exe", "components", status=1)
        self.assertIn(r"X:\components", said)
        self.wine("orvan-sandbox.exe", "make", r"X:\data\beside.db")
        self.wine("qmxadmin.exe", "init", r"Provider=SQLite;Mode=Create;Data Source=X:\data\beside local.db", "")
        shutil.copytree(self.folder / "sandbox", self.folder / "components")
        self.addCleanup(shutil.rmtree, self.folder / "components")
        self.wine("qmxdatacopy.exe", r"Provider=SQLite;Data Source=X:\data\beside local.db,,tsmdm030,X:\data,OrvanSandbox,X:\data\beside.db")

    def test_the_sandbox_serves_through_com_where_it_is_registered(self):
        self.wine("orvan-sandbox.exe", "make", r"X:\data\com.db")
        self.wine("qmxadmin.exe", "init", r"Provider=SQLite;Mode=Create;Data Source=X:\data\com local.db", "")
        line = r"Provider=SQLite;Data Source=X:\data\com local.db,,tsmdm030,X:\data,OrvanSandbox,X:\data\com.db"
        self.assertIn("ServiceTypes.ServiceTypesManager", self.wine("qmxdatacopy.exe", line, status=1))
        output("wine", "regsvr32", "/s", r"X:\sandbox\orvan_com.dll", env=self.environment)
        self.addCleanup(output, "wine", "regsvr32", "/s", "/u", r"X:\sandbox\orvan_com.dll", env=self.environment)
        self.wine("qmxdatacopy.exe", line)


if __name__ == "__main__":
    unittest.main(verbosity=2)
