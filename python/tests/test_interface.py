# SPDX-License-Identifier: MIT
"""What the package offers is what the header and the library have, and says so."""

from __future__ import annotations

import doctest
import importlib
import inspect
import os
import pickle
import re
import shutil
import subprocess
import sys
from importlib.util import find_spec
from pathlib import Path
from typing import Any

import header
import numpy as np
import pytest
from generator.operations import method_names, operations

import sigpak as sp
from sigpak import _c, _library

MODEL = header.load()
TREE = Path(__file__).resolve().parents[2]


def test_prototypes_are_all_that_the_library_exports() -> None:
    listed = subprocess.run(
        ["nm", "-D", "--defined-only", os.environ["SIGPAK_LIBRARY"]], check=True, text=True, capture_output=True
    )
    exported = set(re.findall(r" T (dspf?[a-z]*_\w+)", listed.stdout))
    assert exported == {symbol for entry in _c.PROTOTYPES.values() for symbol in (entry[0], entry[2])}
    assert exported == {function.name for function in MODEL.functions}


@pytest.mark.parametrize(
    ("source", "message"),
    [
        ("SIGPAK_API int32_t dsp_a(dsp_vec *v);\n", "no twin"),
        ("SIGPAK_API int32_t dsp_a(dsp_vec *v);\nSIGPAK_API int32_t dspf_a(dspf_vec *w);\n", "no twins"),
        ("enum { DSP_A_B = 1, DSP_A_C };\nint x;\n", "line"),
        ("/* dsp_a (x) */\nstatic int dsp_b(void);\n", "line 4"),
    ],
)
def test_what_the_reader_does_not_understand_is_an_error(source: str, message: str) -> None:
    with pytest.raises(header.NotUnderstood, match=message):
        header.parse("/* Conventions, said once */\n\n" + source)


def test_blocks_are_cut_into_formula_arguments_and_tables() -> None:
    hist = MODEL.block_of("dspfs_hist").comment
    assert hist.summary.startswith("result[k] = how many samples")
    entries = {piece.names: piece for piece in hist.pieces if isinstance(piece, header.Entry)}
    assert list(entries) == [("width",), ("bins",), ("result",)]
    assert MODEL.block_of("dsph_dft").comment.summary.endswith("(Welch, IEEE Trans. Audio Electroacoust. 15, 1967)")
    fir = MODEL.block_of("dspc_fir").comment
    table = next(piece for piece in fir.pieces if isinstance(piece, header.Verbatim))
    assert len(table.lines) == 13 and table.lines[-1].startswith("10  ramp 2 |f|")
    assert [entry.names[0] for entry in MODEL.conventions][:3] == ["Twins", "Families", "Status"]
    assert {e.prefix for e in MODEL.enumerations} >= {"DSP_WINDOW", "DSP_WINDOW_FLAG", "DSP_PEAK", "DSP_CORR"}


def test_every_operation_is_a_method_with_the_text_of_the_header() -> None:
    names = method_names(MODEL)
    assert len(names) > 140 and len(set(names.values())) == len(names)
    for operation in operations(MODEL):
        name = names.get(operation.twins.double.name)
        if name is None:
            continue
        text = " ".join((inspect.getdoc(getattr(sp.Vec, name)) or "").split())
        words = [piece.text for piece in operation.block.comment.pieces if isinstance(piece, header.Prose)]
        assert all(sentence in text for prose in words for sentence in re.split(r"(?<=[.;]) ", prose)[:1]), name
        sections = re.findall(r"(Parameters|Returns|Notes) -{5,}", text)
        assert sections == ["Parameters", "Returns", "Notes"][len(operation.declared) == 0 :], name


def test_enumerations_have_the_numbers_of_the_header() -> None:
    for enumeration in MODEL.enumerations:
        kind = next(
            k
            for k in map(sp.__dict__.get, sp.enums.__all__)
            if enumeration.members[-1].name.endswith(list(k.__members__)[-1])
            and len(k.__members__) == len(enumeration.members)
        )
        for member in enumeration.members:
            assert kind[member.name[len(enumeration.prefix) + 1 :]] == member.value


def test_everything_is_exported_once() -> None:
    assert len(sp.__all__) == len(set(sp.__all__))
    assert all(getattr(sp, name, None) is not None for name in sp.__all__)
    assert sp.__version__.startswith(f"{_c.VERSION // 100}.{_c.VERSION % 100}.")


@pytest.mark.parametrize("module", sorted(path.stem for path in Path(sp.__file__).parent.glob("*.py")))
def test_examples_in_the_texts(module: str) -> None:
    failed, _ = doctest.testmod(
        importlib.import_module(f"sigpak.{module}"), extraglobs={"np": np}, optionflags=doctest.ELLIPSIS
    )
    assert failed == 0


