"""Runs commands in turns, and judges the best of each against its limit."""

import json
import os
import platform
import subprocess
import sys
import time
from dataclasses import asdict, dataclass, field
from pathlib import Path
from typing import Callable

Command = Callable[[int], list[str]]  # by the number of the round


@dataclass
class Usage:
    """Of a process and all that it waited for. The memory is the largest of them at its peak."""

    wall: float
    processor: float  # user and system
    memory: float  # MB


def run(command: list[str]) -> Usage:
    """The command must succeed."""
    start = time.monotonic()
    process = os.posix_spawnp(command[0], command, os.environ, file_actions=[
        (os.POSIX_SPAWN_OPEN, 0, "/dev/null", os.O_RDONLY, 0), (os.POSIX_SPAWN_OPEN, 1, "/dev/null", os.O_WRONLY, 0),
        (os.POSIX_SPAWN_DUP2, 1, 2)])  # fmt: skip
    _, status, usage = os.wait4(process, 0)
    wall = time.monotonic() - start
    if status != 0:
        sys.exit(f"failed with status {os.waitstatus_to_exitcode(status)}: {' '.join(command)[:2000]}")
    return Usage(wall, usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024)


def best(commands: list[Command], rounds: int) -> list[Usage]:
    """The best of several rounds for each command, each figure by itself; they take turns, so that a busy minute is
    shared."""
    results: list[list[Usage]] = [[] for _ in commands]
    for number in range(rounds):
        for index, make in enumerate(commands):
            results[index].append(run(make(number)))
    return [Usage(min(use.wall for use in of), min(use.processor for use in of), min(use.memory for use in of))
            for of in results]  # fmt: skip


@dataclass
class Limit:
    wall: float | None = None
    processor: float | None = None


@dataclass
class Comparison:
    what: str
    own: Usage
    peer: str
    of_peer: Usage
    limit: Limit

    @property
    def wall(self) -> float:
        return self.own.wall / self.of_peer.wall

    @property
    def processor(self) -> float:
        return self.own.processor / self.of_peer.processor

    @property
    def verdict(self) -> str:
        pairs = [(self.wall, self.limit.wall), (self.processor, self.limit.processor)]
        limited = [ratio <= limit for ratio, limit in pairs if limit is not None]
        return "TOO SLOW" if not all(limited) else "ok" if limited else ""


def show_limit(limit: float | None) -> str:
    return "" if limit is None else f"≤{limit:.2f}"


@dataclass
class Report:
    """What was measured, shown line by line and kept for a file."""

    rounds: int
    comparisons: list[Comparison] = field(default_factory=list)
    values: list[dict] = field(default_factory=list)
    lacking: list[str] = field(default_factory=list)

    def head(self) -> None:
        print(f"{'':26} {'own s':>7} {'cpu s':>7} {'MB':>6}   {'peer s':>7} {'cpu s':>7} {'MB':>6}   {'ratio':>5} {'limit':>6} "
              f"{'cpu':>5} {'limit':>6}", flush=True)  # fmt: skip

    def compare(self, what: str, own: Usage, peer: str, of_peer: Usage, limit: Limit | None = None) -> None:
        it = Comparison(what, own, peer, of_peer, limit or Limit())
        self.comparisons.append(it)
        print(f"{what:26} {own.wall:7.2f} {own.processor:7.2f} {own.memory:6.0f}   {of_peer.wall:7.2f} {of_peer.processor:7.2f} "
              f"{of_peer.memory:6.0f}   {it.wall:5.2f} {show_limit(it.limit.wall):>6} {it.processor:5.2f} "
              f"{show_limit(it.limit.processor):>6}  {it.verdict:8} {peer}", flush=True)  # fmt: skip

    def state(self, what: str, value: float, unit: str, limit: float | None = None) -> None:
        """A figure without a peer."""
        verdict = "" if limit is None else "ok" if value <= limit else "TOO MUCH"
        self.values.append({"what": what, "value": value, "unit": unit, "limit": limit, "verdict": verdict})
        print(f"{what}: {value:.4g} {unit}" + (f", at most {limit:g}: {verdict}" if verdict else ""), flush=True)

    def lack(self, what: str) -> None:
        self.lacking.append(what)
        print(f"NOT MEASURED: {what}", flush=True)

    def close(self, file: Path | None) -> int:
        """1 when a limit is missed, 77 when something that has one was not measured."""
        missed = [f"{it.what} to {it.peer}" for it in self.comparisons if it.verdict == "TOO SLOW"]
        missed += [value["what"] for value in self.values if value["verdict"] == "TOO MUCH"]
        print(f"missed: {', '.join(missed)}" if missed else "no limit is missed")
        if file:
            file.write_text(json.dumps(self.compose(missed), indent=1) + "\n")
        return 1 if missed else 77 if self.lacking else 0

    def compose(self, missed: list[str]) -> dict:
        rows = [asdict(it) | {"ratio": {"wall": it.wall, "processor": it.processor}, "verdict": it.verdict}
                for it in self.comparisons]  # fmt: skip
        return {"date": time.strftime("%Y-%m-%dT%H:%M:%SZ", time.gmtime()), "machine": describe_machine(),
                "rounds": self.rounds, "comparisons": rows, "values": self.values, "notMeasured": self.lacking,
                "missed": missed}  # fmt: skip


def describe_machine() -> dict:
    names = [line.split(":", 1)[1].strip() for line in Path("/proc/cpuinfo").read_text().splitlines()
             if line.startswith("model name")]  # fmt: skip
    memory = os.sysconf("SC_PHYS_PAGES") * os.sysconf("SC_PAGE_SIZE") / 2**30
    revision = subprocess.run(["git", "describe", "--always", "--dirty"], cwd=Path(__file__).parent, capture_output=True,
                              text=True)  # fmt: skip
    return {"processor": names[0] if names else platform.machine(), "cores": len(os.sched_getaffinity(0)),
            "memoryGB": round(memory, 1), "system": platform.platform(), "load": os.getloadavg()[0],
            "revision": revision.stdout.strip()}  # fmt: skip
