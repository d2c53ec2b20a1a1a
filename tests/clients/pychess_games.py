#!/usr/bin/python3
"""Whole games under a clock, with PyChess as the client and without its window.

PyChess judges the engine's moves, keeps the clock and ends the game by the rules; the opponent moves at random from a
seed. With --adapter PyChess speaks XBoard's protocol to the adapter, and the adapter speaks UCI to the engine.
"""
import argparse
import asyncio
import atexit
import builtins
import io
import logging
import os
import random
import shlex
import shutil
import sys
import tempfile
from pathlib import Path

from conversation import adapted_conversation, as_recording, difference, moves_of, options_not_sent

SKIPPED = 77
MAX_PLIES = 300
# The only first moves that the engine's own book answers as Black.
BOOK_FIRST_MOVES = ("e2e4", "d2d4", "g1f3", "b1c3", "b2b3", "g2g3")

# PyChess reads these when it is imported: its settings and files, and the adapters', are to be those of nobody, and
# gone afterwards.
home = tempfile.mkdtemp(prefix="pychess-")
atexit.register(shutil.rmtree, home, ignore_errors=True)
for variable in ("HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"):
    os.environ[variable] = home
os.makedirs(os.path.join(home, "pychess", "engines"))
builtins._ = lambda text: text

try:
    import gi
    gi.require_version("Gtk", "3.0")
    from gi.repository import GLib
    from pychess import VERSION
    from pychess.Players import engineNest
    from pychess.Players.Engine import Engine
    from pychess.Players.Player import GameEnded
    from pychess.Savers import fen, pgn
    from pychess.System import conf
    from pychess.System.Log import file_handler, logger
    from pychess.System.SubProcess import SubProcess
    from pychess.Utils import wait_signal
    from pychess.Utils.const import BLACK, BLACKWON, DRAW, DRAW_50MOVES, DRAW_ADJUDICATION, \
        DRAW_INSUFFICIENT, DRAW_REPETITION, DRAW_STALEMATE, WHITE, WON_MATE, reprResult
    from pychess.Utils.GameModel import GameModel
    from pychess.Utils.lutils.lmovegen import genAllMoves
    from pychess.Utils.Move import Move, parseAny
    from pychess.Utils.repr import reprReason_long
    from pychess.Utils.TimeModel import TimeModel
    from pychess.Variants.normal import NormalBoard
except (ImportError, ValueError) as reason:
    print("skipped: PyChess is not installed (Debian package pychess):", reason)
    sys.exit(SKIPPED)

# PyChess 1.0.3 is older than the message that Python 3.11 hands to every cancel().
cancel_without_message = wait_signal.cancel
wait_signal.cancel = lambda self, msg=None: cancel_without_message(self)

ENDS_BY_THE_RULES = (WON_MATE, DRAW_STALEMATE, DRAW_REPETITION, DRAW_50MOVES, DRAW_INSUFFICIENT, DRAW_ADJUDICATION)


class RecordedProcess(SubProcess):
    """The client's end of the pipe, with every line of both directions written to a file."""
    record = None

    def __init__(self, *args, **kwargs):
        super().__init__(*args, **kwargs)
        self.lines = []
        self.unfinished = ""
        self.connect("line", lambda _, line: self.note("<", line))

    def note(self, direction, line):
        self.lines.append((direction, line))
        self.record.write(f"{direction} {line}\n")

    def write(self, text):
        *whole, self.unfinished = (self.unfinished + text).split("\n")
        for line in whole:
            self.note(">", line)
        super().write(text)

    def moves_sent_by_engine(self):
        return sum(direction == "<" and line.startswith(("bestmove ", "move ")) for direction, line in self.lines)

    def conversation(self):
        return [f"{direction} {line}" for direction, line in self.lines]

    def complaints(self):
        return [line for _, line in self.lines if line.startswith("Illegal")]


