#!/usr/bin/env python3
"""Installs the engine, packs it, and runs what came of it, all in the build directory and without being root.

  prefix    cmake --install into a directory
  manual    the manual page formats without a warning
  package   the Debian package: its fields, its files, its engine
"""
import gzip
import os
import re
import shutil
import subprocess
import sys
from pathlib import Path

import checks

SKIPPED = 77


def skip_without(*programs, package):
    for program in programs:
        if not shutil.which(program):
            print(f"skipped: {program} is not installed (Debian package {package})")
            sys.exit(SKIPPED)


def output_of(*command):
    """What it writes; a failure ends the test with it."""
    done = subprocess.run([str(word) for word in command], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True)
    if done.returncode != 0:
        sys.exit(f"FAILED: {command} ended with {done.returncode}:\n{done.stdout}")
    return done.stdout


def faults_of_engine(engine, empty):
    """A short conversation in an empty directory and an empty environment."""
    empty.mkdir()
    lines = ["uci", "isready", "position startpos moves e2e4 e7e5", "position fen 8/8/8/4k3/8/8/4P3/4K3 w - - 0 1",
             "go wtime 9 btime 9", "quit"]
    spoken = subprocess.run([engine], input="".join(line + "\n" for line in lines), stdout=subprocess.PIPE, text=True,
                            cwd=empty, env={}, timeout=60)
    said = [line for line in spoken.stdout.splitlines() if not line.startswith(("info ", "option ", "id "))]
    faults = []
    if spoken.returncode != 0:
        faults.append(f"the engine ended with {spoken.returncode}")
    if said[:3] != ["uciok", "readyok", "bestmove g1f3"] or len(said) != 4 or \
            not re.fullmatch("bestmove e[12][a-f][1-4]", said[3]):
        faults.append(f"the engine said {said}")
    if any(empty.iterdir()):
        faults.append("the engine left files behind")
    return faults


def faults_of_uci(engine, empty):
    """The same of ondrel-uci, which answers every go."""
    empty.mkdir()
    lines = ["uci", "isready", "position startpos moves e2e4 e7e5", "go depth 1", "quit"]
    spoken = subprocess.run([engine], input="".join(line + "\n" for line in lines), stdout=subprocess.PIPE, text=True,
                            cwd=empty, env={}, timeout=60)
    said = [line for line in spoken.stdout.splitlines() if not line.startswith(("info ", "option ", "id "))]
    faults = [] if spoken.returncode == 0 else [f"ondrel-uci ended with {spoken.returncode}"]
    if said[:2] != ["uciok", "readyok"] or len(said) != 3 or not re.match("bestmove [a-h][12][a-h][2-6]", said[2]):
        faults.append(f"ondrel-uci said {said}")
    if any(empty.iterdir()):
        faults.append("ondrel-uci left files behind")
    return faults


def faults_of_programs(place, args):
    faults = faults_of_engine(place / "ondrel", args.scratch / "empty")
    return faults + (faults_of_uci(place / "ondrel-uci", args.scratch / "empty-uci") if args.uci else [])


def programs(args):
    return ["ondrel", "ondrel-uci"] if args.uci else ["ondrel"]


def expected_files(args, ending=""):
    """Each file below the prefix, and its mode; `ending` is that of a manual page that is packed."""
    documents = ["README.md", *(f"docs/{path.name}" for path in args.source.glob("docs/*.md"))]
    files = {f"games/{name}": 0o755 for name in programs(args)}
    files |= {f"share/man/man6/{name}.6{ending}": 0o644 for name in programs(args)}
    return files | {f"share/doc/ondrel/{name}": 0o644 for name in documents}


def faults_of_files(prefix, expected, source):
    expected = expected | {"share/doc/ondrel/CHANGELOG.md": 0o644}
    if any(name.endswith(".6.gz") for name in expected):
        expected["share/doc/ondrel/changelog.gz"] = 0o644  # Debian's own, in the package
    found = {str(path.relative_to(prefix)): path.stat().st_mode & 0o7777 for path in prefix.rglob("*")
             if not path.is_dir()}
    faults = [f"{name} is missing" for name in expected if name not in found]
    faults += [f"{name} does not belong there" for name in found if name not in expected]
    faults += [f"{name} has the mode {found[name]:o}" for name in expected
               if name in found and found[name] != expected[name]]
    for name in found:
        of = source / name.removeprefix("share/doc/ondrel/")
        if name.endswith(".md") and of.is_file() and of.read_bytes() != (prefix / name).read_bytes():
            faults.append(f"{name} is not the document of the source tree")
    return faults


def check_prefix(args):
    prefix = args.scratch / "prefix"
    output_of("cmake", "--install", args.build, "--prefix", prefix)
    faults = faults_of_files(prefix, expected_files(args), args.source)
    return faults or faults_of_programs(prefix / "games", args)


