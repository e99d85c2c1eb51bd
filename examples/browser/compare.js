// compare.js PAGE PROGRAM: what a page that was looked at holds of a recording, against what `sigpak spectrum --json --all`
// tells. Both come from one source; the kind of file is the reader's own word, and mathematics functions may differ in the
// last digit.
"use strict";
const fs = require("fs");
const [dom, told] = process.argv.slice(2).map(name => fs.readFileSync(name, "utf8"));
const page = JSON.parse(/<script[^>]* id="result">([^]*?)<\/script>/.exec(dom)[1]);
const program = JSON.parse(told);
const tolerance = 1e-9;
let compared = 0;

function compare(name, a, b) {
  if (typeof b === "number") {
    ++compared;
    if (!(Math.abs(a - b) <= tolerance * Math.max(Math.abs(a), Math.abs(b)))) throw new Error(`${name}: ${a} and ${b}`);
  } else if (b !== null && typeof b === "object") {
    for (const key of Object.keys(b)) if (key !== "kind" && key !== "truncated") compare(`${name}.${key}`, a[key], b[key]);
  } else if (a !== b) {
    throw new Error(`${name}: ${a} and ${b}`);
  }
}

// Levels of nothing but rounding have no digits, their amplitudes hardly any.
const amplitudes = told => told.spectrum.values.map(level => 10 ** (level / 20));
const [ours, theirs] = [page.told, program].map(amplitudes);
if (ours.length !== theirs.length || ours.some((x, i) => !(Math.abs(x - theirs[i]) <= tolerance * theirs[i] + 1e-15)))
  throw new Error("the spectra differ");
delete program.spectrum.values;
compare("spectrum", page.told, program);
console.log(`${compared + ours.length} numbers agree to ${tolerance}; strongest line ${page.told.lines[0].frequency} Hz`);
