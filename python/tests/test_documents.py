"""Every program in README.md prints what stands below it, and so do the examples in docstrings."""

import contextlib
import doctest
import io
import re
from pathlib import Path

import pytest

import nuv

README = (Path(__file__).resolve().parent.parent / "README.md").read_text(encoding="utf-8")
PROGRAMS = re.findall(r"```python\n(.*?)```\n```text\n(.*?)```", README, flags=re.S)


def test_every_program_has_what_it_prints():
    assert len(PROGRAMS) == README.count("```python") > 0


@pytest.mark.parametrize("program, printed", PROGRAMS)
def test_programs_print_what_stands_below_them(program, printed):
    output = io.StringIO()
    with contextlib.redirect_stdout(output):
        exec(compile(program, "README.md", "exec"), {"__name__": "readme"})
    assert output.getvalue() == printed


def test_examples_in_docstrings():
    examples = 0
    for name in nuv.__all__:
        subject = getattr(nuv, name)
        finder = doctest.DocTestFinder(exclude_empty=True)
        for test in finder.find(subject, name, globs={"nuv": nuv}):
            runner = doctest.DocTestRunner(optionflags=doctest.NORMALIZE_WHITESPACE)
            examples += len(test.examples)
            assert runner.run(test).failed == 0, test.name
    assert examples >= 3