def test_the_examples_of_the_readme_run(capsys: Any) -> None:
    blocks = re.findall(r"```python\n(.*?)```", (TREE / "python/README.md").read_text(), re.DOTALL)
    for block in blocks:
        exec(block, {})
    assert re.search(r"frequency=(1000|999.99).*value=1.414.*V rms\n6.4\de-04 V/sqrt", capsys.readouterr().out)


@pytest.mark.skipif(not shutil.which("mypy"), reason="mypy is not installed")
def test_annotations_are_strict_and_right(package: Path) -> None:
    use = "import sigpak as sp\nreveal_type(sp.rdft([1.0]))\nreveal_type(sp.Vec.of([1.0]).sin().rdft())\nsp.rdft()\n"
    (package / "use.py").write_text(use)
    command = f"mypy --strict --python-version 3.9 --cache-dir {package}/cache -p sigpak -m use".split()
    done = subprocess.run(command, cwd=package, text=True, capture_output=True, env={**os.environ, "MYPYPATH": "."})
    output = done.stdout.replace("numpy.", "")
    assert re.search(r'2: note: .*"ndarray\[Any, dtype\[Any\]\]"', output), output
    assert '3: note: Revealed type is "sigpak.vec.Vec"' in output
    errors = [line for line in output.splitlines() if "error:" in line]
    assert len(errors) == 1 and errors[0].startswith("use.py:4"), output


@pytest.mark.parametrize(
    ("path", "reason"), [("/nowhere/libsigpak.so", "/nowhere/libsigpak.so: "), ("libm.so.6", "dsp_")]
)
def test_a_library_that_is_not_there_or_another_is_told(path: str, reason: str, package: Path) -> None:
    environment = {**os.environ, "SIGPAK_LIBRARY": path, "PYTHONPATH": str(package)}
    done = subprocess.run([sys.executable, "-c", "import sigpak"], env=environment, text=True, capture_output=True)
    assert done.returncode == 1
    assert "ImportError: the library of sigpak was not found; tried" in done.stderr and reason in done.stderr