class RandomMover(Engine):
    """A player who takes any legal move, at once; the first one from a list, if he is given one.

    With the moves of a whole game he plays his part of that.
    """

    def __init__(self, color, seed, first_moves, game):
        super().__init__()
        self.color = color
        self.random = random.Random(seed)
        self.first_moves = first_moves
        self.game = game
        self.setName("Random mover")

    async def makeMove(self, board1, move, board2):
        await asyncio.sleep(0)
        if board1.ply < len(self.game):
            return parseAny(board1, self.game[board1.ply])
        if self.first_moves and move is None:
            return parseAny(board1, self.random.choice(self.first_moves))
        legal = [m for m in genAllMoves(board1.board) if not board1.board.willLeaveInCheck(m)]
        if not legal:
            raise GameEnded
        return Move(self.random.choice(legal))

    def end(self, status, reason):
        pass

    kill = pause = resume = end


def run_glib_events(context, loop):
    """PyChess's clock lives in GLib, its engines in asyncio; the program itself joins the two in the same way."""
    while context.pending():
        context.iteration(False)
    loop.call_later(.01, run_glib_events, context, loop)


FIRST_MOVE_DEPTH = 3


def engine_options(args):
    """What the client is to set, by name."""
    if args.standard:
        return {"Own book": str(args.own_book).lower()} | dict(option.split("=") for option in args.option)
    # Without its book the engine searches its first move on a budget of its own, whatever the clock says: the depth
    # keeps that short.
    options = {"Own book": str(args.own_book).lower(), "Deep": str(FIRST_MOVE_DEPTH)}
    return options | dict(option.split("=") for option in args.option)


def engine_entry(args, adapter_log):
    """The engine as PyChess's list of engines would hold it."""
    entry = {"name": "Ondrel", "md5": None, "workingDirectory": home, "protocol": "xboard"}
    options = engine_options(args)
    if args.adapter == "polyglot":
        arguments = ["-noini", "-ec", shlex.quote(args.engine), "-log", "true", "-lf", str(adapter_log)]
        for name, value in options.items():
            arguments += ["-uci", f"{name}={value}"]
        return entry | {"command": args.adapter_path, "args": arguments}
    entries = [{"name": name, "type": "string", "default": None, "value": value} for name, value in options.items()]
    return entry | {"protocol": "uci", "command": args.engine, "options": entries}


def sides(model):
    """What PyChess's sentences on the end of a game have gaps for."""
    white, black = model.players
    winner, loser = (black, white) if model.status == BLACKWON else (white, black)
    return {"white": white, "black": black, "winner": winner, "loser": loser, "mover": model.curplayer}


async def play(args, number, color, position, log):
    """One game; returns what went wrong, or None."""
    model = GameModel(TimeModel(args.clock, args.gain))
    adapter_log = log.with_suffix(f".{args.adapter}.log")
    adapter_log.unlink(missing_ok=True)  # Polyglot appends to it
    entry = engine_entry(args, adapter_log)
    engine = await engineNest.discoverer.initPlayerEngine(entry, color, 20, NormalBoard, args.clock, args.gain)
    first_moves = BOOK_FIRST_MOVES if args.own_book and not args.standard and color == BLACK and not position else ()
    game = moves_of(args.expected) if args.expected else []
    opponent = RandomMover(1 - color, args.seed + number, first_moves, game)
    ended = asyncio.get_running_loop().create_future()
    model.connect("game_ended", lambda _, reason: ended.done() or ended.set_result(reason))
    model.connect("game_changed", lambda _, ply: len(model.moves) >= MAX_PLIES and model.end(DRAW, DRAW_ADJUDICATION))

    model.setPlayers([engine, opponent] if color == WHITE else [opponent, engine])
    if position:
        model.loadAndStart(io.StringIO(position), fen, 0, -1)
    else:
        model.start()
    try:
        reason = await asyncio.wait_for(ended, min(2 * args.clock, 40) + 10)
    except asyncio.TimeoutError:
        reason = None

    own_moves = [move for board, move in zip(model.boards, model.moves) if board.color == color]
    with open(log.with_suffix(".pgn"), "w") as file:
        pgn.save(file, model)
    clock = model.timemodel.getPlayerTime(color)
    engine_process = engine.engine
    end = "no end" if reason is None else reprReason_long[reason] % sides(model)
    print(f"{log.name}: {'White' if color == WHITE else 'Black'}, {len(model.moves)} plies, "
          f"{reprResult[model.status]}, {end}, {clock:.1f} s left", flush=True)
    wrong = None
    if reason not in ENDS_BY_THE_RULES:
        wrong = f"the game ended otherwise than by the rules: {end} {engine.invalid_move or ''}"
    elif not own_moves:
        wrong = "the engine made no move"
    elif engine_process.moves_sent_by_engine() != len(own_moves):
        wrong = f"{engine_process.moves_sent_by_engine()} replies to {len(own_moves)} questions"
    elif engine_process.complaints():
        wrong = "; ".join(engine_process.complaints())
    conversation = adapted_conversation(adapter_log) if args.adapter else engine_process.conversation()
    log.with_suffix(".txt").write_text("".join(line + "\n" for line in as_recording(conversation)))
    wrong = wrong or "; ".join(options_not_sent(engine_options(args), conversation))
    if args.expected and VERSION != args.recorded_with:
        print(f"not compared with a recording of PyChess {args.recorded_with}: this is {VERSION}")
    elif args.expected:
        wrong = wrong or difference(conversation, args.expected)
    model.terminate()
    engine_process.proc.stdin.close()  # an adapter may not heed the signal that PyChess sends
    try:
        await asyncio.wait_for(engine_process.proc.wait(), 5)
    except asyncio.TimeoutError:
        engine_process.proc.kill()
        wrong = wrong or "the engine did not end"
    return wrong


