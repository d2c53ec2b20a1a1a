#!/usr/bin/python3
"""A match under XBoard on a screen in memory: the engine behind Polyglot against Fairy-Max, or against itself.

XBoard judges the moves and the clocks; the record of the games tells how each one ended.
"""
import argparse
import os
import re
import shlex
import shutil
import signal
import subprocess
import sys
import tempfile
from pathlib import Path

from conversation import adapted_conversation, as_recording, difference, options_not_sent

SKIPPED = 77
ENDS_BY_THE_RULES = re.compile(r"checkmate|stalemate|mates|material|repet|50.move|draw", re.IGNORECASE)
FAULTS = re.compile(r"illegal|false|forfeit|resign|time|exited|disconnect", re.IGNORECASE)


def adapter_options(args):
    """What the adapter is to set by itself."""
    if args.standard:
        return {"Own book": str(args.own_book).lower()}
    # Without its book the engine searches its first move on a budget of its own: the depth keeps that short.
    return {"Own book": str(args.own_book).lower(), "Deep": "3"}


def xboard_options(given):
    """XBoard knows a check by 0 and 1."""
    return ",".join(re.sub("=true$", "=1", re.sub("=false$", "=0", option)) for option in given)


def fairymax():
    """Where its addresses are random Fairy-Max crashes in every second game."""
    steady = ["setarch", "-R", "fairymax"]
    if shutil.which("setarch") and subprocess.run([*steady[:2], "true"], stderr=subprocess.DEVNULL).returncode == 0:
        return " ".join(steady)
    return "fairymax"


def chess_match(args, record, homes):
    """The command line of the whole match."""
    adapter = 'polyglot -noini -ec "%fcp" -log true -lf "%fd/polyglot.log"'
    for name, value in adapter_options(args).items():
        adapter += f' -uci "{name}={value}"'
    opponent = ["-scp", fairymax()]
    if args.opponent == "ondrel":
        opponent = ["-scp", shlex.quote(args.engine), "-sUCI", "-secondOptions", xboard_options(args.opponent_option)]
    session = ["-mps", str(args.session)] if args.session else ["-inc", "0"]
    return ["xvfb-run", "-a", "xboard",
            "-fcp", shlex.quote(args.engine), "-fd", homes[0], "-fUCI", "-firstOptions", xboard_options(args.option),
            "-sd", homes[1], *opponent, "-adapterCommand", adapter,
            "-matchGames", str(args.games), "-matchPause", "200",
            "-tc", f"{args.clock // 60}:{args.clock % 60:02}", *session,
            "-sgf", str(record), "-debug", "-nameOfDebugFile", str(record.with_suffix(".xboard.log")),
            "-testLegality", "true", "-autoflag", "-xpopup", "-xexit", "-saveSettingsOnExit", "false",
            "-soundProgram", "true"]


def run(command, home, log, seconds):
    """Runs it with everything it starts in a group of its own, so that nothing outlives the test."""
    environment = os.environ | {"HOME": home}
    process = subprocess.Popen(command, cwd=home, env=environment, stdin=subprocess.DEVNULL, stdout=log, stderr=log,
                               start_new_session=True)
    try:
        return process.wait(seconds)
    except subprocess.TimeoutExpired:
        return "out of time"
    finally:
        try:
            os.killpg(process.pid, signal.SIGTERM)
        except ProcessLookupError:
            pass


def games_of(record):
    """White, Black, the moves with XBoard's comment at the end, and the result of each game."""
    text = record.read_text() if record.exists() else ""
    for game in re.split(r"(?=^\[Event )", text, flags=re.MULTILINE):
        tags = dict(re.findall(r'^\[(\w+) "(.*)"\]$', game, flags=re.MULTILINE))
        if tags:
            yield tags["White"], tags["Black"], " ".join(game.split("\n\n", 1)[1].split()), tags["Result"]


SIDES = ("first", "second")  # as XBoard calls the engines


def play(args, record):
    """Plays the match; gives how XBoard ended, and the conversations of the two engines with their adapters."""
    for old in record.parent.glob(f"{args.title}.*"):
        old.unlink()
    conversations = []
    with tempfile.TemporaryDirectory(prefix="xboard-") as home, open(record.with_suffix(".out"), "w") as log:
        homes = [os.path.join(home, side) for side in SIDES]
        for directory in homes:
            os.mkdir(directory)
        seconds = args.games * (min(2 * args.clock, 30) + 8)
        ended = run(chess_match(args, record, homes), home, log, seconds)
        for side, directory in zip(SIDES, homes):
            adapter_log = Path(directory, "polyglot.log")
            if adapter_log.exists():
                shutil.copy(adapter_log, record.with_suffix(f".{side}.polyglot.log"))
                conversations.append(adapted_conversation(adapter_log))
    return ended, conversations


def opponent_died(args, record):
    """Fairy-Max has crashed, for which the engine cannot be blamed."""
    said = record.with_suffix(".out").read_text(errors="replace")
    return args.opponent == "fairymax" and re.search("second chess program|Fairy-Max.* exited", said)


def fairymax_overstepped(white, black, reason):
    """It cuts its time fine."""
    return (white.startswith("Fairy-Max") and reason.startswith("Black wins on time")
            or black.startswith("Fairy-Max") and reason.startswith("White wins on time"))