def test_an_older_library_is_refused(monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setattr(_library, "VERSION", _c.VERSION + 1)
    with pytest.raises(ImportError, match=f"version {_c.VERSION} of the interface; {_c.VERSION + 1} is needed"):
        _library._load()


REFUSALS: list[tuple[Any, str]] = [
    (lambda: sp.rfft(np.zeros(1000)), "rfft: 1000 points; a power of two is needed, rdft takes any length"),
    (lambda: sp.fft([]), "fft: 0 points; a power of two is needed, dft takes any length"),
    (lambda: sp.irfft([1, 2, 3, 4]), "irfft: 4 points; one more than a power of two is needed, irdft takes any number"),
    (lambda: sp.sin([1j]), "sin: complex samples; real ones are needed"),
    (lambda: sp.skew([1j]), "skew: complex samples; real ones are needed"),
    (lambda: sp.mul([1, 2], [1]), "mul: 2 and 1 point; as many are needed in both"),
    (lambda: sp.Vec.of([1.0]).gamma(), "gamma: the library does not provide it"),
    (lambda: sp.window("ham", 8), "window: 'ham'; no such window; there are"),
    (lambda: sp.window_fir([1.0], -1.0), "window_fir: 1 point, real, attenuation = -1.0, flags = 0; .*dB, 0 or more"),
    (lambda: sp.shift([1.0], -1), "-1; a whole number from 0 to"),
    (lambda: sp.hist([1.0], 0.0, 1.0, 2**32 + 5), "4294967301; a whole number of 32 bits is needed"),
    (lambda: sp.fir_taps("band-pas", 5, 0.1), "FirKind = 'band-pas'; one of band_pass, band_stop,"),
    (lambda: sp.Spline([0, 0], [1, 2]), "cspline: 2 points, real, x = 2 points.*strictly rising"),
    (lambda: sp.Spline([0, 1], [1, 2])([0], 3), "Spline: derivative = 3; 0, 1 or 2 is needed"),
    (lambda: sp.spectrum([1.0], quantity="volts"), "quantity = 'volts'; one of peak, rms, power, asd, psd"),
    (lambda: sp.spectrum([]), "spectrum: no complete segment; 1 samples make the first segment"),
    (lambda: sp.cross_spectrum([1, 2], [1]), "cross_spectrum: 2 and 1 points; as many are needed in both"),
    (lambda: sp.correlate([1.0], [1.0], -1), "lags = -1; 0 or more"),
    (lambda: sp.Vec.empty(2**31), "points = 2147483648; 0 to 2\\^31 - 1"),
    (lambda: sp.proots([1.0, np.nan]), "proots: 2 points, real; .*a coefficient is not finite"),
]


@pytest.mark.parametrize(("call", "message"), REFUSALS)
def test_refusals_tell_the_reason(call: Any, message: str) -> None:
    with pytest.raises(sp.Error, match=message) as caught:
        call()
    again = pickle.loads(pickle.dumps(caught.value))
    assert isinstance(again, ValueError) and str(again) == str(caught.value)


@pytest.mark.skipif(not all(map(find_spec, ("pip", "setuptools", "wheel"))), reason="there is no pip")
@pytest.mark.parametrize("bundled", [True, False])
def test_a_wheel_holds_all_that_the_package_needs(tmp_path: Path, bundled: bool) -> None:
    readers = [path.relative_to(TREE) for path in (TREE / "docs").glob("header*.py")]
    for name in ("pyproject.toml", "LICENSE", "CMakeLists.txt", "include/sigpak.h", *readers):
        (tmp_path / name).parent.mkdir(exist_ok=True)
        shutil.copy(TREE / name, tmp_path / name)
    shutil.copytree(TREE / "python", tmp_path / "python", ignore=shutil.ignore_patterns("tests", "__pycache__"))
    environment = {k: v for k, v in os.environ.items() if k != "SIGPAK_LIBRARY"}
    environment["SIGPAK_BUNDLE"] = os.environ["SIGPAK_LIBRARY"] if bundled else "0"
    install = ["pip", "install", "--no-build-isolation", "--no-deps", "--no-index", "--target", "there", "."]
    subprocess.run([sys.executable, "-m", *install], cwd=tmp_path, env=environment, check=True, capture_output=True)
    tag = "py3-none-any" if not bundled else "py3-none-linux"
    assert f"Tag: {tag}" in next((tmp_path / "there").glob("*.dist-info/WHEEL")).read_text()
    assert (tmp_path / "there/sigpak/py.typed").exists()
    if bundled:
        program = "import sigpak; print(sigpak.__file__, sigpak.mean([1, 2]))"
        command = [sys.executable, "-c", program]
        run = subprocess.run(command, cwd=tmp_path / "there", env=environment, text=True, capture_output=True)
        assert run.stdout == f"{tmp_path}/there/sigpak/__init__.py 1.5\n", run.stderr


def test_memory_that_is_not_there_is_an_error_that_leaves_no_ruin(package: Path) -> None:
    program = """if True:
        import resource, numpy as np, sigpak as sp
        resource.setrlimit(resource.RLIMIT_AS, (2**31, 2**31))
        v = sp.Vec(np.ones(8)).zpad(10)
        for call in (lambda: sp.Vec.empty(2**29), lambda: v.zpad(2**29)):
            try:
                call()
            except (sp.Error, MemoryError) as error:
                print(repr(error))
        print(v.sin().points, v.array.size, v.zpad(3).array)"""
    done = subprocess.run(
        [sys.executable, "-c", program], env={**os.environ, "PYTHONPATH": str(package)}, text=True, capture_output=True
    )
    assert done.stdout.count("OutOfMemory(") == 2 and done.stdout.endswith("0 0 [0. 0. 0.]\n"), done


def test_files_keep_every_bit(tmp_path: Path, real: Any) -> None:
    signals = [
        np.array([0.1, np.inf, -0.0], real),
        np.array([], real),
        np.array([1 + 2j, 3], f"c{2 * real().itemsize}"),
    ]
    sp.write(tmp_path / "v", *signals, delta=0.25)
    found = sp.read(tmp_path / "v", real)
    assert [v.delta for v in found] == [0.25] * 3
    assert [(v.array.dtype, v.array.tobytes()) for v in found] == [(x.dtype, x.tobytes()) for x in signals]
    sp.write(tmp_path / "t", sp.Vec(signals[0], 0.5), text=True)
    text = sp.read(tmp_path / "t", real)
    assert (tmp_path / "t").read_text().startswith("#DSP") and [(len(v), v.delta) for v in text] == [(3, 0.5)]
    (tmp_path / "cut").write_bytes((tmp_path / "v").read_bytes()[:-1])
    with pytest.raises(sp.Error, match="cut short behind 2 signals"):
        sp.read(tmp_path / "cut")
    with pytest.raises(FileNotFoundError):
        sp.read(tmp_path / "none")
    with pytest.raises(IsADirectoryError):
        sp.write(tmp_path, signals[0])
