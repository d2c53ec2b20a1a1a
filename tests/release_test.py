#!/usr/bin/env python3
"""Tries what tools/release.sh has made of this version in build/release-<version>: unpacks each archive in an empty
place and plays a game with it, installs the Debian package into a root of its own and removes it again.

  linux-x86_64, linux-aarch64, windows-x86_64    the archive of that system
  uci-linux-x86_64, uci-windows-x86_64           ondrel-uci of that archive
  debian                                         the package, installed and removed
  lintian                                        what lintian says of the package
  checksums                                      SHA256SUMS and the bill of materials
  long-double                                    a compiler whose sums would be others is refused

Skipped where there is no such release, or no program to run it.
"""
import hashlib
import json
import os
import re
import shutil
import subprocess
import sys
import tarfile
import threading
import zipfile

import checks
from install_test import in_scratch, output_of, skip_without

SKIPPED = 77


def skip(why):
    print("skipped:", why)
    sys.exit(SKIPPED)


def release_of(args):
    """The directory of the release, and its version."""
    version = (args.build / "version").read_text().strip()
    out = args.source / f"build/release-{version}"
    if not out.is_dir():
        skip(f"there is no {out}: tools/release.sh makes it")
    return out, version


def runner_of(preset, args):
    if preset == "linux-aarch64":
        skip_without("qemu-aarch64", package="qemu-user")
        return ["qemu-aarch64"]
    if preset == "windows-x86_64":
        skip_without("wine", package="wine")
        os.environ.setdefault("WINEPREFIX", str(args.source / "build/wine"))
        os.environ["WINEDEBUG"] = "-all"
        return ["wine"]
    return []


def unpacked(preset, args):
    """The directory of the archive's files, in an empty place."""
    out, version = release_of(args)
    name = f"ondrel-{version}-{preset}"
    place = args.scratch / "unpacked"
    for archive, opener in ((out / f"{name}.tar.gz", tarfile.open), (out / f"{name}.zip", zipfile.ZipFile)):
        if archive.exists():
            with opener(archive) as x:
                x.extractall(place)
            break
    else:
        skip(f"the release has no archive for {preset}")
    if [path.name for path in place.iterdir()] != [name]:
        sys.exit(f"FAILED: the archive holds {list(place.iterdir())}, not one directory {name}")
    return place / name


def program_of(place, name, preset):
    path = place / (name + (".exe" if preset.startswith("windows") else ""))
    if path.exists():
        path.chmod(0o755)  # a zip file does not tell
    return path


def without_clock(lines):
    return [re.sub(r" time \d+", "", line.rstrip()) for line in lines if not line.startswith("info nps ")]


def faults_of_game(command, args, searches=1000):
    """Plays a recorded game once more, of its searches the first ones: every line but the clock's must be that of the
    recording."""
    empty = args.scratch / "empty"
    empty.mkdir()
    lines = (args.source / "tests/data/recordings/game-to-mate.txt").read_text().splitlines()
    commands = [line[2:] for line in lines if line.startswith("> ")]
    answers = [line[2:] for line in lines if line.startswith("< ")]
    gos = [i for i, line in enumerate(commands) if line.startswith("go ")][:searches]
    moves = [i for i, line in enumerate(answers) if line.startswith("bestmove ")][:searches]
    if searches < 1000:
        commands, answers = commands[:gos[-1] + 1], answers[:moves[-1] + 1]
    spoken = subprocess.run(command, input="".join(line + "\n" for line in commands).encode(), stdout=subprocess.PIPE,
                            cwd=empty, timeout=500)
    said = spoken.stdout.decode("latin-1")
    faults = [f"it ended with {spoken.returncode}"] if spoken.returncode != 0 else []
    if "\r" in said:
        faults.append("it writes carriage returns")
    expected = without_clock(answers)
    if without_clock(said.splitlines()) != expected:
        pairs = zip(without_clock(said.splitlines()) + [None], expected + [None])
        faults.append("it plays another game: " + str(next((pair for pair in pairs if pair[0] != pair[1]), "shorter")))
    if any(empty.iterdir()):
        faults.append("it left files behind")
    return faults


