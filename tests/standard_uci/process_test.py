#!/usr/bin/env python3
"""ondrel-uci as a process: its workers, its streams, its promptness, the mates it tells.

  handshake    uciok comes at once
  latency      bestmove comes at once behind stop
  newgame      readyok comes at once behind ucinewgame too, and the worker is another
  worker       a killed worker is replaced, and the move still comes
  front        a killed front leaves nobody behind
  end          quit and the end of input end both processes, whenever they come
  streams      files for pipes, lines without end, a client that does not read
  mates        mates are told in moves, to both sides
  repetition   a new game repeats the searches of another
"""
import argparse
import os
import re
import signal
import statistics
import sys
import tempfile
import time
from pathlib import Path

from conversation import OPEN_GAME, Fault, Process

MATES = Path(__file__).resolve().parent.parent / "data" / "mates.epd"


def best(process, seconds=10.0):
    """The move and the lines before it."""
    lines = process.wait_for("bestmove ", seconds)
    return lines[-1].split()[1], lines[:-1]


def check_handshake(args):
    times = []
    for _ in range(20):
        began = time.monotonic()
        process = Process(args.engine)
        times.append((time.monotonic() - began) * 1000)
        process.close()
    print(f"uciok after {statistics.median(times):.1f} ms, {max(times):.1f} ms at most")
    return [] if statistics.median(times) < 20 else ["uciok comes late"]


def check_latency(args):
    """The time that everybody had to wait for the processor is not held against it."""
    process, times, waits = Process(args.engine), [], []
    for number in range(args.stops):
        process.say(OPEN_GAME, "go infinite")
        time.sleep((0.0, 0.001, 0.01, 0.05, 0.15)[number % 5])
        began, waited = time.monotonic(), process.waited_for_processor()
        process.say("stop")
        process.wait_for("bestmove ")
        times.append((time.monotonic() - began) * 1000)
        waits.append(min(times[-1], process.waited_for_processor() - waited))
    process.close()
    own = [one - wait for one, wait in zip(times, waits)]
    print(f"{args.stops} stops: bestmove after {statistics.median(times):.2f} ms, {max(times):.1f} ms at most; "
          f"without waiting {statistics.median(own):.2f} ms, {max(own):.1f} ms at most")
    return [] if statistics.median(own) < 5 and max(own) < 60 else ["bestmove comes late"]


def check_newgame(args):
    """Idle and during a search; as above, what everybody had to wait for is not held against it."""
    process, faults, own = Process(args.engine), [], []
    for number in range(40):
        searching = number % 2 == 1
        process.say(OPEN_GAME, "go infinite" if searching else "go depth 2")
        if searching:
            time.sleep(0.01)
        else:
            process.wait_for("bestmove ")
        before = process.workers()
        began, waited = time.monotonic(), process.waited_for_processor()
        process.say("ucinewgame", "isready")
        process.wait_for("readyok")
        time_taken = (time.monotonic() - began) * 1000
        own.append(time_taken - min(time_taken, process.waited_for_processor() - waited))
        if searching:
            process.say("stop")
            process.wait_for("bestmove ")
        process.say("isready")
        process.wait_for("readyok")
        if not set(process.workers()) - set(before):
            faults.append("the next game has the worker of the one before")
    process.close()
    print(f"readyok after {statistics.median(own):.2f} ms, {max(own):.1f} ms at most")
    return faults + ([] if statistics.median(own) < 5 and max(own) < 60 else ["readyok comes late"])


def check_worker(args):
    process = Process(args.engine)
    process.say(OPEN_GAME, "go movetime 800")
    for _ in range(3):
        time.sleep(0.15)
        process.kill_workers()
    move, _ = best(process)
    time.sleep(0.2)
    idle = process.kill_workers()
    process.say("isready")
    process.wait_for("readyok")
    process.say("go depth 4")
    _, lines = best(process)
    process.close()
    faults = [] if re.fullmatch("[a-h][1-8][a-h][1-8]", move) else [f"no move: {move}"]
    if len(idle) != 1:
        faults.append(f"{len(idle)} workers wait for a go")
    return faults + ([] if any(" depth 4 " in line for line in lines) else ["no search with a new worker"])


def check_front(args):
    faults = []
    for lines in ([], [OPEN_GAME], [OPEN_GAME, "go infinite"]):
        process = Process(args.engine)
        process.say("isready", *lines)
        process.wait_for("readyok")
        time.sleep(0.2)
        os.kill(process.process.pid, signal.SIGKILL)
        if not process.is_gone():
            faults.append(f"somebody is left after {lines}")
        process.close()
    return faults