def answers_after(log):
    """Of each search that was not a ponder, or no longer: the seconds to its answer, and the clock that it was given."""
    started = clocks = None
    pondering = False
    for line in log.splitlines():
        stamp, _, said = line.partition(" ")
        if said.startswith("Adapter->Engine: go "):
            clocks = {name: int(value) / 1000 for name, value in re.findall(r"(wtime|btime) (-?\d+)", said)}
            pondering = "ponder" in said
            started = float(stamp)
        elif said.startswith("Adapter->Engine: ponderhit"):
            pondering = False
            started = float(stamp)
        elif said.startswith("Engine->Adapter: bestmove") and started is not None:
            if not pondering:
                yield float(stamp) - started, clocks
            started = None


def kept_to_its_clock(record):
    """Whether the engine has answered every go within the shorter of the two clocks: then what ran out went by between
    XBoard, its display and the adapter, as it does when other programs have the processor."""
    log = record.with_suffix(".first.polyglot.log")
    answers = list(answers_after(log.read_text(errors="replace"))) if log.exists() else []
    return answers and all(seconds <= max(min(clocks.values()), 0) for seconds, clocks in answers if clocks)


def faults_of_games(args, games, record):
    if len(games) != args.games:
        yield f"{len(games)} games instead of {args.games}"
    for white, black, text, result in games:
        reason = text.rpartition("{")[2]
        plies = len(re.findall(r"\{[^}]*/\d+[^}]*\}", text))
        print(f"{white} - {black}: {plies} plies, {{{reason}")
        by_the_rules = ENDS_BY_THE_RULES.search(reason) and not FAULTS.search(reason) and result != "*"
        if args.standard and "wins on time" in reason and kept_to_its_clock(record):
            print("the clock ran out, but not while the engine thought")
        elif not by_the_rules and not fairymax_overstepped(white, black, reason):
            yield f"a game ended otherwise than by the rules: {reason}"


def recorded_with_this_adapter(args, record):
    """Another Polyglot may put things another way."""
    log = record.with_suffix(".first.polyglot.log").read_text(errors="replace")
    this = re.search(r"PolyGlot (\S+)", log)[1]
    if this != args.recorded_with:
        print(f"not compared with a recording of Polyglot {args.recorded_with}: this is {this}")
    return this == args.recorded_with


def options_of(args, given):
    return adapter_options(args) | dict(option.split("=") for option in given)


def faults_of_conversations(args, record, conversations):
    given = [args.option, args.opponent_option][:1 if args.opponent == "fairymax" else 2]
    if len(conversations) != len(given):
        yield f"{len(conversations)} engines have a log"
    for side, conversation, options in zip(SIDES, conversations, given):
        said = record.with_suffix(f".{side}.txt")
        said.write_text("".join(line + "\n" for line in as_recording(conversation)))
        yield from options_not_sent(options_of(args, options), conversation)
        if args.expected and recorded_with_this_adapter(args, record):
            departs = difference(conversation, args.expected[SIDES.index(side)])
            if departs:
                yield f"{said}: {departs}"


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--engine", required=True)
    parser.add_argument("--logs", required=True, help="directory for the protocol logs")
    parser.add_argument("--title", required=True, help="what the logs are called")
    parser.add_argument("--opponent", choices=("fairymax", "ondrel"), default="fairymax")
    parser.add_argument("--own-book", action="store_true")
    parser.add_argument("--standard", action="store_true", help="the engine is ondrel-uci, which needs no precautions")
    parser.add_argument("--option", action="append", default=[], help="an option to set by XBoard, as name=value")
    parser.add_argument("--opponent-option", action="append", default=[], help="the same for the opponent")
    parser.add_argument("--games", type=int, default=2, help="the engine is White in the first, Black in the second")
    parser.add_argument("--clock", type=int, default=5, help="seconds for the whole game, or for a session")
    parser.add_argument("--session", type=int, help="moves in a session")
    parser.add_argument("--expected", action="append", help="the conversation that an engine must repeat")
    parser.add_argument("--recorded-with", help="the version of Polyglot that these are of")
    args = parser.parse_args()
    os.environ["PATH"] = os.environ.get("PATH", "") + ":/usr/games"
    needed = {"xvfb-run": "xvfb", "xauth": "xauth", "xboard": "xboard", "polyglot": "polyglot"}
    if args.opponent == "fairymax":
        needed["fairymax"] = "fairymax"
    missing = [package for program, package in needed.items() if not shutil.which(program)]
    if missing:
        print("skipped: not installed (Debian packages):", *missing)
        sys.exit(SKIPPED)

    record = Path(args.logs).resolve() / f"{args.title}.pgn"
    record.parent.mkdir(parents=True, exist_ok=True)
    for _ in range(3):
        ended, conversations = play(args, record)
        if not opponent_died(args, record):
            break
        print("Fairy-Max has crashed: the match begins again", flush=True)
    wrong = [] if ended == 0 else [f"xboard ended with: {ended}"]
    wrong += faults_of_games(args, list(games_of(record)), record)
    wrong += faults_of_conversations(args, record, conversations)
    debug = record.with_suffix(".xboard.log")
    if debug.exists() and "illegal move" in debug.read_text(errors="replace").lower():
        wrong.append(f"somebody spoke of an illegal move, see {debug}")
    for line in wrong:
        print("FAILED:", line)
    sys.exit(1 if wrong else 0)


if __name__ == "__main__":
    main()
