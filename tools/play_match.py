#!/usr/bin/python3
"""Games between two engines under a clock, with PyChess's rules of chess as the referee.

usage: play_match.py --first COMMAND --second COMMAND (--clock 10+0.1 | --clock 40/5 | --move 0.1) [options]

Each opening is played with both colours, each game by fresh processes. Nothing is adjudicated but by the rules: a mate,
a stalemate, three repetitions, fifty moves, bare men, a flag, an illegal move, an engine that has ended. The last lines
count what happened; the exit status is 0 if the first engine lost no game on time, played no illegal move, never ended
by itself and left no process behind.

Engines speak UCI, or the protocol of XBoard if the command begins with 'xboard:'. Options: --first-option NAME=VALUE.
"""
import argparse
import builtins
import concurrent.futures
import os
import random
import select
import shlex
import signal
import subprocess
import sys
import time
from pathlib import Path

builtins._ = lambda text: text  # PyChess reads it when it is imported
try:
    from pychess.Utils.const import CASTLE_KK
    from pychess.Utils.lutils.LBoard import LBoard
    from pychess.Utils.lutils.lmove import toAN
    from pychess.Utils.lutils.lmovegen import genAllMoves
except ImportError as reason:
    sys.exit(f"PyChess is not installed (Debian package pychess): {reason}")

START = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"
WHITE, BLACK = 0, 1


# --- The referee ---

class Referee:
    def __init__(self, fen=START):
        self.fen, self.moves = fen, []
        self.board = LBoard()
        self.board.applyFen(fen)

    def legal(self):
        board = self.board
        return {toAN(board, move, short=True, castleNotation=CASTLE_KK): move for move in genAllMoves(board) if not board.willLeaveInCheck(move)}

    def play(self, text):
        """Plays the move; False if it is not legal."""
        move = self.legal().get(text)
        if move is None:
            return False
        self.board.applyMove(move)
        self.moves.append(text)
        return True

    def mover(self):
        return self.board.color

    def end(self):
        """The result and why, or None."""
        if not self.legal():
            if self.board.isChecked():
                return ("0-1" if self.mover() == WHITE else "1-0"), "mate"
            return "1/2-1/2", "stalemate"
        if self.board.repetitionCount() >= 3:
            return "1/2-1/2", "repetition"
        if self.board.fifty >= 100:
            return "1/2-1/2", "fifty moves"
        if self.is_bare():
            return "1/2-1/2", "bare men"
        return None

    def is_bare(self):
        men = [x for x in self.board.asFen().split()[0] if x.isalpha() and x not in "Kk"]
        return not men or (len(men) == 1 and men[0] in "BbNn")


# --- Engines ---

class EngineFailed(Exception):
    pass


