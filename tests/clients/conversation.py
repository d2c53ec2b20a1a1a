"""Conversations between client and engine, and those that a game must repeat.

A game repeats a conversation if the opponent's moves are fixed, Deep is below the depths that look at the clock, and
the clocks keep six digits and the first of them. The expected ones are recordings, which the engine repeats without a
client too.
"""
import re
from pathlib import Path

SIDES = {"Adapter->Engine": ">", "Engine->Adapter": "<"}
LINE_OF_PLAY = 8 * 4 + 7  # characters: the engine fills it up with blanks, which clients do not keep


def adapted_conversation(log):
    """What passed between Polyglot and the engine, from Polyglot's log."""
    lines = []
    for line in Path(log).read_text(errors="replace").splitlines():
        found = re.match(r"[\d.]+ (Adapter->Engine|Engine->Adapter): (.*)", line)
        if found and found[2] != "EOF":
            lines.append(f"{SIDES[found[1]]} {found[2]}")
    return lines


def without_clock(line):
    """The line with all that the clock puts there taken out, or rounded down to its first digit."""
    if line.startswith("> go "):
        return re.sub(r"(?<=time )(\d)(\d*)", lambda clock: clock[1] + "0" * len(clock[2]), line)
    line = re.sub(r" time \d+", "", line.rstrip())
    head, _, play = line.partition(" pv ")
    return f"{head} pv {play.ljust(LINE_OF_PLAY)}" if " currmove " in head else line


def as_recording(conversation):
    """Up to the last reply: how a client takes its leave depends on how quick it is."""
    lines = [without_clock(line) for line in conversation if not line.startswith("< info nps ")]
    while lines and not lines[-1].startswith("< bestmove "):
        lines.pop()
    return lines


def difference(conversation, expected):
    """Where the conversation departs from the expected one, or None."""
    said = as_recording(conversation)
    recorded = Path(expected).read_text().splitlines()
    for number, (one, other) in enumerate(zip(said, recorded), 1):
        if one != other:
            return f"line {number} is '{one}', in {expected} '{other}'"
    if len(said) != len(recorded):
        return f"{len(said)} lines, in {expected} {len(recorded)}"
    return None


def moves_of(expected):
    """The moves of the game, up to the last that the opponent made."""
    positions = [line for line in Path(expected).read_text().splitlines() if line.startswith("> position ")]
    return positions[-1].partition(" moves ")[2].split()


def options_not_sent(options, conversation):
    """Those that did not reach the engine before the first position; an adapter keeps default values to itself."""
    start = next((k for k, line in enumerate(conversation) if line.startswith("> position")), 0)
    before = conversation[:start]
    for name, value in options.items():
        default = re.compile(rf"< option name {name} type .* default {value}( |$)")
        if f"> setoption name {name} value {value}" not in before and not any(map(default.match, before)):
            yield f"{name}={value} was not sent"
