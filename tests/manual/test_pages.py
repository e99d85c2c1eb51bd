# SPDX-License-Identifier: MIT
"""What docs/ makes of the header: formulas are found and set, and every operation has its pages."""

import sys
import tempfile
import unittest
import xml.etree.ElementTree as xml
from pathlib import Path

TREE = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(TREE / "docs"))

import formula  # noqa: E402
import header  # noqa: E402
import man  # noqa: E402
import mathml  # noqa: E402
import reference  # noqa: E402

MODEL = header.load()

# Sentences of the header, the formulas between { and }.
SENTENCES = """
{x = factor * x}, every scalar of real and complex records.
{x = sqrt(x)}; 0 when {x < 0}. Complex: the principal root, {re >= 0} and im with the sign of b; (0, 0) for a zero of
{x = e^x}; H when {x > ln H}. Complex: {(e^a cos b, e^a sin b)}, {e^a} limited as for real x.
{out[i] = a[i] / b[i]}; {0/0} gives 0. Complex / real is a product with {1 / b}.
a point beyond H counts as H, less than that of a point of magnitude above {sqrt(H)} inside
the sum of {a[i] * b[k - i]} over i, of 7-13 numbers, point 3 of a table, SIGNUM Newsletter 18 (1983).
{X[k] = (1/N) sum over n of x[n] exp(-2 pi i n k / N)}, and {sum over k = 1 .. N-1 of C[k]} as well
within 1 ulp; the first {N >= 1} points, {1 .. 2^24}, otherwise -1: it is one of dspi_fft(v, 0) or DSP_PAD_*
result = sum of {|x|^2}, a step of exactly pi, {-pi/2}, and {2 u |z| |re + i im|} in all
an interval {[-H, H]}, a need above {2^31 - 1} scalars, {1.11e-15 |taps[0]|} and a state -1
""".strip().splitlines()

MATHML = {
    "a / b": "<mrow><mi>a</mi><mo>/</mo><mi>b</mi></mrow>",
    "x^-2": "<msup><mrow><mi>x</mi></mrow><mrow><mrow><mo>\u2212</mo><mn>2</mn></mrow></mrow></msup>",
    "sqrt(pi)": "<msqrt><mi>\u03c0</mi></msqrt>",
    "2 * f_s": "<mrow><mn>2</mn><mo>&#183;</mo><msub><mi>f</mi><mi>s</mi></msub></mrow>",
    "abs(x)": "<mrow><mo>|</mo><mi>x</mi><mo>|</mo></mrow>",
}


class Formulas(unittest.TestCase):
    def test_are_told_from_words(self):
        names = frozenset(("x", "factor", "a", "b", "out", "taps", "state", "count"))
        for sentence in SENTENCES:
            text = sentence.replace("{", "").replace("}", "")
            marked = "".join(run if tree is None else "{" + run + "}" for run, tree in formula.spans(text, names))
            self.assertEqual(marked, sentence)

    def test_are_set(self):
        for text, expected in MATHML.items():
            tree, end = formula.find(text, 0, frozenset(("f_s",)))
            self.assertEqual((mathml.markup(tree), end), (f"<math>{expected}</math>", len(text)))
        tree, _ = formula.find("(a + b) / 2", 0, frozenset())
        self.assertIn("<mfrac><mrow><mrow><mi>a</mi>", mathml.markup(tree, display=True))

    def test_of_the_header_are_markup_and_lose_no_character(self):
        count = 0
        for block in MODEL.blocks:
            names = frozenset(p.name for twins in block.twins for p in twins.double.parameters)
            runs = list(formula.spans(block.comment.text, names))
            self.assertEqual("".join(run for run, _ in runs), block.comment.text)
            for _, tree in runs:
                if tree is not None:
                    xml.fromstring(mathml.markup(tree, display=True))
                    count += 1
        self.assertGreater(count, 400)


class Pages(unittest.TestCase):
    def test_every_function_has_one(self):
        with tempfile.TemporaryDirectory() as folder:
            man.write(Path(folder, "man3"))
            reference.write(Path(folder, "reference"))
            pages = {page.name: page.read_text() for page in Path(folder).rglob("*.*")}
        signatures = " ".join(text for name, text in pages.items() if name.endswith(".rst"))
        for function in MODEL.functions:
            self.assertIn(reference.signature(function), signatures)
            leads_to = pages[f"{function.name}.3"].removeprefix(".so man3/").strip()
            self.assertIn(f".B {man.escaped(reference.signature(function))};", pages[leads_to])

    def test_keep_the_columns_of_tables(self):
        try:
            import sphinx_header
        except ImportError as missing:
            self.skipTest(str(missing))
        design = [p for p in MODEL.block_of("dspc_fir").comment.pieces if isinstance(p, header.Verbatim)][0]
        rows = sphinx_header.rows(design.lines)
        self.assertEqual({len(row) for row in rows}, {4})
        self.assertEqual(len(rows), 12)
        self.assertIn("delay beyond the taps", " ".join(rows[6][3]))


if __name__ == "__main__":
    unittest.main()