def check_end(args):
    faults = []
    for lines in ([], [OPEN_GAME], [OPEN_GAME, "go infinite"], [OPEN_GAME, "go movetime 9000"],
                  [OPEN_GAME, "go ponder wtime 1000 btime 1000"], [OPEN_GAME, "go infinite", "stop", "go infinite"]):
        for by_quit in (True, False):
            process = Process(args.engine)
            process.say("isready", *lines)
            process.wait_for("readyok")
            time.sleep(0.1)
            if by_quit:
                process.say("quit")
            else:
                process.process.stdin.close()
            if not process.is_gone() or process.process.returncode != 0:
                faults.append(f"after {lines}: ended with {process.process.returncode}")
            said = process.pending + process.process.stdout.read()
            answers, asked = said.count(b"bestmove "), sum(line.startswith("go") for line in lines)
            if answers != asked:
                faults.append(f"{answers} answers to {asked} times go")
            process.close()
    return faults


def check_streams(args):
    faults = []
    with tempfile.TemporaryDirectory() as place:
        said, heard = Path(place, "in"), Path(place, "out")
        said.write_bytes(b"uci\r\n" + b"A" * 3000000 + b"\n" + bytes(range(256)) * 400 + b"\nisready")
        with said.open("rb") as source, heard.open("wb") as target:
            process = Process(args.engine, introduce=False, stdin=source, stdout=target)
            if not process.is_gone() or process.process.returncode != 0:
                faults.append("it does not end at the end of a file")
            process.close()
        lines = heard.read_text().splitlines()
        if "uciok" not in lines or lines[-1] != "readyok":
            faults.append(f"to files: {lines[-3:]}")
    with open(os.devnull, "rb") as nothing:
        process = Process(args.engine, introduce=False, stdin=nothing)
        if not process.is_gone():
            faults.append("it waits for what nobody will say")
        process.close()
    return faults + faults_without_reader(args)


def faults_without_reader(args):
    """A client that reads nothing for a while, and one that is gone."""
    faults = []
    process = Process(args.engine)
    process.say(*["uci"] * 2000, "isready")
    process.wait_for("readyok")
    process.say(*["uci"] * 2000, "quit")
    if not process.is_gone(20):
        faults.append("it does not leave a client that does not read")
    process.close()
    process = Process(args.engine)
    process.process.stdout.close()
    try:
        process.say(OPEN_GAME, "go depth 4", "isready", "go infinite", "quit")
    except BrokenPipeError:
        faults.append("it broke with its output")
    if not process.is_gone(20):
        faults.append("it does not leave a client that has left")
    process.process.stdout = None
    process.close()
    return faults


def told_mate(lines):
    scores = [re.search(r" score mate (-?\d+) ", line) for line in lines if " score " in line]
    return int(scores[-1][1]) if scores and scores[-1] else None


def check_mates(args):
    process, faults, told, suffered = Process(args.engine), [], 0, 0
    for line in MATES.read_text().splitlines():
        if line.startswith("#"):
            continue
        fen, _, moves = line.partition(";")
        process.say(f"position fen {fen.strip()}", f"go mate {moves}")
        move, lines = best(process)
        if told_mate(lines) is None:
            continue  # what the search leaves out it does not tell
        if told_mate(lines) != int(moves):
            faults.append(f"{line}: told {told_mate(lines)}")
            continue
        told += 1
        # The other side sees the rest of it coming.
        process.say(f"position fen {fen.strip()} moves {move}", "go depth 6")
        _, lines = best(process)
        if told_mate(lines) not in (None, 1 - int(moves)):
            faults.append(f"{line} after {move}: told {told_mate(lines)}")
        suffered += told_mate(lines) is not None
    process.close()
    print(f"{told} mates told to the one side, {suffered} to the other")
    return faults + ([] if told >= 50 and suffered >= 30 else ["too few"])


def check_repetition(args):
    process, games = Process(args.engine), []
    for _ in range(2):
        process.say("ucinewgame")
        game = []
        for position in ("position startpos", "position startpos moves e2e4 e7e5", OPEN_GAME):
            for depth in (2, 4, 6):
                process.say(position, f"go depth {depth}")
                move, lines = best(process, 60)
                told = [re.sub(" (?:nps|time) \\d+", "", line) for line in lines if " pv " in line]
                game.append((move, told))
        games.append(game)
        # What is broken off leaves nothing behind.
        process.say("go infinite")
        time.sleep(0.1)
        process.say("stop")
        process.wait_for("bestmove ")
    process.close()
    return [f"first {one}, then {other}" for one, other in zip(*games) if one != other]


CHECKS = {"handshake": check_handshake, "latency": check_latency, "newgame": check_newgame, "worker": check_worker,
          "front": check_front, "end": check_end, "streams": check_streams, "mates": check_mates,
          "repetition": check_repetition}


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("check", choices=CHECKS)
    parser.add_argument("--engine", required=True)
    parser.add_argument("--stops", type=int, default=100)
    args = parser.parse_args()
    try:
        faults = CHECKS[args.check](args)
    except Fault as fault:
        faults = [str(fault)]
    for fault in faults:
        print("FAILED:", fault)
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
