#!/usr/bin/env python3
"""Measures whole runs, one process each and cold, against the processor's own command line in the same session, and
prints ratios. Exit 1 when one is worse than its limit, 77 when something outside is missing."""

import argparse
import os
import sys
import tempfile
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "tests/processors"))
import peers  # noqa: E402


def measure(command: list[str]) -> tuple[float, float, float]:
    """Seconds, the peak of memory in MB and the seconds of processor time; the command must succeed."""
    start = time.monotonic()
    process = os.posix_spawnp(command[0], command, os.environ, file_actions=[
        (os.POSIX_SPAWN_OPEN, 1, "/dev/null", os.O_WRONLY, 0), (os.POSIX_SPAWN_DUP2, 1, 2)])  # fmt: skip
    _, status, usage = os.wait4(process, 0)
    seconds = time.monotonic() - start
    if status != 0:
        sys.exit(f"failed with status {status}: {' '.join(command)}")
    return seconds, usage.ru_maxrss / 1024, usage.ru_utime + usage.ru_stime


def best(commands, rounds: int) -> list[tuple[float, float, float]]:
    """The best of several rounds for each command; they take turns, so that a busy minute is shared."""
    results = [[] for _ in commands]
    for number in range(rounds):
        for index, make in enumerate(commands):
            results[index].append(measure(make(number)))
    return [min(result) for result in results]


def report(what: str, own: tuple[float, ...], peer: tuple[float, ...], limit: float) -> bool:
    ratio = own[0] / peer[0]
    verdict = "ok" if ratio <= limit else "TOO SLOW"
    print(f"{what}: {own[0]:.2f} s and {own[1]:.0f} MB, peer {peer[0]:.2f} s and {peer[1]:.0f} MB; "
          f"ratio {ratio:.2f}, at most {limit:.2f}: {verdict}", flush=True)  # fmt: skip
    return ratio <= limit


def report_cost(what: str, own: tuple[float, ...], without: tuple[float, ...]) -> None:
    """Depends on the disk alone, so it has no limit."""
    print(f"{what}: {own[0]:.2f} s, processor {own[2]:.2f} s; without {without[0]:.2f} s and {without[2]:.2f} s; "
          f"ratio {own[0] / without[0]:.2f}, processor {own[2] / without[2]:.2f}", flush=True)  # fmt: skip


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=Path, default=peers.PROJECT / "build/release")
    parser.add_argument("--rounds", type=int, default=3)
    arguments = parser.parse_args()
    if reason := peers.missing():
        print(f"SKIPPED: {reason}")
        return 77
    vlxslt = arguments.build / "bin/vlxslt"
    with tempfile.TemporaryDirectory(prefix="vlxslt-bench-") as temporary:
        folder = Path(temporary)
        configuration = folder / "vlxslt.toml"
        peers.write_configuration(configuration, [peers.SAXON_12])
        unsynced = folder / "unsynced.toml"
        unsynced.write_text(configuration.read_text() + "\n[outputs]\nsync = false\n")
        keys = peers.write_keys(folder / "keydef.xml")
        # The peer's command line takes the files of one folder, so all topics go into one.
        flat = folder / "in"
        flat.mkdir()
        for topic in peers.copy_topics(folder / "tree"):
            topic.rename(flat / "-".join(topic.relative_to(folder / "tree").parts))
        topics = sorted(flat.iterdir())

        def own(inputs, name, configured=configuration):
            def make(number):
                (folder / f"own{name}{number}").mkdir()
                return peers.own_command(vlxslt, configured, inputs, f"{folder}/own{name}{number}/", keys)
            return make

        def peer(source, name):
            def make(number):
                target = folder / f"peer{name}{number}"
                target.mkdir()
                return peers.peer_command(peers.SAXON_12, source, target if source.is_dir() else target / "out", keys)
            return make

        # A user's second run: the class archive is there. The first is shown too.
        os.environ["XDG_CACHE_HOME"] = str(folder / "cache")
        first = measure(own(topics[:1], "first")(0))
        deadline = time.monotonic() + 60
        while not list((folder / "cache").rglob("*.jsa")) and time.monotonic() < deadline:
            time.sleep(0.5)
        print(f"the very first run, one topic, no class archive yet: {first[0]:.2f} s and {first[1]:.0f} MB")
        good = report("one topic", *best([own(topics[:1], "one"), peer(topics[0], "one")], arguments.rounds), 1.0)
        good &= report(f"{len(topics)} topics", *best([own(topics, "all"), peer(flat, "all")], arguments.rounds), 0.55)
        report_cost(f"{len(topics)} topics with their sync to the disk",
                    *best([own(topics, "synced"), own(topics, "unsynced", unsynced)], arguments.rounds))  # fmt: skip
        request = [str(vlxslt), "--config", str(configuration), "call", "XSLTGetTrScenarioFile nothing"]
        seconds = min(measure(request)[0] for _ in range(10))
        print(f"a request that transforms nothing: {seconds * 1000:.0f} ms, at most 50 ms")
        return 0 if good and seconds < 0.05 else 1


if __name__ == "__main__":
    sys.exit(main())
