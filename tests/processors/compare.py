#!/usr/bin/env python3
"""Transforms a public manual with every processor, and compares each output with what the processor's own command line
writes. Generated ids are compared by where they recur, not by their letters. Exit 77: something outside is missing."""

import argparse
import re
import sys
import tempfile
from pathlib import Path

import peers

GENERATED = re.compile(rb"\b(?:d\d+e\d+|N[0-9A-F]{4,}|ID[A-Z0-9]{4,})")


def normalise(data: bytes) -> bytes:
    seen: dict[bytes, bytes] = {}
    return GENERATED.sub(lambda match: seen.setdefault(match[0], b"id%d" % len(seen)), data)


def run_own(processor, vlxslt: Path, inputs: Path, folder: Path, keys: str) -> None:
    configuration = folder / "vlxslt.toml"
    peers.write_configuration(configuration, [processor])
    target = folder / "own"
    target.mkdir()
    command = peers.own_command(vlxslt, configuration, [inputs], f"{target}/", keys) + ["--recursive"]
    log = peers.run(command + ["--extension", "dita"]).stdout
    (folder / "own.log").write_text(log)


def run_peer(processor, inputs: Path, topics: list[Path], folder: Path, keys: str) -> dict[Path, Path]:
    """Where the output of each topic is, written or not."""
    outputs = {topic: folder / "peer" / topic.relative_to(inputs) for topic in topics}
    if not processor.one_process:
        for topic, output in outputs.items():
            output.parent.mkdir(parents=True, exist_ok=True)
            peers.run(peers.peer_command(processor, topic, output, keys))
        return outputs
    for source in sorted({topic.parent for topic in topics}):
        target = folder / "peer" / source.relative_to(inputs)
        target.mkdir(parents=True, exist_ok=True)
        peers.run(peers.peer_command(processor, source, target, keys))
    # It adds an extension of its own choice.
    found = {topic: sorted(output.parent.glob(output.name + "*")) for topic, output in outputs.items()}
    return {topic: files[0] if files else outputs[topic] for topic, files in found.items()}


def compare(processor, vlxslt: Path, count: int | None, folder: Path) -> bool:
    inputs = folder / "in"
    topics = peers.copy_topics(inputs)
    if count and not processor.one_process:
        for topic in topics[count:]:
            topic.unlink()
        topics = topics[:count]
    keys = peers.write_keys(folder / "keydef.xml")
    run_own(processor, vlxslt, inputs, folder, keys)
    equal = failed = 0
    different = []
    for topic, peer in run_peer(processor, inputs, topics, folder, keys).items():
        own = folder / "own" / topic.relative_to(inputs)
        # An empty file is what a command line leaves when it fails.
        wrote = peer.exists() and peer.stat().st_size > 0
        if not own.exists() and not wrote:
            failed += 1
        elif own.exists() and wrote and normalise(own.read_bytes()) == normalise(peer.read_bytes()):
            equal += 1
        else:
            different.append(f"{topic.relative_to(inputs)}{'' if own.exists() else ' (ours failed)'}"
                             f"{'' if wrote else ' (theirs failed)'}")  # fmt: skip
    print(f"{processor.name}: {len(topics)} topics, {equal} equal, {len(different)} different, {failed} refused by both",
          flush=True)  # fmt: skip
    for line in different[:10]:
        print(f"  {line}")
    # The JDK's processor cannot compile every stylesheet; all others can this one.
    return not different and (equal > 0 or processor is peers.JDK)


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=Path, default=peers.PROJECT / "build/dev")
    parser.add_argument("--processor", action="append", help="only this one; may be repeated")
    parser.add_argument("--count", type=int, help="topics for processors whose command line takes one file at a time")
    parser.add_argument("--keep", type=Path, help="leave everything in this folder")
    arguments = parser.parse_args()
    if reason := peers.missing():
        print(f"SKIPPED: {reason}")
        return 77
    good = True
    for processor in peers.ALL:
        if arguments.processor and processor.name not in arguments.processor:
            continue
        if absent := [jar for jar in processor.jars if not jar.exists()]:
            print(f"{processor.name}: {absent[0]} is not there")
            good = False
            continue
        with tempfile.TemporaryDirectory(prefix="vlxslt-compare-") as temporary:
            folder = (arguments.keep or Path(temporary)) / processor.name.replace(" ", "-")
            folder.mkdir(parents=True)
            good = compare(processor, arguments.build / "bin/vlxslt", arguments.count, folder) and good
    return 0 if good else 1


if __name__ == "__main__":
    sys.exit(main())