def faults_of_files(place, programs):
    present = {str(path.relative_to(place)) for path in place.rglob("*") if path.is_file()}
    needed = {*programs, "README.md", "CHANGELOG.md", "NOTICE.txt", "docs/INTERFACE.md", "docs/ondrel.6",
              "licences/libstdc++.txt", "licences/libgcc.txt"}
    return [f"the archive has no {name}" for name in sorted(needed - present)]


def faults_of_linking(program):
    """Nothing is to be brought along."""
    if program.suffix == ".exe":
        if not shutil.which("x86_64-w64-mingw32-objdump"):
            return []
        said = output_of("x86_64-w64-mingw32-objdump", "-p", program)
        needed = {name.lower() for name in re.findall(r"DLL Name: (\S+)", said)}
        of_windows = {"kernel32.dll", "msvcrt.dll", "user32.dll", "advapi32.dll", "ws2_32.dll", "iphlpapi.dll",
                      "psapi.dll", "userenv.dll", "dbghelp.dll", "ole32.dll", "shell32.dll"}
        return [f"{program.name} needs {name}" for name in sorted(needed - of_windows)]
    if shutil.which("readelf") and "NEEDED" in output_of("readelf", "-d", program):
        return [f"{program.name} needs shared libraries"]
    return []


def check_archive(preset):
    def check(args):
        place = unpacked(preset, args)
        program = program_of(place, "ondrel", preset)
        faults = faults_of_files(place, [program.name]) + faults_of_linking(program)
        command = [*runner_of(preset, args), program]
        # Under qemu a search takes thirty times as long: the first ten moves will do.
        return faults + faults_of_game(command, args, *([10] if preset == "linux-aarch64" else []))
    return check


class Conversation:
    """What is said to a program and what it answers, line by line."""

    def __init__(self, command, empty):
        empty.mkdir()
        self.process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, cwd=empty)
        self.killer = threading.Timer(90, self.process.kill)
        self.killer.start()

    def say(self, *lines):
        self.process.stdin.write("".join(line + "\n" for line in lines).encode())
        self.process.stdin.flush()

    def lines_to(self, start):
        """All lines up to the first that begins so, or to the end."""
        lines = []
        for line in self.process.stdout:
            lines.append(line.decode("latin-1").rstrip("\r\n"))
            if lines[-1].startswith(start):
                break
        return lines

    def end(self):
        self.say("quit")
        code = self.process.wait(60)
        self.killer.cancel()
        return code


def check_uci(preset):
    def check(args):
        place = unpacked(preset, args)
        program = program_of(place, "ondrel-uci", preset)
        if not program.exists():
            skip(f"the archive for {preset} has no ondrel-uci")
        _, version = release_of(args)
        faults = faults_of_linking(program)
        talk = Conversation([*runner_of(preset, args), program], args.scratch / "empty")
        talk.say("uci")
        said = talk.lines_to("uciok")
        if said[-1:] != ["uciok"] or f"id name Ondrel {version} 64bit" not in said:
            faults.append(f"to uci it says {said[:3]} ... {said[-1:]}")
        talk.say("isready")
        if talk.lines_to("readyok")[-1:] != ["readyok"]:
            faults.append("it does not get ready")
        talk.say("ucinewgame", "position startpos moves e2e4 e7e5", "go depth 3")
        searched = talk.lines_to("bestmove")
        if not re.fullmatch("bestmove [a-h][1-8][a-h][1-8]( ponder .*)?", searched[-1] if searched else ""):
            faults.append(f"go depth 3 ends with {searched[-1:]}")
        talk.say("position startpos moves d2d4", "go infinite", "isready")
        talk.lines_to("readyok")
        talk.say("stop")
        stopped = talk.lines_to("bestmove")
        if not re.fullmatch("bestmove [a-h][1-8][a-h][1-8]( ponder .*)?", stopped[-1] if stopped else ""):
            faults.append(f"stop ends with {stopped[-1:]}")
        if (code := talk.end()) != 0:
            faults.append(f"it ended with {code}")
        return faults
    return check


def debian_package(args):
    out, _ = release_of(args)
    packages = list(out.glob("*.deb"))
    if len(packages) != 1:
        skip(f"packages in the release: {packages}")
    return packages[0]


