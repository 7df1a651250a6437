#!/usr/bin/env python3
"""Tests of the test tools themselves: each must be able to fail."""

import contextlib
import io
import os
import tempfile
import unittest
from unittest import mock

import check_includes
import check_texts
import run_cases


def write(root, files):
    for path, text in files.items():
        full = os.path.join(root, path)
        os.makedirs(os.path.dirname(full), exist_ok=True)
        with open(full, "w", encoding="utf-8") as file:
            file.write(text)


class MessageTexts(unittest.TestCase):
    TABLE = "STRINGTABLE\nBEGIN\n  18018 \"There is no \"\"active\"\" document.\"\n  18020 \"Cannot find %0 in file %1.\"\nEND\n"

    def test_a_text_of_the_client_in_the_host_is_found(self):
        with tempfile.TemporaryDirectory() as root:
            write(root, {"resources/XSLT.rc": self.TABLE, "host/a.cpp": 'auto a = "no such document";\n'})
            self.assertEqual(check_texts.check_tree(root), [])
            write(root, {"host/cli/b.cpp": '\nif (line == "There is no \\"active\\" document.")\n',
                         "host/c.h": '// "Cannot find" begins it\n'})
            self.assertEqual(check_texts.check_tree(root), ['host/cli/b.cpp:2: There is no "active" document.'])

    def test_a_table_without_texts_is_a_fault(self):
        with tempfile.TemporaryDirectory() as root:
            write(root, {"resources/XSLT.rc": "STRINGTABLE\nBEGIN\nEND\n"})
            self.assertNotEqual(check_texts.check_tree(root), [])


class IncludeRules(unittest.TestCase):
    CLEAN = {
        "kit/vdk.h": "#include <stddef.h>\n",
        "report/list.h": '#include "kit/vdk.h"\n',
        "processors/java/java.cpp": "#include <jni.h>\n",
        "catalogue/reader.cpp": '#include <xercesc/dom/DOM.hpp>\n#include "report/list.h"\n// #include "host/fronts/front.h"\n',
        "client/run.cpp": '#include "catalogue/reader.h"\n/* #include <jni.h>\n#include <jni.h> */\n',
        "host/fronts/front.h": '#include "kit/vdk.h"\n',
        "host/cli/main.cpp": '#include "host/fronts/front.h"\n',
        "host/desktop/frame.cpp": "#include <wx/wx.h>\n",
        "tests/unit/run_test.cpp": '#include "client/run.h"\n#include "host/fronts/front.h"\n',
        "report/CMakeLists.txt": "target_link_libraries(vlxslt_report PUBLIC vlxslt_kit) # not vlxslt_host\n",
    }
    FAULTS = {
        "kit/text.cpp": ('#include "report/list.h"\n', "kit/text.cpp:1: kit may not include report"),
        "report/log.cpp": ('#include "kit/vdk.h"\n#  include "client/run.cpp"\n',
                           "report/log.cpp:2: report may not include client"),
        "host/session.cpp": ('#include "report/list.h"\n', "host/session.cpp:1: host may not include report"),
        "host/cli/run.cpp": ('#include "host/desktop/frame.cpp"\n',
                             "host/cli/run.cpp:1: host/cli may not include host/desktop"),
        "client/dom.cpp": ("#include <xercesc/dom/DOM.hpp>\n", "client/dom.cpp:1: Xerces headers belong in catalogue/"),
        "dialogs/java.cpp": ("#include <jni.h>\n", "dialogs/java.cpp:1: jni.h belongs in processors/java/"),
        "host/window.cpp": ("#include <wx/frame.h>\n", "host/window.cpp:1: wx headers belong in host/desktop/"),
        "tests/unit/jni_test.cpp": ("#include <jni.h>\n", "tests/unit/jni_test.cpp:1: jni.h belongs in processors/java/"),
        "report/up.cpp": ('#include "../host/front.h"\n',
                          "report/up.cpp:1: includes name the path from the root, without .."),
        "host/fronts/near.cpp": ('#include "front.h"\n',
                                "host/fronts/near.cpp:1: write the path from the root: host/fronts/front.h"),
        "host/CMakeLists.txt": ("add_library(vlxslt_host a.cpp)\ntarget_link_libraries(vlxslt_host PUBLIC\n"
                                "  vlxslt_kit vlxslt_client)\n", "host/CMakeLists.txt:2: host may not link client"),
        "client/CMakeLists.txt": ("target_link_libraries(vlxslt_client PUBLIC XercesC::XercesC)\n",
                                  "client/CMakeLists.txt:1: Xerces-C is linked in catalogue/ only"),
    }

    def test_a_clean_tree_passes(self):
        with tempfile.TemporaryDirectory() as root:
            write(root, self.CLEAN)
            self.assertEqual(check_includes.check_tree(root), [])

    def test_every_fault_is_found_and_located(self):
        for path, (text, problem) in self.FAULTS.items():
            with self.subTest(path), tempfile.TemporaryDirectory() as root:
                write(root, self.CLEAN | {path: text})
                self.assertEqual(check_includes.check_tree(root), [problem])
                with mock.patch("sys.argv", ["check", root]), contextlib.redirect_stdout(io.StringIO()):
                    self.assertEqual(check_includes.main(check_includes.check_tree, "", ""), 1)