def check_manual(args):
    faults = faults_of_page(args.source / "docs/ondrel.6", "ondrel - UCI chess engine")
    return faults + faults_of_page(args.source / "docs/ondrel-uci.6",
                                   "ondrel-uci - UCI chess engine for every chess interface")


def faults_of_page(page, known_as):
    os.environ |= {"LC_ALL": "C.UTF-8", "MANWIDTH": "80"}
    formatters = {"mandoc": ["mandoc", "-Tlint", "-Wwarning"],
                  "man": ["man", "--warnings", "-E", "UTF-8", "-Tutf8", "-Z", "-l"],
                  "groff": ["groff", "-mandoc", "-ww", "-z"]}
    tried = [formatter for formatter in formatters if shutil.which(formatter)]
    if not tried:
        print("skipped: neither man nor mandoc nor groff is installed (Debian package man-db)")
        sys.exit(SKIPPED)
    faults = []
    for formatter in tried:
        done = subprocess.run([*formatters[formatter], page], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, text=True)
        said = done.stderr + (done.stdout if formatter == "mandoc" else "")
        if done.returncode != 0 or said.strip():
            faults.append(f"{formatter} ended with {done.returncode}: {said}")
        print("formatted by", formatter)
    # The line that makes the page known to apropos.
    if shutil.which("lexgrog"):
        known = output_of("lexgrog", page)
        if not known.endswith(f': "{known_as}"\n'):
            faults.append(f"lexgrog reads: {known}")
    return faults


def check_package(args):
    skip_without("dpkg-deb", package="dpkg")
    skip_without("dpkg-shlibdeps", package="dpkg-dev")
    skip_without("file", package="file")
    # The package is not to show the umask of whoever makes it.
    os.umask(0o077)
    output_of("cpack", "-G", "DEB", "--config", args.build / "CPackConfig.cmake", "-B", args.scratch / "packages")
    packages = list((args.scratch / "packages").glob("*.deb"))
    if len(packages) != 1:
        return [f"packages: {packages}"]
    package = packages[0]
    field = dict(re.findall(r"^([\w-]+): (.*(?:\n .*)*)", output_of("dpkg-deb", "-f", package), flags=re.MULTILINE))
    announced = re.search(r"^id name Ondrel (\S+)", output_of("sh", "-c", f"echo uci | '{args.engine}'"), re.MULTILINE)
    expected = {"Package": "ondrel", "Version": announced[1], "Section": "games", "Priority": "optional",
                "Architecture": output_of("dpkg", "--print-architecture").strip(),
                "Maintainer": "The Ondrel developers <ondrel@ondrel.invalid>"}
    faults = [f"{key} is {field.get(key)}, not {value}" for key, value in expected.items() if field.get(key) != value]
    if package.name != f"{field['Package']}_{field['Version']}_{field['Architecture']}.deb":
        faults.append(f"the package is called {package.name}")
    if not re.search(r"\blibc6\b", field.get("Depends", "")):
        faults.append(f"it depends on: {field.get('Depends')}")
    if field.get("Description", "").count("\n ") < 3:
        faults.append(f"no long description, only: {field.get('Description')}")
    for line in output_of("dpkg-deb", "-c", package).splitlines():
        mode, owner, *_, place = line.split()
        if owner != "root/root" or mode != ("drwxr-xr-x" if place.endswith("/") else
                                            "-rwxr-xr-x" if "/games/" in place else "-rw-r--r--"):
            faults.append(f"owner or mode: {line}")

    root = args.scratch / "root"
    output_of("dpkg-deb", "-x", package, root)
    faults += faults_of_files(root / "usr", expected_files(args, ".gz"), args.source)
    if outside := [path.name for path in root.iterdir() if path.name != "usr"]:
        faults.append(f"outside usr: {outside}")
    if faults:
        return faults
    for name in programs(args):
        compressed = (root / f"usr/share/man/man6/{name}.6.gz").read_bytes()
        if gzip.decompress(compressed) != (args.source / f"docs/{name}.6").read_bytes():
            faults.append(f"the manual page of {name} is not that of the source tree")
        if compressed[3:9] != bytes([0, 0, 0, 0, 0, 2]):
            faults.append(f"the manual page of {name} was not compressed by gzip -9n")
        if b".symtab" in (root / "usr/games" / name).read_bytes():
            faults.append(f"{name} was not stripped")
    return faults + faults_of_programs(root / "usr/games", args)


CHECKS = {"prefix": check_prefix, "manual": check_manual, "package": check_package}


def in_scratch(check):
    """The check in an empty directory of its own."""
    def checked(args):
        args.scratch = args.build / "install-test" / args.check
        shutil.rmtree(args.scratch, ignore_errors=True)
        args.scratch.mkdir(parents=True)
        return check(args)
    return checked


if __name__ == "__main__":
    checks.run(__doc__, {name: in_scratch(check) for name, check in CHECKS.items()})
