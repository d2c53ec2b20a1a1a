#!/usr/bin/env python3
"""How the engine spends its clock: a table of searches under clocks from 1 ms to 30 minutes, in real time.

Each search has an engine of its own and a position of clock_positions.fen, in the form that waits for go. A line of the
table holds

  clock    what both sides have on the go line, in ms
  power    CPU power level and Time usage, where they are not the default ones
  men      on the board, without the kings
  deep     the ply that the clock and the men allow, as the first nominal depth; + if more depths may follow
  soft     past this no new depth is begun, in ms; -- where the search does not look at the clock
  hard     past this the search is broken off, in ms
  used     from the position line to the reply, in ms
  waited   how much of it the engine and this program spent waiting for the processor, which others had
  depth    of the last root move reported, and of the report at the end
  step     the longest depth, in ms; < if that is the one in which the search ended
  move     the longest root move, in ms; the first one has with it the pass before, which is not reported
  end      what ended the search: one (the only depth), only (no root move to report), soft, hard, mate, deepest
  verdict  ok, or what did not hold

A search holds if

  - the depths are those that the clock and the men allow;
  - no depth was begun past the soft limit, and the search did not end before it without a reason;
  - past the hard limit it took no longer than the longest root move before: the move under search is finished at a
    lower depth. Where the first move ends past the limit, since the pass before looks at no clock, it is the last one,
    or the last but one;
  - the reply came before the clock ran out, or within GRACE: a search cannot begin and end in a millisecond.

The time waited counts for neither of the last two: a busy machine makes a search longer, but not wrong.
"""
import argparse
import math
import os
import re
import subprocess
import sys
import threading
import time
from collections import namedtuple
from pathlib import Path

POSITIONS = Path(__file__).with_name("clock_positions.fen")
GRACE = 20  # ms

# --- The rules of the clock, as docs/INTERFACE.md tells them ---

# The base up to which the search is quick; the men up to which it goes deeper than by the clock alone: at 70 to 90 s,
# at 40 to 60 s, at 20 and 30 s by one step and by two, at 10 s.
Power = namedtuple("Power", "quick to_90 to_60 to_30 to_30_twice to_10")
POWERS = {"extreme": Power(10000, 15, 11, 17, 7, 9), "high": Power(20000, 13, 9, 15, 5, 7),
          "medium": Power(30000, 11, 7, 13, 3, 5), "low": Power(50000, 9, 5, 11, 1, 3)}
Options = namedtuple("Options", "power usage")
DEFAULT = Options("medium", 3)
Plan = namedtuple("Plan", "deep quick soft hard")


def depth_under_100_seconds(base, men, power):
    if base > 60000:
        return 9 if men <= power.to_90 else 7
    if base > 30000:
        return 9 if men <= power.to_60 else 7
    if base > 10000:
        return 9 if men <= power.to_30_twice else 7 if men <= power.to_30 else 5
    return 7 if men <= power.to_10 else 5


