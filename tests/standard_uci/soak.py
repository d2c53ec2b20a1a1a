#!/usr/bin/python3
"""Random commands, stops and kills for as long as is wished, against a model that knows which answers are due.

The model holds: each go gets one bestmove, none comes before its time or unasked, every move is legal where it was
asked for, isready and uci are answered at once, a bad position gets one complaint and changes nothing, a killed worker
is replaced, and nothing is left behind by a process that ends. A line that begins with FAILED and the last lines said
tell what broke; the seed makes it break again, as far as the clock allows.
"""
import argparse
import builtins
import collections
import os
import random
import signal
import sys
import time

from conversation import Fault, Process

SKIPPED = 77
builtins._ = lambda text: text  # PyChess reads it when it is imported
try:
    from pychess.Utils.const import CASTLE_KK
    from pychess.Utils.lutils.LBoard import LBoard
    from pychess.Utils.lutils.lmove import toAN
    from pychess.Utils.lutils.lmovegen import genAllMoves
except ImportError as reason:
    print("skipped: PyChess is not installed (Debian package pychess):", reason)
    sys.exit(SKIPPED)

START = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"
FENS = [START, "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1", "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1",
        "8/P7/8/8/8/8/2q4k/K7 w - - 0 1", "4k3/8/8/8/8/8/4P3/4K3 b - - 0 1", "7k/8/5K2/6Q1/8/8/8/8 w - - 0 1"]
BAD_POSITIONS = ["fen blah", "startpos moves e2e5", "fen 8/8/8/8/8/8/8/8 w - - 0 1", "", "startpos moves zzzz",
                 "fen 4k3/8/8/8/8/8/4r3/4K3 b - - 0 1", "fen " + "/" * 3000]
STRANGE = ["", "   ", "foo bar", "joho", "debug on", "debug off", "register later", "\x01\x02\xff", "A" * 100000,
           "setoption name nonsense value 3", "setoption name Hash value 7", "setoption", "value name"]
OPTIONS = ["Temperament value positional", "Temperament value dynamic", "MultiPV value 3", "MultiPV value 1", "Ponder value true",
           "Full info value false", "Full info value true", "Own book value false", "Clear memory", "Move Overhead value 5",
           "Clock value engine", "Clock value full", "Memory value false", "UCI_AnalyseMode value true", "Deep memory value false"]


def legal_moves(board):
    return {toAN(board, move, short=True, castleNotation=CASTLE_KK): move for move in genAllMoves(board)
            if not board.willLeaveInCheck(move)}


class Pending:
    """One go: the moves that may answer it, and since when the answer is due (None: not yet)."""

    def __init__(self, legal, due):
        self.legal, self.due = legal, due


