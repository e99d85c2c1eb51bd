// Numbers as text, the table of the lines, and the figures beside it.

function digits(x, n) {
  if (x === null) return "none";
  const size = Math.abs(x);
  return shortenExponent(size !== 0 && (size < 1e-3 || size >= 1e6) ? x.toExponential(n - 1) : x.toPrecision(n));
}

function shortenExponent(text) {
  const raised = c => c === "-" ? "\u207b" : "\u2070\u00b9\u00b2\u00b3\u2074\u2075\u2076\u2077\u2078\u2079"[c];
  return text.replace(/^-/, "\u2212").replace(/e\+?(-?\d+)/, (_, power) => " \u00d7 10" + power.replace(/[-\d]/g, raised));
}

function shortNumber(x) {
  const size = Math.abs(x);
  const text = size !== 0 && (size < 1e-3 || size >= 1e5) ? String(Number(x.toPrecision(5)).toExponential())
                                                          : String(Number(x.toPrecision(5)));
  return shortenExponent(text);
}

function fill(parent, rows, cell) {
  parent.replaceChildren(...rows.map(row => {
    const tr = document.createElement("tr");
    tr.append(...row.map(text => Object.assign(document.createElement(row.heading ? "th" : cell), { textContent: text })));
    return tr;
  }));
}

function showLines(told) {
  if (told.lines.length === 0) return fill(at("lines"), [["no line above the noise"]], "td");
  const heading = Object.assign(["", "Hz", told.unit, told.level_unit, "SNR dB"], { heading: true });
  const places = Math.max(0, Math.ceil(-Math.log10(told.analysis.resolution_hz / 1e3)));
  const rows = told.lines.map((l, i) => [String(i + 1), l.frequency.toFixed(places), digits(l.amplitude, 5),
    l.level_db.toFixed(2).replace("-", "\u2212"), l.snr_db.toFixed(1)]);
  fill(at("lines"), [heading, ...rows], "td");
}

function showFacts(told) {
  const a = told.analysis, unit = at("unit").value.trim() || "FS";
  const facts = [
    ["noise floor", digits(told.noise_floor, 4) + " " + told.noise_floor_unit],
    ["mean", digits(told.mean, 4) + " " + unit], ["rms", digits(told.rms, 4) + " " + unit],
    ["window", a.window], ["ENBW", digits(a.enbw_hz, 4) + " Hz"], ["resolution", digits(a.resolution_hz, 4) + " Hz"],
    ["segments", a.segments + " of " + a.segment + " samples"], ["overlap", a.overlap + " samples"],
    ["not used", a.unused + " samples"]];
  at("facts").replaceChildren(...facts.flatMap(([name, value]) => [
    Object.assign(document.createElement("dt"), { textContent: name }),
    Object.assign(document.createElement("dd"), { textContent: value })]));
}

function commandLine(channel) {
  const quote = text => /^[\w.\/-]+$/.test(text) ? text : "'" + text.replaceAll("'", "'\\''") + "'";
  const words = ["sigpak spectrum", "-w " + quote(at("window").selectedOptions[0].textContent), "-s " + at("segment").value,
                 "--as " + ["peak", "rms", "power", "asd", "psd"][at("quantity").value]];
  if (at("values").value === "1") words.push("--db");
  if (at("unit").value.trim()) words.push("--unit " + quote(at("unit").value.trim()));
  if (Number(at("gain").value) !== 1) words.push("--gain " + quote(at("gain").value));
  if (sound.channels.length > 1) words.push("-c " + (channel + 1));
  return "$ " + words.join(" ") + " " + quote(sound.name);
}
