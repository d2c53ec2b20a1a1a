#!/usr/bin/env python3
"""Holds the documents to the code: the names, paths and links in them, their commands, options and conversations."""
import os
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

import checks
import sources

SKIPPED = 77
# Set for what the commands of the documents start, so that ./test does not come back here.
WITHIN = "ONDREL_WITHIN_DOCUMENTS_TEST"


# --- The documents ---

def documents(source):
    return [source / "README.md", source / "CONTRIBUTING.md", *sorted(source.glob("docs/*.md"))]


def fenced_blocks(text):
    return re.findall(r"^```\w*\n(.*?)^```", text, flags=re.MULTILINE | re.DOTALL)


def without_fenced_blocks(text):
    return re.sub(r"^```.*?^```\n", "", text, flags=re.MULTILINE | re.DOTALL)


def inline_code(text):
    return [" ".join(code.split()) for code in re.findall(r"`([^`]+)`", without_fenced_blocks(text))]


def indented_lines(text):
    """The lines of the blocks that four blanks make code, without their comments."""
    lines = re.findall(r"^ {4}(\S.*)$", without_fenced_blocks(text), flags=re.MULTILINE)
    return [re.sub(r"\s+#.*", "", line).rstrip() for line in lines]


def table_rows(text):
    """The cells of every row, without the heads of the tables."""
    rows = [[cell.strip() for cell in line.strip().strip("|").split("|")]
            for line in text.splitlines() if line.startswith("|")]
    rules = [i for i, row in enumerate(rows) if all(re.fullmatch(":?-+:?", cell) for cell in row)]
    return [row for i, row in enumerate(rows) if i not in rules and i + 1 not in rules]


# --- Names: what the glossary and the architecture call by name is in the code ---

def is_path(token):
    return "/" in token or re.search(r"\.(h|cpp|md|txt|cmake|json|py|6)$", token) is not None


def glossary_tables(text):
    """The path that the heading of a section names, and its tables' rows: the names' codes, and the explanation."""
    for section in re.split(r"^## ", text, flags=re.MULTILINE)[1:]:
        heading, _, rest = section.partition("\n")
        place = re.search("`(.*)`", heading)
        yield place[1] if place else "", [(inline_code(row[0]), row[-1]) for row in table_rows(rest)]


def check_glossary(source):
    """Each name of the first column stands in the part of the code that its section tells of."""
    faults, count = [], 0
    for place, rows in glossary_tables((source / "docs/GLOSSARY.md").read_text()):
        if not place or not (source / place).is_dir():
            faults.append(f"GLOSSARY.md: the heading of a section names no part of the code, but `{place}`")
            continue
        names = set().union(*map(sources.identifiers, sources.files(source, [place])))
        for listed, meaning in rows:
            count += len(listed)
            faults += [f"GLOSSARY.md: no {name} in {place}" for name in listed if name not in names]
            if not listed or not meaning:
                faults.append(f"GLOSSARY.md: a row without a name or an explanation in {place}: {listed} {meaning}")
    if count < 200:
        faults.append(f"GLOSSARY.md: only {count} names were found")
    return faults


def check_names(args):
    source = args.source
    code = sources.files(source)
    names = set().union(*map(sources.identifiers, code))
    quoted = set().union(*map(sources.quoted_words, code))
    faults = check_glossary(source)

    # The architecture also speaks of floors, targets, tests and commands.
    others = quoted | {path.stem for path in (source / "src").rglob("*")}
    for rules in (source / "CMakeLists.txt", source / "tests/CMakeLists.txt", *source.glob("cmake/*.cmake")):
        others |= set(re.findall(r"[\w-]+", rules.read_text()))
    text = (source / "docs/ARCHITECTURE.md").read_text()
    words = [word for block in fenced_blocks(text) for word in block.split() if "_" in word]
    for code in inline_code(text) + words:
        for name in [] if is_path(code) else re.findall(r"[A-Za-z_][\w-]*", code):
            if name not in names and name not in others:
                faults.append(f"ARCHITECTURE.md: no {name} in src (`{code}`)")
    # `file`: `name`, `name`
    for place, listed in re.findall(r"`(src/[^`]+\.(?:h|cpp))`: ((?:`\w+`(?:, )?)+)", text):
        there = sources.identifiers(source / place) if (source / place).is_file() else set()
        faults += [f"ARCHITECTURE.md: no {name} in {place}" for name in inline_code(listed) if name not in there]
    return faults