def plan(clock, men, options):
    """What the clock allows: the first nominal depth, whether it is the quick search, and the two limits."""
    digits, first = len(str(clock)), int(str(clock)[0])
    base, deep, quick = 300000, 9, digits <= 4
    if digits == 1:
        deep = 0
    elif digits == 2:
        deep = 1 if men <= 1 else 0
    elif digits == 3:
        deep = 3 if men <= 3 else 1
    elif digits == 4:
        deep = 5 if men <= 5 else 3
    elif digits <= 7:
        base = first * 10 ** (digits - 1)
    else:
        base = 10000000
    if digits == 5:
        deep = depth_under_100_seconds(base, men, POWERS[options.power])
        quick = base <= POWERS[options.power].quick
    share = men // (10 if options.usage == 9 else options.usage)
    return Plan(deep, quick, base // (2 * (5 * share + 25)), base // (share + 5))


DEEPEST = 24


def looks_at_clock(planned):
    return planned.deep >= 9


def goes_on(planned):
    return looks_at_clock(planned) and not planned.quick


# --- A search ---

REPORT = re.compile(r"info score (mate|cp) -?\d+ .*\bdepth (\d+) .*\bcurrmove .* time (\d+)")
FINAL = re.compile(r"info score (mate -?\d+|cp -?\d+) +depth (\d+) nodes")
# The shapes of a go line; the clock is always the first.
GO_LINES = ("go wtime {0} btime {0}\n", "go wtime {0} btime {0} winc 0 binc 0\n",
            "go movestogo 9 wtime {0} btime {0}\n", "go movestogo 40 btime {0} wtime {0}\n",
            "go btime {0} winc 0 wtime {0} binc 0\n")

Case = namedtuple("Case", "clock fen options go")
Search = namedtuple("Search", "used waited reports depth score reply")


def men_of(fen):
    return sum(x.isalpha() for x in fen.split()[0]) - 2


def waited_for_processor(*processes):
    """Milliseconds so far; where Linux does not tell, none."""
    try:
        return sum(int(Path(f"/proc/{x}/schedstat").read_text().split()[1]) for x in processes) / 1e6
    except OSError:
        return 0.0


def answers_until(engine, beginning):
    lines = []
    for line in engine.stdout:
        lines.append(line.rstrip("\n"))
        if line.startswith(beginning):
            break
    return lines


def search(path, case, patience):
    """Holds the conversation. An engine that has not replied after so many seconds is ended."""
    engine = subprocess.Popen([path], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, bufsize=1)
    watch = threading.Timer(patience, engine.kill)
    watch.start()
    lines, used, waited = [], 0, 0
    try:
        engine.stdin.write(f"uci\nsetoption name CPU power level value {case.options.power}\n"
                           f"setoption name Time usage value {case.options.usage}\nisready\n")
        answers_until(engine, "readyok")
        waited = -waited_for_processor("self", engine.pid)
        begin = time.perf_counter()
        engine.stdin.write(f"position fen {case.fen}\n{GO_LINES[case.go].format(case.clock)}")
        lines = answers_until(engine, "bestmove")
        used = (time.perf_counter() - begin) * 1000
        waited += waited_for_processor("self", engine.pid)
        engine.communicate("quit\n", timeout=10)
    except (BrokenPipeError, subprocess.TimeoutExpired):
        engine.kill()
    finally:
        watch.cancel()
        engine.wait()
    reports = [(int(x[2]), int(x[3])) for x in map(REPORT.match, lines) if x]
    final = FINAL.match(lines[-2]) if len(lines) > 1 else None
    reply = lines[-1] if final and lines[-1].startswith("bestmove ") else None
    return Search(used, max(waited, 0), reports, final and int(final[2]), final and final[1], reply)


# --- Its judgement ---

def depths_of(result):
    """Each depth that reported, with the time of its last report."""
    return {depth: at for depth, at in result.reports}


def durations(ends, used):
    """How long each of these took, one behind the other; the last one until the reply."""
    ends = [*ends[:-1], used]
    return [end - begin for begin, end in zip([0, *ends], ends)]


def depth_steps(result):
    return durations(list(depths_of(result).values()), result.used)


def move_steps(result):
    return durations([at for _, at in result.reports], result.used)


def is_own_mate(score):
    kind, number = score.split()
    return int(number) > (0 if kind == "mate" else 32500)


def end_of(planned, result):
    if looks_at_clock(planned) and result.used > planned.hard:
        return "hard"
    if not goes_on(planned):
        return "one"
    if is_own_mate(result.score):
        return "mate"
    if not result.reports:
        return "only"
    return "deepest" if result.reports[-1][0] == DEEPEST else "soft"


def depths_are_right(planned, depths):
    if not goes_on(planned):
        return all(depth == planned.deep + 1 for depth in depths)
    return depths == list(range(planned.deep + 1, planned.deep + 1 + 2 * len(depths), 2))


def keeps_soft_limit(planned, result):
    """A depth begins behind the last report of the one before."""
    begins = list(depths_of(result).values())[:-1]
    too_early = end_of(planned, result) == "soft" and result.used < planned.soft
    return all(at <= planned.soft for at in begins) and not too_early


def keeps_hard_limit(planned, result):
    ends = [at for _, at in result.reports]
    if not ends or ends[0] > planned.hard:
        return len(ends) <= 2
    before = max(end - begin for begin, end in zip([0, *ends], ends) if end <= planned.hard)
    return result.used - result.waited <= planned.hard + before + GRACE


def faults_of(case, planned, result):
    if result.reply is None:
        return ["no reply"]
    faults = []
    if not depths_are_right(planned, list(depths_of(result))):
        faults.append("depth")
    if goes_on(planned) and not keeps_soft_limit(planned, result):
        faults.append("soft limit")
    if end_of(planned, result) == "hard" and not keeps_hard_limit(planned, result):
        faults.append("hard limit")
    own = result.used - result.waited
    if own >= case.clock and own > GRACE:
        faults.append("clock ran out")
    return faults


# --- The cases ---

def read_positions():
    lines = POSITIONS.read_text().splitlines()
    return [line for line in lines if line and not line.startswith("#")]


def spread(count, least, most):
    """So many clocks from the least to the most, each the same factor longer than the one before."""
    factor = math.log(most / least) / max(count - 1, 1)
    return [round(least * math.exp(factor * k)) for k in range(count)]


OTHER_OPTIONS = (Options("medium", 1), Options("medium", 9), Options("extreme", 1), Options("low", 5),
                 Options("high", 2))


def cases_of(clocks, positions):
    """Every third search has other options; the positions are taken with a stride, so that kinds and clocks mix."""
    for k, clock in enumerate(clocks):
        options = OTHER_OPTIONS[k // 3 % len(OTHER_OPTIONS)] if k % 3 == 2 else DEFAULT
        yield Case(clock, positions[k * 20 % len(positions)], options, k % len(GO_LINES))


def quick_cases(positions):
    """Clocks at which the search is quick, and longer ones with options that make the limits act soon."""
    yield from cases_of(spread(24, 1, 39000), positions)
    few = [fen for fen in positions if men_of(fen) <= 7]
    many = [fen for fen in positions if men_of(fen) >= 27]
    for k in range(4):
        yield Case(20000 + 2999 * k, few[k], Options("extreme", 1), k)
    for k in range(2):
        yield Case(100000 + 12345 * k, many[-1 - k], Options("medium", 1), k)


HEAD = (f"{'clock':>8} {'power':>9} {'men':>3} {'deep':>4} {'soft':>6} {'hard':>7} {'used':>9} {'waited':>7} "
        f"{'depth':>6} {'step':>9}  {'move':>9} {'end':<7} {'verdict':<14} position")


def line_of(case, planned, result, verdict):
    power = "" if case.options == DEFAULT else f"{case.options.power} {case.options.usage}"
    if result.reply is None:
        return f"{case.clock:8} {power:>9} {men_of(case.fen):3} {'':67} {verdict:<14} {case.fen}"
    limits = (planned.soft, planned.hard) if looks_at_clock(planned) else ("--", "--")
    steps = depth_steps(result)
    depth = f"{max(depths_of(result), default='-')}/{result.depth}"
    return (f"{case.clock:8} {power:>9} {men_of(case.fen):3} {planned.deep:3}{'+' if goes_on(planned) else ' '} "
            f"{limits[0]:>6} {limits[1]:>7} {result.used:9.1f} {result.waited:7.1f} {depth:>6} {max(steps):9.1f}"
            f"{'<' if steps[-1] == max(steps) else ' '} {max(move_steps(result)):9.1f} {end_of(planned, result):<7} "
            f"{verdict:<14} {case.fen}")


# --- The summary ---

def summary(rows):
    """Lines about all searches, and about those of each number of digits."""
    print(f"{'clock of':>10} {'searches':>8} {'used, median':>12} {'most':>9} {'of the clock':>12} {'broken off':>10} "
          f"{'past hard':>9} {'clock ran out':>13}")
    for digits in sorted({len(str(row[0].clock)) for row in rows}):
        some = [row for row in rows if len(str(row[0].clock)) == digits and row[2].reply is not None]
        if not some:
            continue
        used = sorted(result.used for _, _, result, _ in some)
        share = max(result.used / case.clock for case, _, result, _ in some)
        past = [result.used - planned.hard for _, planned, result, _ in some if end_of(planned, result) == "hard"]
        out = sum(result.used >= case.clock for case, _, result, _ in some)
        print(f"{digits:3} digits {len(some):8} {used[len(used) // 2]:9.1f} ms {used[-1]:6.0f} ms {share:11.1%} "
              f"{len(past):10} {max(past, default=0):6.0f} ms {out:13}")


def run(path, cases):
    rows = []
    print(HEAD)
    for case in cases:
        planned = plan(case.clock, men_of(case.fen), case.options)
        result = search(path, case, 60 + 5 * planned.hard / 1000)
        faults = faults_of(case, planned, result)
        rows.append((case, planned, result, faults))
        print(line_of(case, planned, result, ", ".join(faults) or "ok"), flush=True)
    print()
    summary(rows)
    bad = sum(bool(faults) for *_, faults in rows)
    positions = {case.fen for case, *_ in rows}
    print(f"{len(rows)} searches, {len(positions)} positions: {len(rows) - bad} held, {bad} did not")
    return bad


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("engine")
    parser.add_argument("--searches", type=int, default=200)
    parser.add_argument("--longest", type=int, default=30 * 60 * 1000, help="the longest clock, in ms")
    parser.add_argument("--quick", action="store_true", help="thirty searches in some ten seconds")
    args = parser.parse_args()
    positions = read_positions()
    if args.quick:
        cases = quick_cases(positions)
    else:
        cases = cases_of(spread(args.searches, 1, args.longest), positions)
    sys.exit(1 if run(os.path.abspath(args.engine), cases) else 0)


if __name__ == "__main__":
    main()
