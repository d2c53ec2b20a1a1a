#!/usr/bin/env python3
"""Compares the speed of two builds of the engine on the conversations of the bench.

usage: tools/compare_speed.py OLD NEW [--rounds N] [--quick] [--bench PROGRAM] [--picture FILE.svg]

OLD and NEW are two builds of ondrel. Both play each conversation in turns, the order turned round from round to round;
what counts is the user time of the process. Every line that they write must be the same but for the clock's numbers: the
tree is the same, or the comparison means nothing, and the script ends with 1.

Shown are the medians by conversation and the ratio of old time to new: above 1, the new one is quicker. The last lines
give the median of the ratios over the conversations, and the ratio of the sums of the medians.
"""
import argparse
import re
import resource
import statistics
import subprocess
import sys
from pathlib import Path

# What the clock alone decides.
CLOCK = re.compile(r" time \d+|^info nps.*\n", flags=re.MULTILINE)
# Shorter conversations are counted in the sums, but their ratio is that of two starts of a process.
LEAST_SECONDS = 0.02


def conversations(bench, quick):
    shown = subprocess.run([bench, *(["quick"] if quick else []), "show"], capture_output=True, text=True, check=True)
    return [lines + "\n" for lines in shown.stdout.strip().split("\n\n")]


def user_time_of_children():
    return resource.getrusage(resource.RUSAGE_CHILDREN).ru_utime


def play(engine, lines):
    """User time in seconds and what the engine has written, without the clock's numbers."""
    before = user_time_of_children()
    run = subprocess.run([engine], input=lines + "quit\n", capture_output=True, text=True, check=True)
    return user_time_of_children() - before, CLOCK.sub("", run.stdout)


def name_of(lines):
    positions = [line for line in lines.splitlines() if line.startswith("position")]
    return positions[0].removeprefix("position ")[:60] if positions else "no position"


def measure(engines, games, rounds):
    times = [[[], []] for _ in games]
    for turn in range(rounds):
        for number, lines in enumerate(games):
            said = [None, None]
            for which in (0, 1) if turn % 2 == 0 else (1, 0):
                seconds, said[which] = play(engines[which], lines)
                times[number][which].append(seconds)
            if said[0] != said[1]:
                sys.exit(f"The lines differ in conversation {number + 1}:\n{lines}")
            print(f"\rround {turn + 1} of {rounds}, conversation {number + 1} of {len(games)} ", end="",
                  file=sys.stderr, flush=True)
    print("\r" + " " * 60 + "\r", end="", file=sys.stderr)
    return [[statistics.median(seconds) for seconds in pair] for pair in times]


def draw(file, games, ratios, middle):
    """A bar for each conversation, as long as its ratio; a line where both are alike, a dashed one at the median."""
    row, left, scale = 14, 380, 180
    width, height = left + int(scale * max(*ratios, 2)) + 60, row * len(ratios) + 40
    out = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" '
           'font-family="sans-serif" font-size="10">', f'<rect width="{width}" height="{height}" fill="white"/>',
           '<text x="10" y="16" font-size="12">Old time by new time, by conversation</text>']
    for number, (lines, ratio) in enumerate(zip(games, ratios)):
        y = 30 + row * number
        colour = "#4a7ab0" if ratio >= 1 else "#b0574a"
        out += [f'<text x="{left - 6}" y="{y + 8}" text-anchor="end">{name_of(lines)}</text>',
                f'<rect x="{left}" y="{y}" width="{scale * ratio:.1f}" height="{row - 4}" fill="{colour}"/>',
                f'<text x="{left + scale * ratio + 4:.1f}" y="{y + 8}">{ratio:.2f}</text>']
    for at, dash in ((1, ""), (middle, ' stroke-dasharray="4 3"')):
        out.append(f'<line x1="{left + scale * at:.1f}" x2="{left + scale * at:.1f}" y1="24" y2="{height - 10}" '
                   f'stroke="black"{dash}/>')
    Path(file).write_text("\n".join([*out, "</svg>", ""]))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("old")
    parser.add_argument("new")
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--quick", action="store_true", help="the quick conversations alone")
    parser.add_argument("--bench", help="the ondrel-bench whose conversations they are; else the one beside NEW")
    parser.add_argument("--picture", help="an SVG file to draw the ratios into")
    args = parser.parse_args()
    bench = args.bench or Path(args.new).resolve().parent / "ondrel-bench"
    games = conversations(bench, args.quick)
    medians = measure((args.old, args.new), games, args.rounds)
    for number, (lines, (old, new)) in enumerate(zip(games, medians)):
        ratio = f"{old / new:6.3f}" if new >= LEAST_SECONDS else "     -"
        print(f"{number + 1:3} {old:8.3f} s {new:8.3f} s {ratio}  {name_of(lines)}")
    long_enough = [(lines, old / new) for lines, (old, new) in zip(games, medians) if new >= LEAST_SECONDS]
    ratios = [ratio for _, ratio in long_enough]
    middle = statistics.median(ratios)
    print(f"Median of {len(ratios)} ratios: {middle:.3f}")
    print(f"Ratio of the sums: {sum(old for old, _ in medians) / sum(new for _, new in medians):.3f}")
    if args.picture:
        draw(args.picture, [lines for lines, _ in long_enough], ratios, middle)


if __name__ == "__main__":
    main()