# --- Paths and links ---

def paths_named(text):
    """What stands in code and looks like a path of the source tree, and the table of places."""
    places = re.search(r"^\| Place \|.*\n(?:\|.*\n)*", text, flags=re.MULTILINE)
    yield from inline_code("".join(row[0] for row in table_rows(places[0]))) if places else []
    code = inline_code(text) + indented_lines(text)
    code += [line for block in fenced_blocks(text) if not is_conversation(block) for line in block.splitlines()]
    for line in code:
        for token in line.replace("<this directory>/", "").split():
            token = token.strip(",;:()")
            # An option, a number, a place outside the tree, or one that the reader is to choose.
            if is_path(token) and not re.match(r"[-/\d<'\"]|\.\.", token):
                yield token.removeprefix("./")


def check_paths(args):
    source = args.source
    presets = set(re.findall(r'"name": "([\w-]+)"', (source / "CMakePresets.json").read_text()))
    built = set(re.findall(r"[\w-]+", "".join((source / name).read_text()
                                              for name in ("CMakeLists.txt", "cmake/packaging.cmake"))))
    faults, count = [], 0
    for document in documents(source):
        text = document.read_text()
        for path in paths_named(text):
            count += 1
            parts = [re.sub("<[^>]*>", "*", part) for part in path.split("/") if part]
            if parts[0] == "build":
                known = parts[1] in ({"*", "packages", "release-*"} | presets) and (len(parts) < 3 or parts[2] in {"*"} | built or
                                                                       parts[2] == "CPackConfig.cmake")
            else:
                pattern = "/".join(parts)
                # The drawing of the architecture leaves src/ out.
                known = any(source.glob(pattern)) or any(source.glob(f"src/{pattern}"))
            if not known:
                faults.append(f"{document.name}: no {path}")
        for link in re.findall(r"\[[^\]]*\]\(([^)\s]+)\)", text):
            if "://" in link:
                continue
            count += 1
            name, _, anchor = link.partition("#")
            target = document.parent / name if name else document
            heads = re.findall(r"^#+ +(.*)$", target.read_text(), flags=re.MULTILINE) if target.is_file() else []
            if not target.exists():
                faults.append(f"{document.name}: the link {link} leads nowhere")
            elif anchor and anchor not in [re.sub(r"[^\w -]", "", head).lower().replace(" ", "-") for head in heads]:
                faults.append(f"{document.name}: no heading for the link {link}")
    if count < 80:
        faults.append(f"only {count} paths and links were found")
    return faults


# --- Options: the tables agree with what the engine announces ---

def converse(command, lines, **keywords):
    """What it writes to these lines; it must end by itself, and well."""
    spoken = subprocess.run(command, input="".join(line + "\n" for line in lines), stdout=subprocess.PIPE,
                            text=True, timeout=60, **keywords)
    if spoken.returncode != 0:
        raise AssertionError(f"{command} ended with {spoken.returncode}")
    return spoken.stdout.splitlines()


def announced_options(engine):
    """Name, range and default of each, as the documents write them."""
    options = []
    for line in converse([engine], ["uci", "quit"]):
        if option := re.fullmatch(r"option name (.*) type (\w+)(?: default (\S+))?(.*)", line):
            name, kind, default, rest = option.groups()
            values = {"spin": lambda: "..".join(re.findall(r"m(?:in|ax) (\S+)", rest)),
                      "combo": lambda: ", ".join(re.findall(r"var (\S+)", rest))}
            options.append((name, values.get(kind, lambda: kind)(), default or ""))
    return options


