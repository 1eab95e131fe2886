"""Every program in README.md prints what stands below it, and so do the examples in docstrings."""

import contextlib
import doctest
import importlib
import io
import re
import subprocess
import sys
from pathlib import Path

import pytest

import nuv

README = (Path(__file__).resolve().parent.parent / "README.md").read_text(encoding="utf-8")
PROGRAMS = re.findall(r"```python\n(.*?)```\n```text\n(.*?)```", README, flags=re.S)


def test_every_program_has_what_it_prints():
    assert len(PROGRAMS) == README.count("```python") > 0


@pytest.mark.parametrize("program, printed", PROGRAMS)
def test_programs_print_what_stands_below_them(program, printed):
    for package in re.findall(r"^import (?!nuv)(\w+)", program, flags=re.M):
        pytest.importorskip(package)
    output = io.StringIO()
    with contextlib.redirect_stdout(output):
        exec(compile(program, "README.md", "exec"), {"__name__": "readme"})
    assert output.getvalue() == printed


def public():
    """What a user calls: all that the package lists, and the doors to other packages."""
    yield from ((name, getattr(nuv, name)) for name in nuv.__all__ if name != "__version__")
    for module, name in (("nuv.pulp", "NUV"), ("nuv.dask", "solve_batch")):
        with contextlib.suppress(ImportError):
            yield f"{module}.{name}", getattr(importlib.import_module(module), name)


@pytest.mark.parametrize("name, subject", public())
def test_examples_in_docstrings(name, subject):
    found = doctest.DocTestFinder(exclude_empty=True).find(subject, name, globs={"nuv": nuv})
    assert sum(len(test.examples) for test in found) > 0, f"{name} has no example"
    for test in found:
        runner = doctest.DocTestRunner(optionflags=doctest.NORMALIZE_WHITESPACE)
        assert runner.run(test).failed == 0, test.name


def test_the_pages_of_the_interface_are_whole(tmp_path):
    for package in ("sphinx", "numpydoc", "pulp", "distributed"):
        pytest.importorskip(package)
    pages = Path(__file__).resolve().parent.parent / "docs"
    run = subprocess.run([sys.executable, "-m", "sphinx", "-W", "-q", "-b", "html", "-d", str(tmp_path / "trees"),
                          str(pages), str(tmp_path / "html")], capture_output=True, text=True)
    assert run.returncode == 0, run.stderr
    text = (tmp_path / "html/index.html").read_text(encoding="utf-8")
    # What the package lists is on the page, and each method of a model.
    for name in [f"nuv.{name}" for name in nuv.__all__ if name != "__version__"] + [
            f"nuv.Model.{name}" for name in ("solve", "variables", "add", "remove", "repair", "read")]:
        assert f'id="{name}"' in text, name
