// The picture of a spectrum: axes, curve, noise floor and numbered lines, as SVG.

const svgNames = "http://www.w3.org/2000/svg";
const frame = { left: 76, right: 0, top: 14, bottom: 386 };  // the right end is that of the window

function draw(tag, attributes, text) {
  const node = document.createElementNS(svgNames, tag);
  for (const key in attributes) node.setAttribute(key, attributes[key]);
  if (text !== undefined) node.textContent = text;
  at("picture").append(node);
}

function niceStep(range, most) {
  const power = 10 ** Math.floor(Math.log10(range / most));
  return power * [1, 2, 5, 10].find(m => range / (power * m) <= most);
}

function evenTicks(low, high, most) {
  const step = niceStep(high - low, most), out = [];
  for (let k = Math.ceil(low / step - 1e-9); k * step <= high + 1e-9 * step; ++k) out.push(k * step);
  return out;
}

function decades(low, high) {
  const out = [];
  for (let d = Math.floor(Math.log10(low)); d <= Math.log10(high); ++d)
    for (const m of [1, 2, 5]) if (m * 10 ** d >= low && m * 10 ** d <= high) out.push(m * 10 ** d);
  return out;
}

// The scale of an axis: from values to places.
function scaleOf(low, high, from, to, logarithmic) {
  const of = logarithmic ? Math.log10 : x => x;
  return x => from + (of(x) - of(low)) / (of(high) - of(low)) * (to - from);
}

function verticalRange(values, floor, levels) {
  let high = -Infinity;
  for (const v of values) if (v > high) high = v;
  if (!levels) return [0, high > 0 ? high * 1.12 : 1];
  const twentieth = Float64Array.from(values).sort()[Math.floor(values.length / 20)];
  const low = Math.max(Math.min(floor - 15, twentieth - 5), high - 160);
  const top = Math.ceil((high + 9) / 10) * 10;
  return [Math.floor(Math.min(low, top - 40) / 10) * 10, top];
}

// One column of the picture holds many points: the highest and the lowest of each are kept.
function columnsOf(told, x, y) {
  const { first, step, values } = told.spectrum, columns = new Map();
  for (let i = 0; i < values.length; ++i) {
    const place = x(first + i * step);
    if (!(place >= frame.left - .01)) continue;
    const column = Math.round(place * 2) / 2, height = Math.min(Math.max(y(values[i]), frame.top), frame.bottom);
    const span = columns.get(column);
    if (!span) columns.set(column, [height, height]);
    else { span[0] = Math.min(span[0], height); span[1] = Math.max(span[1], height); }
  }
  return [...columns];
}

function drawAxes(told, xs, ys, x, y, unitName, frequencyUnit, scale) {
  let lastRight = -Infinity;
  for (const f of xs) {
    draw("line", { class: "grid", x1: x(f), x2: x(f), y1: frame.top, y2: frame.bottom });
    const text = shortNumber(f / scale), half = text.length * 3.8;
    if (x(f) - half < lastRight + 8) continue;
    lastRight = x(f) + half;
    draw("text", { x: x(f), y: frame.bottom + 20, "text-anchor": "middle" }, text);
  }
  for (const v of ys) {
    draw("line", { class: "grid", x1: frame.left, x2: frame.right, y1: y(v), y2: y(v) });
    draw("text", { x: frame.left - 10, y: y(v) + 4, "text-anchor": "end" }, shortNumber(v));
  }
  draw("text", { x: (frame.left + frame.right) / 2, y: 430, "text-anchor": "middle" }, "frequency in " + frequencyUnit);
  draw("text", { x: 18, y: (frame.top + frame.bottom) / 2, "text-anchor": "middle",
                 transform: `rotate(-90 18 ${(frame.top + frame.bottom) / 2})` }, unitName);
}

