"""The notebook prints what stands in it, and the example for MPI the same for every number of
processes. Both are looked for in the folder that NUV_EXAMPLES names, or in the tree around this one.
"""

import importlib
import json
import os
import shutil
import subprocess
import sys
import xml.etree.ElementTree
from pathlib import Path

import pytest

EXAMPLES = Path(os.environ.get("NUV_EXAMPLES", Path(__file__).resolve().parents[2] / "examples/python"))


def shown(notebook):
    """What each cell has put out, as text: what it prints comes in one piece or in several, as time allows."""
    for cell in notebook["cells"]:
        outputs = cell.get("outputs", [])
        texts = (output.get("text") or output.get("data", {}).get("text/plain") or "" for output in outputs)
        if outputs:
            yield cell["source"], "".join("".join(text) for text in texts)


def test_the_notebook_prints_what_stands_in_it(tmp_path, monkeypatch):
    nbclient, nbformat = pytest.importorskip("nbclient"), pytest.importorskip("nbformat")
    pytest.importorskip("ipykernel")
    # A kernel of the Python that runs the tests, whatever those of the machine are.
    kernel = tmp_path / "kernels/tour"
    kernel.mkdir(parents=True)
    (kernel / "kernel.json").write_text(json.dumps({
        "argv": [sys.executable, "-m", "ipykernel_launcher", "-f", "{connection_file}"],
        "display_name": "tour", "language": "python"}))
    monkeypatch.setenv("JUPYTER_PATH", str(tmp_path))
    monkeypatch.setenv("IPYTHONDIR", str(tmp_path / "ipython"))
    notebook = nbformat.read(EXAMPLES / "tour.ipynb", as_version=4)
    before = list(shown(notebook))
    assert len(before) >= 10
    nbclient.NotebookClient(notebook, timeout=120, kernel_name="tour").execute()
    assert list(shown(notebook)) == before


def test_processes_of_mpi_find_the_same_whatever_their_number():
    pytest.importorskip("mpi4py")
    if shutil.which("mpirun") is None:
        pytest.skip("there is no mpirun")
    flags = ["--oversubscribe"] + (["--allow-run-as-root"] if os.geteuid() == 0 else [])
    printed = set()
    for number in ("1", "3"):
        run = subprocess.run(["mpirun", *flags, "-n", number, sys.executable, str(EXAMPLES / "mpi_batch.py")],
                             capture_output=True, text=True, timeout=240)
        assert run.returncode == 0, run.stderr
        printed.add(run.stdout)
    assert len(printed) == 1 and "20000 of 20000 proved" in printed.pop()


def test_the_picture_of_times_has_a_line_for_each_contender(tmp_path, monkeypatch, capsys):
    pytest.importorskip("scipy")
    monkeypatch.syspath_prepend(Path(__file__).resolve().parent.parent / "bench")
    picture = importlib.import_module("picture")
    monkeypatch.setattr(picture, "SIZES", (3, 6))
    for counts in ("ALONE", "TOGETHER"):
        monkeypatch.setattr(picture, counts, {3: 2, 6: 3})
    monkeypatch.setattr(sys, "argv", ["picture.py", str(tmp_path / "times.svg")])
    picture.main()
    printed = capsys.readouterr().out.splitlines()
    assert len(printed) == 5 and all(float(number) > 0 for line in printed[1:] for number in line.split()[-2:])
    drawn = xml.etree.ElementTree.parse(tmp_path / "times.svg").getroot()
    lines = [part for part in drawn if part.get("class", "").startswith("line ")]
    marks = [part for part in drawn if part.get("class", "").startswith("mark ")]
    assert len(lines) == 4 and len(marks) == 8
    # Who takes longer stands higher.
    heights = {line.get("class").split()[1]: float(line.get("d").split()[-1]) for line in lines}
    assert heights["single"] > heights["batch"] > heights["scipy"]