class Engine:
    def __init__(self, name, command, options):
        self.name, self.options = name, options
        self.process = subprocess.Popen(shlex.split(command), stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=subprocess.DEVNULL, start_new_session=True)
        self.pending = b""

    def say(self, line):
        try:
            self.process.stdin.write(line.encode() + b"\n")
            self.process.stdin.flush()
        except OSError:
            raise EngineFailed("it has ended") from None

    def line(self, until):
        while b"\n" not in self.pending:
            left = until - time.monotonic()
            if left <= 0 or not select.select([self.process.stdout], [], [], left)[0]:
                return None
            data = os.read(self.process.stdout.fileno(), 65536)
            if not data:
                raise EngineFailed("it has ended")
            self.pending += data
        line, self.pending = self.pending.split(b"\n", 1)
        return line.decode(errors="replace").strip()

    def wait_for(self, start, seconds):
        until = time.monotonic() + seconds
        while (line := self.line(until)) is not None:
            if line.startswith(start):
                return line
        return None

    def close(self):
        """Ends it; tells whether anything of it was left behind."""
        try:
            self.say("quit")
            self.process.wait(5)
        except (EngineFailed, subprocess.TimeoutExpired):
            pass
        left = [number for number in processes_of_session(self.process.pid) if number != self.process.pid]
        try:
            os.killpg(self.process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        self.process.wait()
        for stream in (self.process.stdin, self.process.stdout):
            try:
                stream.close()
            except OSError:
                pass  # what it did not read before it ended
        return bool(left)


def processes_of_session(session):
    for entry in os.listdir("/proc"):
        if entry.isdigit():
            try:
                state, _, _, own_session = Path(f"/proc/{entry}/stat").read_text().rsplit(")", 1)[1].split()[:4]
            except (OSError, ValueError):
                continue
            if int(own_session) == session and state != "Z":
                yield int(entry)


def waited_for_processor(engine):
    """Seconds that the engine's first process and this one were ready to run, and did not."""
    total = 0
    for number in (os.getpid(), engine.process.pid):
        try:
            total += int(Path(f"/proc/{number}/schedstat").read_text().split()[1])
        except (OSError, IndexError):
            pass  # a system that does not tell
    return total / 1e9


class UciEngine(Engine):
    def prepare(self):
        self.say("uci")
        if self.wait_for("uciok", 10) is None:
            raise EngineFailed("no uciok")
        for name, value in self.options:
            self.say(f"setoption name {name} value {value}")
        self.say("ucinewgame")
        self.ready()

    def ready(self):
        self.say("isready")
        if self.wait_for("readyok", 10) is None:
            raise EngineFailed("no readyok")

    def begin_move(self, referee, clock):
        self.ready()
        start = "startpos" if referee.fen == START else f"fen {referee.fen}"
        self.say(f"position {start}" + (" moves " + " ".join(referee.moves) if referee.moves else ""))

    def ask(self, clock):
        self.say(clock.go_line())

    def move(self, until):
        line = self.wait_for("bestmove", until - time.monotonic())
        return line and line.split()[1]


class XBoardEngine(Engine):
    """Hears the moves one by one; only games from the start position."""

    def prepare(self):
        self.say("xboard")
        self.say("protover 2")
        self.wait_for("feature done=1", 1)
        for line in ("new", "easy", "post", "force"):
            self.say(line)
        self.heard = 0
        self.is_forced = True

    def begin_move(self, referee, clock):
        if self.heard == 0:
            self.say(clock.level_line())
        for move in referee.moves[self.heard:]:
            if not self.is_forced:
                self.say("force")
                self.is_forced = True
            self.say(move)
        self.heard = len(referee.moves) + 1  # its own comes next

    def ask(self, clock):
        own, other = clock.left[clock.mover], clock.left[1 - clock.mover]
        if clock.per_move is None:
            self.say(f"time {max(1, int(own * 100))}")
            self.say(f"otim {max(1, int(other * 100))}")
        self.say("go")
        self.is_forced = False

    def move(self, until):
        line = self.wait_for("move ", until - time.monotonic())
        return line and line.split()[1]


# --- The clock ---

class Clock:
    def __init__(self, text, per_move):
        self.per_move, self.period, self.increment = per_move, 0, 0.0
        base = per_move or 0.0
        if text and "/" in text:
            period, base = text.split("/")
            self.period, base = int(period), float(base)
        elif text:
            base, _, increment = text.partition("+")
            base, self.increment = float(base), float(increment or 0)
        self.base, self.left, self.made, self.mover = base, [base, base], [0, 0], WHITE

    def go_line(self):
        if self.per_move is not None:
            return f"go movetime {int(self.per_move * 1000)}"
        white, black = (max(1, int(left * 1000)) for left in self.left)
        line = f"go wtime {white} btime {black}"
        if self.increment:
            line += f" winc {int(self.increment * 1000)} binc {int(self.increment * 1000)}"
        if self.period:
            line += f" movestogo {self.period - self.made[self.mover] % self.period}"
        return line

    def level_line(self):
        if self.per_move is not None:
            return f"st {self.per_move}"
        minutes = f"{int(self.base) // 60}:{int(self.base) % 60:02}"
        return f"level {self.period} {minutes} {self.increment:g}"

    def spend(self, seconds):
        """False if the flag has fallen."""
        if self.per_move is not None:
            return seconds <= self.per_move
        self.left[self.mover] -= seconds
        if self.left[self.mover] < 0:
            return False
        self.left[self.mover] += self.increment
        self.made[self.mover] += 1
        if self.period and self.made[self.mover] % self.period == 0:
            self.left[self.mover] += self.base
        return True


# --- Games ---

class Game:
    def __init__(self, engines, clock, opening, forgiven, forgives_waiting):
        self.engines, self.clock, self.opening, self.forgiven = engines, clock, opening, forgiven
        self.forgives_waiting = forgives_waiting
        self.referee = Referee()
        self.longest = {engine.name: 0.0 for engine in engines}
        self.late = {engine.name: 0 for engine in engines}

    def play(self):
        """The result, why, and whose fault it was, if anybody's."""
        for move in self.opening:
            if not self.referee.play(move):
                raise ValueError(f"the opening has an illegal move: {move}")
        while (end := self.referee.end()) is None:
            self.clock.mover = self.referee.mover()
            engine = self.engines[self.clock.mover]
            fault = self.one_move(engine)
            if fault:
                return ("0-1" if self.clock.mover == WHITE else "1-0"), fault, engine.name
        return *end, None

    def one_move(self, engine):
        """What it did wrong, or None."""
        allowed = self.clock.left[self.clock.mover]
        try:
            engine.begin_move(self.referee, self.clock)
            began, waited = time.monotonic(), waited_for_processor(engine)
            engine.ask(self.clock)
            move = engine.move(began + allowed + 30)
        except EngineFailed as reason:
            return str(reason)
        used = time.monotonic() - began
        if self.forgives_waiting:
            used -= min(used, waited_for_processor(engine) - waited)
        self.longest[engine.name] = max(self.longest[engine.name], used)
        if move is None:
            return "no move"
        if not self.clock.spend(used):
            self.late[engine.name] += 1
            if engine.name not in self.forgiven:
                return f"time, {(used - allowed) * 1000:.0f} ms late"
            self.clock.left[self.clock.mover] = max(self.clock.left[self.clock.mover], 0.0) + self.clock.increment
        return None if self.referee.play(move) else f"illegal move {move}"


def engine_from(name, command, options):
    kind, command = (XBoardEngine, command[7:]) if command.startswith("xboard:") else (UciEngine, command)
    return kind(name, command, [option.split("=", 1) for option in options])


def play_one(args, opening, number):
    first_is_white = number % 2 == 0
    engines = [engine_from("first", args.first, args.first_option),
               engine_from("second", args.second, args.second_option)]
    seats = engines if first_is_white else engines[::-1]
    game = Game(seats, Clock(args.clock, args.move), opening, {"second"} if args.forgive_second else set(),
                args.forgive_waiting)
    try:
        for engine in engines:
            engine.prepare()
        result, why, culprit = game.play()
    except EngineFailed as reason:
        result, why, culprit = "*", str(reason), "?"
    orphans = [engine.name for engine in engines if engine.close()]
    return {"number": number + 1, "white": seats[0].name, "result": result, "why": why, "culprit": culprit,
            "moves": game.referee.moves, "longest": game.longest, "late": game.late, "orphans": orphans}


class Match:
    """Each game has a referee in a process of its own: a thread would have to wait for the other referees' thoughts."""

    def __init__(self, args, openings):
        self.args, self.openings, self.records = args, openings, []

    def run(self):
        with concurrent.futures.ProcessPoolExecutor(self.args.concurrency) as pool:
            games = [pool.submit(play_one, self.args, self.openings[number // 2 % len(self.openings)], number)
                     for number in range(self.args.games)]
            for game in concurrent.futures.as_completed(games):
                self.records.append(game.result())
                self.tell(self.records[-1])

    @staticmethod
    def points(record):
        """Of the first engine."""
        if record["result"] == "1/2-1/2":
            return 0.5
        return float((record["result"] == "1-0") == (record["white"] == "first")) if record["result"] != "*" else 0.0

    def tell(self, record):
        total = sum(map(self.points, self.records))
        print(f"game {record['number']}: first is {'White' if record['white'] == 'first' else 'Black'}, "
              f"{record['result']} by {record['why']}" + (f" of {record['culprit']}" if record["culprit"] else "") +
              f", {len(record['moves'])} half-moves; {total:g} of {len(self.records)}", flush=True)
        if self.args.log:
            with open(self.args.log, "a") as log:
                log.write(f'[Round "{record["number"]}"]\n[White "{record["white"]}"]\n[Result "{record["result"]}"]\n'
                          f'[Termination "{record["why"]}"]\n\n{" ".join(record["moves"])} {record["result"]}\n\n')

    def summary(self):
        points = [self.points(record) for record in self.records]
        faults = [record for record in self.records if record["culprit"] in ("first", "?")]
        orphans = sum("first" in record["orphans"] for record in self.records)
        print(f"first: {points.count(1.0)} won, {points.count(0.5)} drawn, {points.count(0.0)} lost: "
              f"{sum(points):g} of {len(points)}")
        for name in ("first", "second"):
            own = [record for record in self.records if record["culprit"] == name]
            print(f"{name}: {sum('time' in r['why'] for r in own)} lost on time, "
                  f"{sum('illegal' in r['why'] for r in own)} illegal moves, "
                  f"{sum('ended' in r['why'] or 'no ' in r['why'] for r in own)} ended or silent, "
                  f"{sum(r['late'][name] for r in self.records)} late moves, "
                  f"longest move {max(r['longest'][name] for r in self.records) * 1000:.0f} ms")
        print(f"orphans of first: {orphans}")
        return not faults and not orphans


def parse():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--first", required=True)
    parser.add_argument("--second", required=True)
    parser.add_argument("--first-option", action="append", default=[])
    parser.add_argument("--second-option", action="append", default=[])
    parser.add_argument("--clock", help="seconds + increment, or moves / seconds")
    parser.add_argument("--move", type=float, help="seconds for each move")
    parser.add_argument("--games", type=int, default=2)
    parser.add_argument("--openings", type=Path, help="a game's first moves on each line")
    parser.add_argument("--seed", type=int, default=1, help="of the choice of openings")
    parser.add_argument("--concurrency", type=int, default=2)
    parser.add_argument("--log", help="where the games are written")
    parser.add_argument("--forgive-waiting", action="store_true",
                        help="the wait for a processor that others use is not held against the engines")
    parser.add_argument("--forgive-second", action="store_true", help="its flag does not end a game")
    args = parser.parse_args()
    if (args.clock is None) == (args.move is None):
        parser.error("one of --clock and --move is needed")
    return args


def main():
    args = parse()
    openings = [[]]
    if args.openings:
        lines = [line.split("#")[0].split() for line in args.openings.read_text().splitlines()]
        openings = random.Random(args.seed).sample(lines, min(len(lines), (args.games + 1) // 2))
    match = Match(args, openings)
    match.run()
    sys.exit(0 if match.summary() else 1)


if __name__ == "__main__":
    main()