def options_of_the_table(source, heading="Options"):
    text = (source / "docs/INTERFACE.md").read_text()
    section = re.search(rf"^## {heading}\n(.*?)^#", text, flags=re.MULTILINE | re.DOTALL)
    return [(row[0].strip("`"), row[1], row[2]) for row in table_rows(section[1])]


def options_of_the_manual(source, page="ondrel.6"):
    text = (source / "docs" / page).read_text()
    items = re.findall(r'^\.It Cm "?([^"\n]*?)"? Pq ([^;\n]*)(?:; default (.*))?$', text, flags=re.MULTILINE)
    return [tuple(item) for item in items]


def check_options(args):
    announced = announced_options(args.engine)
    faults = [] if announced else ["the engine announces no options"]
    for document, listed in (("INTERFACE.md", options_of_the_table(args.source)),
                             ("ondrel.6", options_of_the_manual(args.source))):
        faults += [f"{document} lacks {option}" for option in announced if option not in listed]
        faults += [f"{document} has {option}, the engine has not" for option in listed if option not in announced]
        if not faults and listed != announced:
            faults.append(f"{document}: the options stand in another order than the engine's")
    return faults + (faults_of_uci_options(args) if args.uci else [])


def faults_of_uci_options(args):
    """ondrel-uci has options of its own, and behind them those of ondrel that go does not say."""
    own = options_of_the_table(args.source, "Options of ondrel-uci")
    named = [name for name, _, _ in own]
    shared = [("Own book", kind, "false") if name == "Own book" else (name, kind, default)
              for name, kind, default in options_of_the_table(args.source)
              if name not in ("Deep", "Time control", *named)]
    faults = []
    if announced_options(args.uci) != own + shared:
        faults.append("INTERFACE.md: the options of ondrel-uci are others")
    if options_of_the_manual(args.source, "ondrel-uci.6") != own:
        faults.append("ondrel-uci.6: the options are others than in INTERFACE.md")
    return faults


# --- Conversations: the engine says what the documents show ---

def is_conversation(block):
    return any(line.startswith("> ") for line in block.splitlines())


def conversations(source):
    for document in documents(source):
        for block in fenced_blocks(document.read_text()):
            yield document.name, block
    for page in source.glob("docs/*.6"):
        for block in re.findall(r"^\.Bd -literal.*\n((?:.*\n)*?)\.Ed$", page.read_text(), flags=re.MULTILINE):
            yield page.name, block


def without_clock(lines):
    return [re.sub(r" time \d+", "", line) for line in lines if not line.startswith("info nps ")]


def matches(shown, written):
    """Whether the lines are the same, where "... (<n> more options)" stands for as many option lines."""
    written = list(written)
    for line in shown:
        left_out = re.fullmatch(r"\.\.\. \((\d+) more options\)", line)
        for _ in range(int(left_out[1]) if left_out else 1):
            if not written:
                return False
            was = written.pop(0)
            if not (was.startswith("option ") if left_out else was == line):
                return False
    return not written


def check_conversations(args):
    faults, played = [], []
    for name, block in conversations(args.source):
        program = args.uci if name == "ondrel-uci.6" else args.engine
        if not is_conversation(block) or not program:
            continue
        played.append(name)
        lines = block.splitlines()
        shown = without_clock(line for line in lines if not line.startswith("> "))
        written = without_clock(converse([program], [line[2:] for line in lines if line.startswith("> ")]))
        if not matches(shown, written):
            faults.append("\n".join([f"{name}: the engine does not say what is shown, but", *written]))
    for name in ("README.md", "ondrel.6", *(["ondrel-uci.6"] if args.uci else [])):
        if name not in played:
            faults.append(f"{name} shows no conversation")
    return faults


