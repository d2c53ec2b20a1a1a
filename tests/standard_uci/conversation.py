"""A conversation with ondrel-uci as a process, and the processes that belong to it."""
import os
import select
import signal
import subprocess
import time
from pathlib import Path

OPEN_GAME = "position startpos moves e2e4 e7e5 g1f3 b8c6 f1b5 a7a6 b5a4 g8f6 e1g1 f8e7"


class Fault(Exception):
    pass


def members_of(session):
    """The processes of a session that live, and the numbers of their parents."""
    for entry in os.listdir("/proc"):
        if entry.isdigit():
            try:
                state, parent, _, own_session = Path(f"/proc/{entry}/stat").read_text().rsplit(")", 1)[1].split()[:4]
            except (OSError, ValueError):
                continue
            if int(own_session) == session and state != "Z":
                yield int(entry), int(parent)


class Process:
    """One ondrel-uci, in a process group of its own, so that all that it starts can be found."""

    def __init__(self, engine, introduce=True, **streams):
        streams = {"stdin": subprocess.PIPE, "stdout": subprocess.PIPE} | streams
        self.process = subprocess.Popen([engine], start_new_session=True, **streams)
        self.pending = b""
        if introduce:
            self.say("uci")
            self.wait_for("uciok")

    def say(self, *lines):
        self.process.stdin.write("".join(line + "\n" for line in lines).encode("latin-1"))
        self.process.stdin.flush()

    def line(self, seconds=10.0):
        """The next line, or None if there is none in that time; a Fault at the end."""
        until = time.monotonic() + seconds
        while b"\n" not in self.pending:
            left = max(0.0, until - time.monotonic())
            if not select.select([self.process.stdout], [], [], left)[0]:
                return None
            data = os.read(self.process.stdout.fileno(), 65536)
            if not data:
                raise Fault("it has ended")
            self.pending += data
        line, self.pending = self.pending.split(b"\n", 1)
        return line.decode("latin-1")

    def wait_for(self, start, seconds=10.0):
        """All lines up to the first that begins so."""
        lines, until = [], time.monotonic() + seconds
        while True:
            line = self.line(until - time.monotonic())
            if line is None:
                raise Fault(f"no {start} within {seconds} s, after {lines[-3:]}")
            lines.append(line)
            if line.startswith(start):
                return lines

    def workers(self):
        return [number for number, parent in members_of(self.process.pid) if parent == self.process.pid]

    def waited_for_processor(self):
        """Milliseconds that it and this test were ready to run, and did not."""
        total = 0
        for number in (os.getpid(), self.process.pid):
            try:
                total += int(Path(f"/proc/{number}/schedstat").read_text().split()[1])
            except (OSError, IndexError):
                pass  # a system that does not tell
        return total / 1e6

    def kill_workers(self):
        """Kills them, and tells which they were."""
        workers = self.workers()
        for worker in workers:
            try:
                os.kill(worker, signal.SIGKILL)
            except ProcessLookupError:
                pass  # it was on its way out
        return workers

    def is_gone(self, seconds=10.0):
        """Whether it and all that it has started end in that time."""
        until = time.monotonic() + seconds
        while time.monotonic() < until:
            if self.process.poll() is not None and not list(members_of(self.process.pid)):
                return True
            time.sleep(0.01)
        return False

    def close(self):
        try:
            os.killpg(self.process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        self.process.wait()
        for stream in (self.process.stdin, self.process.stdout):
            if stream:
                try:
                    stream.close()
                except OSError:
                    pass