def check_debian(args):
    skip_without("dpkg", package="dpkg")
    package = debian_package(args)
    root = args.scratch / "root"
    (root / "var/lib/dpkg/info").mkdir(parents=True)
    (root / "var/lib/dpkg/updates").mkdir()
    (root / "var/lib/dpkg/status").touch()
    # What it depends on is not in that root. dpkg wants to be root, or to think so.
    dpkg = ["dpkg", f"--root={root}", "--force-depends", "--force-not-root", f"--log={root}/dpkg.log"]
    if os.geteuid() != 0:
        skip_without("fakeroot", package="fakeroot")
        dpkg.insert(0, "fakeroot")
    output_of(*dpkg, "--install", package)
    program = root / "usr/games/ondrel"
    if not program.exists():
        return [f"{program} was not installed"]
    faults = faults_of_game([program], args)
    output_of(*dpkg, "--purge", "ondrel")
    left = [path for path in (root / "usr").rglob("*") if path.is_file()] if (root / "usr").exists() else []
    return faults + [f"left behind: {path}" for path in left]


def check_lintian(args):
    skip_without("lintian", package="lintian")
    package = debian_package(args)
    said = subprocess.run(["lintian", "--allow-root", "--tag-display-limit", "0", package], stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True).stdout
    print(said)
    # As long as the repository has no licence file there is none to hand on.
    return [line for line in said.splitlines() if line.startswith("E: ") and "no-copyright-file" not in line]


def check_checksums(args):
    out, version = release_of(args)
    lines = (out / "SHA256SUMS").read_text().splitlines()
    listed = {name.lstrip("*"): total for total, name in (line.split(maxsplit=1) for line in lines)}
    there = {path.name: hashlib.sha256(path.read_bytes()).hexdigest()
             for path in out.iterdir() if path.name != "SHA256SUMS"}
    faults = [] if listed == there else [f"SHA256SUMS lists {listed}, there is {there}"]
    bill = json.loads((out / f"ondrel-{version}.spdx.json").read_text())
    described = {x["packageFileName"]: x["checksums"][0]["checksumValue"]
                 for x in bill["packages"] if "packageFileName" in x}
    packed = {name: total for name, total in there.items() if not name.endswith(".json")}
    if described != packed:
        faults.append(f"the bill of materials describes {described}")
    known = {"SPDXRef-DOCUMENT", *(x["SPDXID"] for x in bill["packages"])}
    ends = {relation[key] for relation in bill["relationships"] for key in ("spdxElementId", "relatedSpdxElement")}
    if bill["spdxVersion"] != "SPDX-2.3" or not ends <= known or len(known) != len(bill["packages"]) + 1:
        faults.append("the bill of materials contradicts itself")
    return faults


def check_long_double(args):
    skip_without("g++", package="g++")
    if os.uname().machine != "x86_64":
        skip("only GCC for x86 can have a long double of 53 bits")
    source = f'#include "{args.source}/src/base/numeric.h"\n'
    done = {}
    for option in ("-mlong-double-80", "-mlong-double-64", "-mlong-double-128"):
        done[option] = subprocess.run(["g++", "-std=c++20", "-fsyntax-only", option, "-x", "c++", "-"], input=source,
                                      stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    faults = [f"{option}: {done[option].stdout}" for option in ("-mlong-double-80", "-mlong-double-128")
              if done[option].returncode != 0]
    for compiler in ("aarch64-linux-gnu-g++", "x86_64-w64-mingw32-g++-posix"):
        if shutil.which(compiler):
            said = subprocess.run([compiler, "-std=c++20", "-fsyntax-only", "-x", "c++", "-"], input=source,
                                  stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
            faults += [f"{compiler}: {said.stdout}"] if said.returncode != 0 else []
    if done["-mlong-double-64"].returncode == 0 or "long double of 64 or 113" not in done["-mlong-double-64"].stdout:
        faults.append("a long double of 53 bits is not refused with a word why")
    return faults


PRESETS = ("linux-x86_64", "linux-aarch64", "windows-x86_64")
CHECKS = {preset: check_archive(preset) for preset in PRESETS}
CHECKS |= {f"uci-{preset}": check_uci(preset) for preset in ("linux-x86_64", "windows-x86_64")}
CHECKS |= {"debian": check_debian, "lintian": check_lintian, "checksums": check_checksums,
           "long-double": check_long_double}

if __name__ == "__main__":
    checks.run(__doc__, {name: in_scratch(check) for name, check in CHECKS.items()})
