#!/usr/bin/python3
"""A match under XBoard on a screen in memory: the engine behind Polyglot against Fairy-Max.

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

SKIPPED = 77
ENDS_BY_THE_RULES = re.compile(r"checkmate|stalemate|mates|material|repet|50.move|draw", re.IGNORECASE)
FAULTS = re.compile(r"illegal|false|forfeit|resign|time|exited|disconnect", re.IGNORECASE)


def chess_match(args, record, home):
    """The command line of the whole match."""
    log = record.with_suffix(".polyglot.log")
    # Without its book the engine searches its first move on a budget of its own: the depth keeps that short.
    own_book = str(args.own_book).lower()
    adapter = f'polyglot -noini -ec "%fcp" -log true -lf "{log}" -uci "Own book={own_book}" -uci Deep=3'
    return ["xvfb-run", "-a", "xboard",
            "-fcp", shlex.quote(args.engine), "-fd", home, "-fUCI", "-adapterCommand", adapter, "-scp", "fairymax",
            "-matchGames", str(args.games), "-matchPause", "200", "-tc", f"0:{args.clock:02}", "-inc", "0",
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


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--engine", required=True)
    parser.add_argument("--logs", required=True, help="directory for the protocol logs")
    parser.add_argument("--title", required=True, help="what the logs are called")
    parser.add_argument("--own-book", action="store_true")
    parser.add_argument("--games", type=int, default=2, help="the engine is White in the first, Black in the second")
    parser.add_argument("--clock", type=int, default=5, help="seconds for the whole game")
    args = parser.parse_args()
    os.environ["PATH"] = os.environ.get("PATH", "") + ":/usr/games"
    needed = {"xvfb-run": "xvfb", "xauth": "xauth", "xboard": "xboard", "polyglot": "polyglot", "fairymax": "fairymax"}
    missing = [package for program, package in needed.items() if not shutil.which(program)]
    if missing:
        print("skipped: not installed (Debian packages):", *missing)
        sys.exit(SKIPPED)

    record = Path(args.logs).resolve() / f"{args.title}.pgn"
    record.parent.mkdir(parents=True, exist_ok=True)
    for old in record.parent.glob(f"{args.title}.*"):
        old.unlink()
    with tempfile.TemporaryDirectory(prefix="xboard-") as home, open(record.with_suffix(".out"), "w") as log:
        ended = run(chess_match(args, record, home), home, log, args.games * (2 * args.clock + 8))
    games = list(games_of(record))
    wrong = [] if ended == 0 else [f"xboard ended with: {ended}"]
    if len(games) != args.games:
        wrong.append(f"{len(games)} games instead of {args.games}")
    for white, black, text, result in games:
        reason = text.rpartition("{")[2]
        plies = len(re.findall(r"\{[^}]*/\d+[^}]*\}", text))
        print(f"{white} - {black}: {plies} plies, {{{reason}")
        if not ENDS_BY_THE_RULES.search(reason) or FAULTS.search(reason) or result == "*":
            wrong.append(f"a game ended otherwise than by the rules: {reason}")
    debug = record.with_suffix(".xboard.log")
    if debug.exists() and "illegal move" in debug.read_text(errors="replace").lower():
        wrong.append(f"somebody spoke of an illegal move, see {debug}")
    for line in wrong:
        print("FAILED:", line)
    sys.exit(1 if wrong else 0)


if __name__ == "__main__":
    main()