class Cases(unittest.TestCase):
    """The runner plays small cases whose command is the shell itself."""

    def play(self, transcript, files=None, *options):
        """The exit status, what was printed, and the transcript afterwards."""
        with tempfile.TemporaryDirectory() as root:
            write(root, {"cases/it/case.txt": transcript} | {f"cases/it/{path}": text for path, text in (files or {}).items()})
            printed = io.StringIO()
            printed.reconfigure = lambda **_: None
            with contextlib.redirect_stdout(printed), contextlib.redirect_stderr(printed):
                status = run_cases.main(["--build", root, "--cases", os.path.join(root, "cases"), *options, "it"])
            with open(os.path.join(root, "cases/it/case.txt"), encoding="utf-8") as file:
                return status, printed.getvalue(), file.read()

    def test_what_is_expected_passes(self):
        transcript = (
            "A word about it.\n\n  $ cat a.txt; echo oops >&2; exit 3\n  | one\n  |\n  | two\\r (esc)\n  ! oops\n  = 3\n\n"
            "  $ cat <<END\n  > at $WORK/x\n  > END\n  | at ${WORK}/x\n"
            "  $ printf 'open \\\\ end'\n  | open \\ end (no-eol)\n  $ date\n  | *:*:* (glob)\n"
            "  $ case $PWD in *' '*Leer*) echo blank;; esac; grep -c class_name vlxslt.toml\n  | blank\n  | 3\n")
        status, printed, _ = self.play(transcript, {"input/a.txt": "one\n\ntwo\r\n"})
        self.assertEqual((status, printed), (0, ""))

    def test_every_difference_fails(self):
        for transcript in (
            "  $ echo a\n  | b\n",
            "  $ echo a\n",
            "  $ true\n  | a\n",
            "  $ echo a >&2\n  | a\n",
            "  $ printf a\n  | a\n",
            "  $ exit 1\n",
            "  $ true\n  = 1\n",
            "  $ echo abc\n  | b*c (glob)\n",
            "  $ echo abc\n  | ab. (glob)\n",
            "  $ printf 'a\\r\\n'\n  | a\n",
            "  $ touch $TMPDIR/forgotten\n",
        ):
            with self.subTest(transcript):
                status, printed, _ = self.play(transcript)
                self.assertEqual(status, 1)
                self.assertIn("FAILED it", printed)

    def test_update_writes_what_came_and_keeps_what_matched(self):
        before = "Why.\n  $ printf 'a1\\nb\\n'; exit 4\n  | a* (glob)\n  | c\n"
        status, _, after = self.play(before, None, "--update")
        self.assertEqual(status, 1)
        self.assertEqual(after, "Why.\n  $ printf 'a1\\nb\\n'; exit 4\n  | a* (glob)\n  | b\n  = 4\n")

    def test_malformed_cases_are_refused(self):
        for transcript in ("only words\n", "  | a\n", "  what\n  $ true\n", "  $ a\n  | b\n  > c\n", "needs: moon\n  $ true\n"):
            with self.subTest(transcript):
                self.assertEqual(self.play(transcript)[0], 2)

    def test_missing_corpora_are_skipped_loudly(self):
        kept = os.environ.get("VLXSLT_CORPORA")
        root, run_cases.ROOT = run_cases.ROOT, "/nowhere/project"
        os.environ["VLXSLT_CORPORA"] = "/nowhere"
        try:
            status, printed, _ = self.play("needs: corpora\n  $ true\n")
        finally:
            run_cases.ROOT = root
            os.environ.pop("VLXSLT_CORPORA")
            if kept is not None:
                os.environ["VLXSLT_CORPORA"] = kept
        self.assertEqual(status, run_cases.SKIPPED)
        self.assertIn("SKIPPED it: missing the corpora", printed)


if __name__ == "__main__":
    unittest.main()