# --- Commands: each is tried, in full or as far as a moment allows ---

# A program that notes how it was called, reads what it is given, and reports a test passed where that is asked for.
STAND_IN = """#!/bin/bash
echo "${0##*/} $*" >>"$CALLS"
cat >/dev/null
while [[ $# -gt 0 ]]; do
    if [[ $1 == --output-junit ]]; then
        printf '%s\\n' 'tests="1"' 'failures="0"' 'skipped="0"' 'disabled="0"' >"$2"
    fi
    shift
done
"""


class Commands:
    def __init__(self, source, engine, uci, scratch):
        self.source, self.engine, self.uci, self.scratch = source, engine, uci, scratch
        self.environment = os.environ | {"ONDREL_NO_INSTALL": "1", WITHIN: "1"}
        # How each command of the documents is tried.
        self.known = {
            "./run": self.speaks_uci,
            "./run </dev/null": self.ends_in_silence,
            "<this directory>/build/release/ondrel": self.speaks_uci,
            "<this directory>/build/release/ondrel-uci": self.speaks_uci,
            "EngineCommand = <this directory>/build/release/ondrel-uci": self.names_the_engine,
            "./test": self.rehearse,
            "./test -R <pattern>": self.test_one,
            "./test --full": self.rehearse,
            ".ci/run": self.rehearse,
            "cmake --preset release && cmake --build --preset release && ctest --preset release": self.presets,
            "cmake --preset debug && cmake --build --preset debug && ctest --preset debug": self.presets,
            "cmake --preset fuzz && cmake --build --preset fuzz": self.presets,
            "cmake --preset release && cmake --build --preset release": self.presets,
            "cmake --preset coverage && cmake --build --preset coverage && ctest --preset coverage": self.presets,
            "ctest --preset fuzz": self.presets,
            "ctest --preset release -LE client": self.list_tests,
            "gcovr": self.report_of_coverage,
            "cmake --install build/release --prefix /usr/local": self.install,
            "cpack --config build/release/CPackConfig.cmake -B build/packages": self.pack,
            "build/release/ondrel-bench": self.bench_usage,
            "build/release/ondrel-bench quick": self.bench_usage,
            "Bench: <nodes> <checksum>": self.bench_signature,
            "tools/clock_table.py build/release/ondrel": self.clock_table,
            "tools/clock_table.py build/release/ondrel --quick": self.clock_table,
            "tests/standard_uci/soak.py --engine build/release/ondrel-uci --seconds 3600": self.shown_in_usage,
            "tools/play_match.py --first build/release/ondrel-uci --second build/release/ondrel --clock 10+0.1":
                self.shown_in_usage,
            "build/fuzz/<target> fuzz/corpus/<target>": self.fuzz_targets,
            "build/fuzz/<target> build/fuzz/corpus/<target> fuzz/corpus/<target>": self.fuzz_targets,
            "build/clang-release/ondrel-microbench --benchmark_filter=<pattern>": self.benchmarks,
            "build/release/tests/ondrel_tests --gtest_filter=<pattern>": self.unit_tests,
            "build/release/tests/compare/compare_engines --engines <plain> <engine> --seed 7 --seconds 60": self.compare,
            "tools/break_rules.py --only <pattern>": self.break_rules,
        }

    def written(self):
        """The commands of the documents: the lines of indented blocks, and those in the text."""
        for name in ("README.md", "CONTRIBUTING.md"):
            text = (self.source / name).read_text()
            for line in indented_lines(text):
                yield name, line
            for code in inline_code(text):
                if re.match(r"\./|(cmake|ctest|cpack) |\.ci/|build/\S+ ", code):
                    yield name, code

    def faults(self):
        faults = []
        written = list(self.written())
        for name, command in written:
            if command not in self.known:
                faults.append(f"{name}: nobody knows how to try: {command}")
        texts = [command for _, command in written]
        for command, how in self.known.items():
            if command not in texts:
                faults.append(f"no document has this command any more: {command}")
                continue
            try:
                how(command)
                print("tried:", command)
            except (AssertionError, OSError, subprocess.SubprocessError) as reason:
                faults.append(f"{command}: {reason}")
        return faults

    def output_of(self, *command, status=0, **keywords):
        done = subprocess.run(command, cwd=self.source, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True, env=self.environment, timeout=120, **keywords)
        if done.returncode != status:
            raise AssertionError(f"{' '.join(command)} ended with {done.returncode}:\n{done.stdout}")
        return done.stdout

    @staticmethod
    def expect(truth, *saying):
        if not truth:
            raise AssertionError(" ".join(map(str, saying)))

    # --- The scripts, the engine ---

    def speaks_uci(self, command):
        if command.endswith("ondrel-uci") and not self.uci:
            print("not tried, since it was not built:", command)
            return
        program = command.replace("<this directory>", str(self.source))
        said = converse([program], ["uci", "quit"], cwd=self.source, env=self.environment)
        self.expect(said and said[-1] == "uciok", "no uciok, but", said)

    def ends_in_silence(self, command):
        self.expect(converse(["bash", "-c", command], [], cwd=self.source, env=self.environment) == [], "it speaks")

    def names_the_engine(self, command):
        place = command.rpartition("<this directory>/")[2]
        if self.uci:
            self.expect(os.path.samefile(self.source / place, self.uci), place, "is not ondrel-uci")

    def test_one(self, command):
        output = self.output_of(*command.replace("<pattern>", "^docs\\.options$").split())
        self.expect(output.endswith("\n1 passed, 0 failed\n"), output)

    def rehearse(self, command):
        """Runs the script in an empty tree, with stand-ins for the programs that it calls."""
        with tempfile.TemporaryDirectory(dir=self.scratch) as name:
            tree = Path(name)
            for script in ("test", "tools", ".ci"):
                copy = shutil.copytree if (self.source / script).is_dir() else shutil.copy
                copy(self.source / script, tree / script)
            game = "tests/data/recordings/game-to-mate.txt"
            signature = "tests/data/bench-signature.txt"
            for file in ("build/check.log", "build/release/none", "src/a.cpp", "fuzz/a.cpp", game, signature):
                (tree / file).parent.mkdir(parents=True, exist_ok=True)
                (tree / file).touch()
            (tree / "programs").mkdir()
            stand_in = tree / "programs/stand-in"
            stand_in.write_text(STAND_IN)
            stand_in.chmod(0o755)
            for program in ("cmake", "ctest", "ninja", "c++", "clang++", "clang-format", "clang-tidy",
                            "run-clang-tidy", "cppcheck", "valgrind"):
                (tree / "programs" / program).symlink_to(stand_in)
            (tree / "build/release/ondrel-bench").symlink_to(stand_in)
            # These build a dozen times.
            for script in ("signatures.sh", "release.sh"):
                (tree / "tools" / script).unlink()
                (tree / "tools" / script).symlink_to(stand_in)
            calls = tree / "calls"
            environment = {"PATH": f"{tree / 'programs'}:{self.environment['PATH']}", "CALLS": str(calls)}
            output = self.output_of("env", *(f"{key}={value}" for key, value in environment.items()), "bash", "-c",
                                    f'cd "{tree}" && {command}')
            called = calls.read_text()
        self.expect(re.search(r"^[1-9]\d* passed, 0 failed\n\Z", output, flags=re.MULTILINE), output)
        presets = {"./test": ["release"], ".ci/run": ["release", "clang-release", "clang-asan"],
                   "./test --full": ["release", "clang-release", "clang-asan", "fuzz"]}[command]
        for tool in ("cmake --preset", "cmake --build --preset", "ctest --preset"):
            self.expect(re.findall(f"^{tool} (\\S+)", called, flags=re.MULTILINE) == presets, called)
        self.expect(set(presets) <= self.listed("configure"), "no such presets:", presets)
        for tool, wanted in (("clang-format", command != "./test"), ("run-clang-tidy", command != "./test"),
                             ("cppcheck", command != "./test"), ("valgrind", command == "./test --full")):
            self.expect(wanted == (f"\n{tool} " in called), tool, "was called or not, otherwise than is written")

    # --- CMake, CTest, CPack ---

    def listed(self, kind):
        return set(re.findall(r'^ +"([\w-]+)"', self.output_of("cmake", f"--list-presets={kind}"), flags=re.MULTILINE))

    def presets(self, command):
        """Configures elsewhere, without building; of the rest, whether there is such a preset."""
        for part in command.split(" && "):
            preset = re.search(r"--preset (\S+)", part)[1]
            tool = re.match(r"ctest|cmake --\w+", part)[0]
            kind = {"cmake --build": "build", "ctest": "test"}.get(tool, "configure")
            self.expect(preset in self.listed(kind), "no such preset:", part)
            if kind != "configure" or part == "cmake --preset release":
                continue
            if preset == "fuzz" and not shutil.which("clang++"):
                print("not configured, since there is no clang++:", part)
                continue
            output = self.output_of(*part.split(), "-B", str(self.scratch / "configured" / preset))
            self.expect("not used by the project" not in output, output)

    def list_tests(self, command):
        tests = set(re.findall(r"Test +#\d+: (\S+)", self.output_of(*command.split(), "-N")))
        left_out = set(re.findall(r"Test +#\d+: (\S+)", self.output_of("ctest", "--preset", "release", "-N"))) - tests
        self.expect(len(tests) > 15 and len(left_out) > 1, len(tests), "tests,", len(left_out), "left out")
        self.expect(all(test.startswith("client.") for test in left_out), "left out:", left_out)

    def install(self, command):
        prefix = self.scratch / "prefix"
        self.output_of(*command.replace("/usr/local", str(prefix)).split())
        more = ("games/ondrel-uci", "share/man/man6/ondrel-uci.6") if self.uci else ()
        for place in ("games/ondrel", "share/man/man6/ondrel.6", "share/doc/ondrel/README.md", *more):
            self.expect((prefix / place).is_file(), "not installed:", place)

    def pack(self, command):
        packages = self.scratch / "packages"
        self.output_of(*command.replace("build/packages", str(packages)).split())
        made = sorted(path.suffix for path in packages.iterdir() if path.is_file())
        wanted = [".deb", ".gz"] if shutil.which("dpkg-shlibdeps") and shutil.which("file") else [".gz"]
        self.expect(made == wanted, "packages:", made)

    # --- The programs of developers ---

    def bench_usage(self, command):
        program = command.split()[0]
        # Both runs take a while; bench.signature is the quick one.
        self.expect(self.output_of(program, "slow", status=2) == "usage: ondrel-bench [quick] [show]\n", "other usage")

    def bench_signature(self, command):
        form = command.replace("<nodes>", r"\d+").replace("<checksum>", r"[0-9a-f]{16}")
        kept = (self.source / "tests/data/bench-signature.txt").read_text().splitlines()[0]
        self.expect(re.fullmatch(form, kept), kept, "is not of the form", command)

    def clock_table(self, command):
        program, engine, *options = command.split()
        usage = self.output_of(program, "--help")
        self.expect(all(f"[{option}]" in usage for option in options), "not in its usage:", options)
        # The whole table takes a while; clock.table is the quick one.
        said = self.output_of(program, engine, "--searches", "2", "--longest", "9")
        self.expect(said.endswith("2 searches, 2 positions: 2 held, 0 did not\n"), said)

    def shown_in_usage(self, command):
        program, *words = command.split()
        done = subprocess.run(["/usr/bin/python3", program, "--help"], cwd=self.source, stdout=subprocess.PIPE, text=True)
        if done.returncode != 0 or done.stdout.startswith("skipped"):
            print("not called, since there is no PyChess:", command)
            return
        for option in words:
            self.expect(not option.startswith("--") or option in done.stdout, program, "has no", option)

    def fuzz_targets(self, command):
        text = (self.source / "CONTRIBUTING.md").read_text()
        named = re.findall(r"`(\w+)`", re.search(r"with a target of (.*?)\. ", text, flags=re.DOTALL)[1])
        targets = sorted(path.stem for path in self.source.glob("fuzz/*_fuzz.cpp"))
        self.expect(sorted(named) == targets, "targets:", targets)
        for target in targets:
            self.expect(any((self.source / "fuzz/corpus" / target).iterdir()), "no seeds for", target)

    def report_of_coverage(self, command):
        """Tries the settings, but for what has been measured, on a place without measurements."""
        settings = (self.source / "gcovr.cfg").read_text()
        preset = re.search(r"^search-path = build/(\S+)\n", settings, flags=re.MULTILINE)
        place = re.search(r"^filter = (\S+)", settings, flags=re.MULTILINE)[1]
        self.expect(preset[1] in self.listed("configure"), "no such preset:", preset[1])
        self.expect((self.source / place).is_dir(), "no directory", place)
        if not shutil.which("gcovr"):
            print("not called, since there is no gcovr:", command)
            return
        unmeasured = self.scratch / "unmeasured"
        unmeasured.mkdir()
        rest = unmeasured / "gcovr.cfg"
        rest.write_text(settings.replace(preset[0], ""))
        output = self.output_of(command, "--config", str(rest), "--root", str(self.source), str(unmeasured))
        self.expect("GCC Code Coverage Report" in output, output)

    def unit_tests(self, command):
        program, option = command.split()
        listed = self.output_of(program, "--gtest_list_tests", option.replace("<pattern>", "ChessRules*"))
        self.expect("ChessRules" in listed and "Options" not in listed, listed)

    def compare(self, command):
        """One conversation, instead of as many as a minute holds."""
        place = self.engine.rpartition("/")[0]
        command = command.replace("<plain>", f"{place}/tests/plain/ondrel-plain").replace("<engine>", self.engine)
        said = self.output_of(*command.replace("--seconds 60", "--conversations 1").split(), "--out", str(self.scratch))
        self.expect("1 conversations" in said, said)

    def break_rules(self, command):
        said = self.output_of(*command.replace("<pattern>", "draw.score").split(), "--list")
        self.expect("the draw score is never raised" in said, said)

    def benchmarks(self, command):
        place, preset, target = re.match(r"(build/([\w-]+)/([\w-]+)) ", command).groups()
        rules = (self.source / "CMakeLists.txt").read_text()
        self.expect(preset in self.listed("configure") and f"add_executable({target} " in rules, "not built:", command)
        if (self.source / place).exists():
            self.output_of(place, "--benchmark_list_tests", "--benchmark_filter=.")


def check_commands(args):
    if os.environ.get(WITHIN):
        print("skipped: these commands are being tried")
        sys.exit(SKIPPED)
    if args.build != args.source / "build/release":
        print("skipped: the commands of the documents are tried with the tests of build/release")
        sys.exit(SKIPPED)
    scratch = args.build / "documents-test"
    shutil.rmtree(scratch, ignore_errors=True)
    scratch.mkdir()
    # The CTest that runs this is writing its log: those that the commands start must not write theirs over it.
    log, kept = args.build / "Testing", scratch / "Testing"
    if log.exists():
        log.rename(kept)
    try:
        return Commands(args.source, args.engine, args.uci, scratch).faults()
    finally:
        if kept.exists():
            shutil.rmtree(log, ignore_errors=True)
            kept.rename(log)
        shutil.rmtree(scratch)


CHECKS = {"names": check_names, "paths": check_paths, "options": check_options, "conversations": check_conversations,
          "commands": check_commands}


if __name__ == "__main__":
    checks.run(__doc__, CHECKS)