class Soak:
    # How long a search that ends by itself may take, and anything else, on a machine that does other things too.
    PATIENCE = 20.0
    AT_ONCE = 5.0

    def __init__(self, engine, seed):
        self.engine, self.random = engine, random.Random(seed)
        self.counts = collections.Counter()
        self.log = collections.deque(maxlen=40)
        self.begin_process()

    # --- The process and what is said ---

    def begin_process(self):
        self.process = Process(self.engine)
        self.pending = None
        self.set_position(START, [])

    def set_position(self, fen, moves):
        board = LBoard()
        board.applyFen(fen)
        for move in moves:
            board.applyMove(legal_moves(board)[move])
        self.legal = set(legal_moves(board))

    def say(self, line):
        self.log.append("> " + line[:200])
        self.process.say(line)

    def hear(self, seconds):
        line = self.process.line(seconds)
        if line is not None:
            self.log.append("< " + line[:200])
            self.take(line)
        return line

    def take(self, line):
        """Holds a line against what is due."""
        if not line.startswith("bestmove"):
            return
        self.counts["bestmove"] += 1
        if self.pending is None:
            raise Fault(f"a move that nobody asked for: {line}")
        if self.pending.due is None:
            raise Fault(f"a move too soon: {line}")
        move = line.split()[1]
        if move not in self.pending.legal if self.pending.legal else move != "0000":
            raise Fault(f"not legal: {line}")
        self.pending = None

    def wait_for(self, start, seconds):
        until = time.monotonic() + seconds
        while (line := self.hear(max(0.0, until - time.monotonic()))) is not None:
            if line.startswith(start):
                return
        raise Fault(f"no {start} within {seconds} s")

    def hear_all(self):
        while self.hear(0.0) is not None:
            pass
        if self.pending and self.pending.due is not None and time.monotonic() - self.pending.due > self.PATIENCE:
            raise Fault("no move in time")

    def settle(self):
        """Waits for a move that is due."""
        if self.pending and self.pending.due is not None:
            self.wait_for("bestmove", self.PATIENCE)

    # --- What a client may do ---

    def do_ready(self):
        self.say("isready")
        self.wait_for("readyok", self.AT_ONCE)

    def do_uci(self):
        self.say("uci")
        self.wait_for("uciok", self.AT_ONCE)

    def do_position(self):
        fen, moves = self.random.choice(FENS), []
        board = LBoard()
        board.applyFen(fen)
        for _ in range(self.random.choice((0, 1, 2, 5, 30, 120))):
            legal = legal_moves(board)
            if not legal:
                break
            move = self.random.choice(sorted(legal))
            board.applyMove(legal[move])
            moves.append(move)
        start = "startpos" if fen == START else f"fen {fen}"
        self.say(f"position {start}" + (f" moves {' '.join(moves)}" if moves else ""))
        self.legal = set(legal_moves(board))

    def do_bad_position(self):
        self.say("position " + self.random.choice(BAD_POSITIONS))
        self.wait_for("info string", self.AT_ONCE)

    def do_go(self):
        choice = self.random.random()
        if self.pending and self.pending.due is None:
            self.pending.due = time.monotonic()  # the next go ends it
        self.settle_by(lambda: self.say(self.go_line(choice)))
        self.pending = Pending(self.legal, None if choice < 0.5 else time.monotonic())

    def settle_by(self, act):
        """Does what makes a pending move come, and hears it before anything else is due."""
        was_pending = self.pending is not None
        act()
        if was_pending:
            self.wait_for("bestmove", self.PATIENCE)

    def go_line(self, choice):
        if choice < 0.4:
            return "go infinite"
        if choice < 0.5:
            return "go ponder wtime 300 btime 300 winc 10 binc 10"
        return self.random.choice(("go movetime 5", "go movetime 60", "go depth 1", "go depth 3", "go depth 4", "go nodes 1", "go nodes 20000",
                                   "go wtime 50 btime 50", "go wtime 1 btime 1", "go wtime -5 btime -5", "go mate 1", "go movestogo 1 wtime 100 btime 100",
                                   "go btime 300 wtime 300 winc 5 binc 5 strange 3"))

    def do_stop(self):
        if self.pending and self.pending.due is None:
            self.pending.due = time.monotonic()
        self.say("stop")
        self.settle()

    def do_ponderhit(self):
        # Of a search without end it changes nothing.
        last = next((line for line in reversed(self.log) if line.startswith("> go")), "")
        if self.pending and self.pending.due is None and "ponder" in last:
            self.pending.due = time.monotonic()
        self.say("ponderhit")

    def do_option(self):
        self.say("setoption name " + self.random.choice(OPTIONS))

    def do_new_game(self):
        self.say("ucinewgame")

    def do_strange(self):
        self.say(self.random.choice(STRANGE))

    def do_kill_worker(self):
        self.process.kill_workers()

    def do_wait(self):
        until = time.monotonic() + self.random.choice((0.0, 0.005, 0.05, 0.3))
        while (left := until - time.monotonic()) > 0:
            self.hear(left)

    def do_end(self):
        way = self.random.choice(("quit", "end of input", "kill"))
        self.log.append("> (" + way + ")")
        if way == "quit":
            self.process.say("quit")
        elif way == "end of input":
            self.process.process.stdin.close()
        else:
            os.kill(self.process.process.pid, signal.SIGKILL)
        if not self.process.is_gone(self.AT_ONCE):
            raise Fault(f"something is left after {way}")
        if way != "kill" and self.process.process.returncode != 0:
            raise Fault(f"it ended with {self.process.process.returncode}")
        self.process.close()
        self.begin_process()

    WEIGHTS = {do_ready: 10, do_uci: 1, do_position: 20, do_bad_position: 4, do_go: 25, do_stop: 18, do_ponderhit: 6,
               do_option: 5, do_new_game: 3, do_strange: 5, do_kill_worker: 3, do_wait: 20, do_end: 0.5}

    def count_workers(self):
        """One works; those that were let go are soon gone."""
        until = time.monotonic() + self.AT_ONCE
        while len(workers := self.process.workers()) > 1:
            if time.monotonic() > until:
                raise Fault(f"{len(workers)} workers")
            time.sleep(0.02)

    def run(self, seconds):
        until, actions = time.monotonic() + seconds, list(self.WEIGHTS)
        told = time.monotonic()
        while time.monotonic() < until:
            action = self.random.choices(actions, self.WEIGHTS.values())[0]
            self.counts[action.__name__[3:]] += 1
            action(self)
            self.hear_all()
            self.count_workers()
            if time.monotonic() - told > 60:
                told = time.monotonic()
                print(f"{int(until - told)} s to go: {self.counts['go']} times go", flush=True)
        self.do_stop()
        self.process.close()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--engine", required=True)
    parser.add_argument("--seconds", type=float, default=20)
    parser.add_argument("--seed", type=int, default=1)
    args = parser.parse_args()
    soak = Soak(args.engine, args.seed)
    try:
        soak.run(args.seconds)
    except (Fault, BrokenPipeError) as fault:
        print(*soak.log, sep="\n")
        print(f"FAILED with seed {args.seed}: {fault}")
        soak.process.close()
        sys.exit(1)
    print("held:", ", ".join(f"{count} {name}" for name, count in sorted(soak.counts.items())))


if __name__ == "__main__":
    main()