// A dot on every line, and its number above or beside it where the stronger ones leave room.
function drawMarks(told, x, y, levels) {
  const taken = [], radius = 9;
  const dots = told.lines.map(line => [x(line.frequency), y(levels ? line.level_db : line.amplitude)]);
  dots.forEach(([px, py], i) => {
    if (!(px >= frame.left - .01)) return;
    draw("circle", { class: "dot", cx: px, cy: py, r: 2.6 });
    const place = [[0, -16], [22, -6], [-22, -6], [15, -22], [-15, -22], [0, -38]].map(([dx, dy]) => [px + dx, py + dy])
      .find(([cx, cy]) => cx > frame.left + radius && cx < frame.right - radius && cy > frame.top + radius &&
                          taken.every(([a, b]) => Math.hypot(a - cx, b - cy) > 2 * radius + 2) &&
                          dots.every(([a, b]) => Math.hypot(a - cx, b - cy) > radius + 4));
    if (!place) return;
    taken.push(place);
    draw("circle", { class: "mark", cx: place[0], cy: place[1], r: radius });
    draw("text", { class: "number", x: place[0], y: place[1] + 4 }, i + 1);
  });
}

// The dashed line, and its value above that end of it where the curve is farther away.
function drawFloor(found, y, columns) {
  const height = y(found.floor), room = 230;
  if (!(height > frame.top && height < frame.bottom)) return;
  draw("line", { class: "floor", x1: frame.left, x2: frame.right, y1: height, y2: height });
  const clearance = (from, to) => Math.min(...columns.map(([x, [high, deep]]) =>
    x < from || x > to ? Infinity : deep < height - 12 ? height - 12 - deep : Math.max(0, high - height + 12)));
  const atLeft = clearance(frame.left, frame.left + room) > clearance(frame.right - room, frame.right);
  draw("text", { class: "floor-name", x: atLeft ? frame.left + 10 : frame.right - 10, y: Math.max(height - 8, frame.top + 14),
                 "text-anchor": atLeft ? "start" : "end" },
       "noise floor " + digits(found.told.noise_floor, 3) + " " + found.told.noise_floor_unit.replace("sqrt(Hz)", "\u221aHz"));
}

function drawPicture(found) {
  const width = at("picture").clientWidth;
  at("picture").setAttribute("viewBox", `0 0 ${width} 440`);
  frame.right = width - 24;
  const told = found.told, levels = at("values").value === "1", logarithmic = at("axis").value === "log";
  const { first, step, values } = told.spectrum, last = first + step * (values.length - 1);
  const low = logarithmic ? told.analysis.resolution_hz : first;
  const [bottom, top] = verticalRange(values, found.floor, levels);
  const x = scaleOf(low, last, frame.left, frame.right, logarithmic);
  const y = scaleOf(bottom, top, frame.bottom, frame.top, false);
  const kilo = last >= 2000, scale = kilo ? 1000 : 1;
  at("picture").replaceChildren();
  const unit = levels ? told.level_unit : told.unit;
  drawAxes(told, logarithmic ? decades(low, last) : evenTicks(low, last, Math.ceil((frame.right - frame.left) / 75)), evenTicks(bottom, top, 8), x, y,
           (levels ? "level in " : told.quantity + " in ") + unit, kilo ? "kHz" : "Hz", scale);
  const columns = columnsOf(told, x, y);
  const path = columns.map(([c, [high, deep]]) => high === deep ? `${c} ${high.toFixed(1)}`
                                                                : `${c} ${high.toFixed(1)}L${c} ${deep.toFixed(1)}`).join("L");
  const edge = columns.map(([c, [high]]) => `${c} ${high.toFixed(1)}`).join("L");
  draw("path", { class: "under", d: `M${columns[0][0]} ${frame.bottom}L${edge}L${columns[columns.length - 1][0]} ${frame.bottom}Z` });
  draw("path", { class: "curve", d: "M" + path });
  draw("rect", { class: "frame", x: frame.left, y: frame.top, width: frame.right - frame.left, height: frame.bottom - frame.top });
  drawFloor(found, y, columns);
  drawMarks(told, x, y, levels);
}
