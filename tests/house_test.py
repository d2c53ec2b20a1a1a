#!/usr/bin/env python3
"""Holds the house to its habits.

  includes    they run one way, floor by floor, and in no circle, as the picture of the house shows
  words       every name is made of English words, or the glossary explains it
"""
import re
import sys
from pathlib import Path

import checks
import sources

SKIPPED = 77

# --- Includes ---

# Each floor of src, and the floors below that it may include. Besides, everything may include its own floor, and what
# stands in no floor (tests, benchmarks, fuzzers) may include anything.
FLOORS = {
    "base": [],
    "board": ["base"],
    "eval": ["base", "board"],
    "memory": ["base", "board"],
    "search": ["base", "board", "eval", "memory"],
    "uci": ["base", "board", "eval", "memory", "search"],
    "standard_uci": ["base", "board", "eval", "memory", "search", "uci"],
    "bench": ["base", "board", "eval", "memory", "search", "uci"],
}


def first_circle(edges):
    """A way from a file back to itself along the includes, if there is one."""
    done, way = set(), []

    def walk(at):
        if at in way:
            return way[way.index(at):] + [at]
        if at in done:
            return None
        way.append(at)
        for other in edges.get(at, []):
            if circle := walk(other):
                return circle
        way.pop()
        done.add(at)
        return None

    return next((circle for at in edges if (circle := walk(at))), None)


def check_includes(args):
    faults, edges = [], {}
    for path in sources.files(args.source, ["src"]):
        name = path.relative_to(args.source / "src").as_posix()
        floor = name.split("/")[0]
        if floor not in FLOORS:
            faults.append(f"{name}: the floor {floor} has no place in the order")
            continue
        edges[name] = sources.own_includes(path)
        for included in edges[name]:
            below = included.split("/")[0]
            if not (args.source / "src" / included).is_file():
                faults.append(f'{name}: "{included}" is not told from src')
            elif below != floor and below not in FLOORS[floor]:
                faults.append(f'{name} includes "{included}": {floor} does not stand above {below}')
    if len(edges) < 50:
        faults.append(f"only {len(edges)} files were found")
    if circle := first_circle(edges):
        faults.append("a circle: " + " -> ".join(circle))
    if circle := first_circle(FLOORS):
        faults.append("a circle of floors: " + " -> ".join(circle))
    if (picture := floors_of_the_picture(args.source)) != {name: set(below) for name, below in FLOORS.items()}:
        faults.append(f"docs/house.dot shows another order: {picture}")
    return faults


def floors_of_the_picture(source):
    """The floors of docs/house.dot, and those below each by its arrows; dotted ones are calls, not includes."""
    text = (source / "docs/house.dot").read_text()
    floor = dict(re.findall(r'^\s*(\w+) \[label="src/(\w+)', text, flags=re.MULTILINE))
    below = {name: set() for name in floor.values()}
    for upper, lower in re.findall(r"^\s*(\w+) -> (\w+);", text, flags=re.MULTILINE):
        below[floor[upper]].add(floor[lower])
    for _ in below:
        below = {name: lower.union(*(below[other] for other in lower)) for name, lower in below.items()}
    return below


# --- Words ---

DICTIONARIES = [Path("/usr/share/dict") / name for name in ("american-english", "british-english", "words")]


def english():
    """The words of the dictionaries from three letters on; shorter ones are mostly abbreviations."""
    found = [path for path in DICTIONARIES if path.is_file()]
    if not found:
        print("skipped: there is no dictionary (Debian package wamerican)")
        sys.exit(SKIPPED)
    lines = "\n".join(path.read_text(errors="replace") for path in found)
    return {word for word in lines.split("\n") if re.fullmatch("[a-z]{3,}", word)}


def listed_words(source):
    """Those of words.txt, apart from its comments."""
    lines = (source / "tests/data/words.txt").read_text().splitlines()
    return {word for line in lines for word in line.partition("#")[0].split()}


def names_of_the_glossary(source):
    rows = re.findall(r"^\|.*\|$", (source / "docs/GLOSSARY.md").read_text(), flags=re.MULTILINE)
    return set(re.findall(r"\w+", " ".join(code for row in rows for code in re.findall(r"`([^`]+)`", row))))


class Vocabulary:
    def __init__(self, words, names):
        self.words, self.names = words, names
        self.spoken = {name.lower() for name in names}

    def holds_part(self, part):
        """A name of the glossary, perhaps with the number of a ply, or words in camel case."""
        if part in self.names or part.rstrip("0123456789") in self.names:
            return True
        return all(self.holds_word(word) for word in re.findall(r"[A-Z]+(?![a-z])|[A-Z]?[a-z]+", part))

    def holds_word(self, word):
        # Genitives have no apostrophe; in camel case a name of the glossary begins with a capital letter.
        small = word.lower()
        return (len(word) == 1 or small in self.words or small[-1] == "s" and small[:-1] in self.words or
                word[0].isupper() and small in self.spoken)

    def holds(self, name):
        """A single capital letter must be explained, a small one need not; longer names are put together from parts."""
        if name in self.names or name in self.words or re.fullmatch("[a-z]", name):
            return True
        return len(name) > 1 and self.holds_parts(name.strip("_").split("_"))

    def holds_parts(self, parts):
        """Whether the parts are words and names of the glossary, which may be of several parts themselves."""
        return not parts or any(("_".join(parts[:i]) in self.names or i == 1 and self.holds_part(parts[0])) and
                                self.holds_parts(parts[i:]) for i in range(1, len(parts) + 1))


def check_words(args):
    vocabulary = Vocabulary(english() | listed_words(args.source), names_of_the_glossary(args.source))
    places = {}
    for path in sources.files(args.source):
        for name in sources.identifiers(path):
            places.setdefault(name, path.relative_to(args.source))
    faults = [f"{places[name]}: {name} is neither English nor in the glossary"
              for name in sorted(places, key=lambda name: (places[name], name)) if not vocabulary.holds(name)]
    if len(places) < 1000:
        faults.append(f"only {len(places)} names were found")
    return faults


if __name__ == "__main__":
    checks.run(__doc__, {"includes": check_includes, "words": check_words})
