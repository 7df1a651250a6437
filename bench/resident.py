#!/usr/bin/env python3
"""Measures commands in the workers of a resident server, whole processes of the client, against the processors' own
command lines in the same session, and prints ratios. Exit 1 when one is worse than its limit, 77 when something outside
is missing."""

import argparse
import os
import sys
import tempfile
from pathlib import Path

import measure

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "tests/processors"))
import peers  # noqa: E402


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=Path, default=peers.PROJECT / "build/release")
    parser.add_argument("--rounds", type=int, default=5)
    arguments = parser.parse_args()
    if reason := peers.missing():
        print(f"SKIPPED: {reason}")
        return 77
    vlxslt = arguments.build / "bin/vlxslt"
    with tempfile.TemporaryDirectory(prefix="vlxslt-bench-") as temporary:
        folder = Path(temporary)
        configuration = folder / "vlxslt.toml"
        peers.write_configuration(configuration, [peers.SAXON_12])
        keys = peers.write_keys(folder / "keydef.xml")
        flat = folder / "in"
        flat.mkdir()
        for topic in peers.copy_topics(folder / "tree"):
            topic.rename(flat / "-".join(topic.relative_to(folder / "tree").parts))
        topics = sorted(flat.iterdir())
        os.environ |= {"XDG_CACHE_HOME": str(folder / "cache"), "XDG_RUNTIME_DIR": temporary,
                       "XML_CATALOG_FILES": str(peers.CATALOG)}  # fmt: skip

        def own(inputs, name):
            def make(number):
                return [*peers.own_command(vlxslt, configuration, inputs, f"{folder}/{name}{number}/", keys), "--connect"]
            return make

        def xsltproc(number):
            return ["xsltproc", "--stringparam", "KEYREF-FILE", keys, "-o", str(folder / f"x{number}.html"),
                    str(peers.STYLESHEET), str(topics[0])]  # fmt: skip

        def saxon(number):
            (folder / f"saxon{number}").mkdir()
            return peers.peer_command(peers.SAXON_12, flat, folder / f"saxon{number}", keys)

        report = measure.Report(arguments.rounds)
        try:
            first = measure.run(own(topics[:1], "first")(0))
            report.state("the first request, which starts server, worker and Java", first.wall, "s")
            # Warm as after some requests of a day.
            for number in range(5):
                measure.run(own(topics[:1], "warm")(number) + ["--yes"])
            measure.run(own(topics, "warm-all")(0))
            report.head()
            one, of_peer = measure.best([own(topics[:1], "one"), xsltproc], 4 * arguments.rounds)
            report.compare("1 topic, warm", one, "xsltproc", of_peer, measure.Limit(wall=1.0))
            everything, of_peer = measure.best([own(topics, "all"), saxon], arguments.rounds)
            report.compare(f"{len(topics)} topics, warm", everything, "Saxon 12's command line", of_peer,
                           measure.Limit(wall=0.1))  # fmt: skip
        finally:
            measure.run([str(vlxslt), "serve", "--stop"])
        return report.close(None)


if __name__ == "__main__":
    sys.exit(main())