async def play_all(args):
    loop = asyncio.get_running_loop()
    run_glib_events(GLib.MainContext.default(), loop)
    logger.removeHandler(file_handler)
    logger.addHandler(logging.StreamHandler(sys.stdout))
    engineNest.SubProcess = RecordedProcess
    conf.set("book_depth_max", 0)  # PyChess would play the first moves of both sides from its own book
    conf.set("autoCallFlag", True)
    positions = [None]
    if args.positions:
        positions = [line for line in Path(args.positions).read_text().splitlines() if line]
    failures = 0
    for number in range(args.games):
        for index, position in enumerate(positions):
            log = Path(args.logs).resolve() / f"{args.title}-{number + 1}-{index + 1}.log"
            with open(log, "w") as RecordedProcess.record:
                color = WHITE if args.color == "white" else BLACK
                wrong = await play(args, number * len(positions) + index, color, position, log)
            if wrong:
                print(f"FAILED: {log}: {wrong}")
                failures += 1
    return failures


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--engine", required=True)
    parser.add_argument("--logs", required=True, help="directory for the protocol logs")
    parser.add_argument("--title", required=True, help="what the logs are called")
    parser.add_argument("--color", choices=("white", "black"), required=True)
    parser.add_argument("--own-book", action="store_true")
    parser.add_argument("--standard", action="store_true", help="the engine is ondrel-uci, which needs no precautions")
    parser.add_argument("--adapter", choices=("polyglot",))
    parser.add_argument("--positions", help="file of positions to start from, one FEN a line")
    parser.add_argument("--games", type=int, default=1, help="games from each position")
    parser.add_argument("--clock", type=int, default=5, help="seconds for the whole game")
    parser.add_argument("--gain", type=int, default=0, help="seconds more for each move")
    parser.add_argument("--option", action="append", default=[], help="an option of the engine to set, as name=value")
    parser.add_argument("--expected", help="the conversation that the game must repeat")
    parser.add_argument("--recorded-with", help="the version of PyChess that it is of")
    parser.add_argument("--seed", type=int, default=1)
    args = parser.parse_args()
    args.engine = os.path.abspath(args.engine)
    if args.adapter:
        args.adapter_path = shutil.which(args.adapter, path=os.environ.get("PATH", "") + ":/usr/games")
        if not args.adapter_path:
            print(f"skipped: {args.adapter} is not installed (Debian package {args.adapter})")
            sys.exit(SKIPPED)
    os.makedirs(args.logs, exist_ok=True)
    sys.exit(1 if asyncio.run(play_all(args)) else 0)


if __name__ == "__main__":
    main()
