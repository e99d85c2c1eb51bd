// Recordings as samples. Reads WAV itself: what a browser decodes comes back at another rate.

function readWav(name, buffer) {
  const bytes = new DataView(buffer);
  const tag = place => String.fromCharCode(...new Uint8Array(buffer, place, 4));
  if (bytes.byteLength < 12 || tag(0) !== "RIFF" || tag(8) !== "WAVE") throw new Error(name + " is no WAV file");
  let form = null;
  for (let place = 12; place + 8 <= bytes.byteLength;) {
    const size = bytes.getUint32(place + 4, true), begin = place + 8;
    const there = Math.min(size, bytes.byteLength - begin);
    if (tag(place) === "fmt " && there >= 16) form = readForm(bytes, begin, there);
    if (tag(place) === "data") {
      if (!form) throw new Error(name + ": its samples come before their form");
      return { name, kind: "WAV, " + form.kind, rate: form.rate, channels: samplesOf(bytes, begin, there, form, name),
               truncated: there < size };
    }
    place = begin + size + size % 2;
  }
  throw new Error(name + ": there are no samples in it");
}

function readForm(bytes, begin, size) {
  const extended = bytes.getUint16(begin, true) === 0xfffe && size >= 26;
  const code = bytes.getUint16(extended ? begin + 24 : begin, true), bits = bytes.getUint16(begin + 14, true);
  return { code, bits, count: bytes.getUint16(begin + 2, true), rate: bytes.getUint32(begin + 4, true),
           kind: code === 3 ? bits + " bit float" : bits + " bit" };
}

function samplesOf(bytes, begin, size, form, name) {
  const readers = {
    "1 8": p => (bytes.getUint8(p) - 128) / 128,
    "1 16": p => bytes.getInt16(p, true) / 32768,
    "1 24": p => (bytes.getUint16(p, true) + 65536 * bytes.getInt8(p + 2)) / 8388608,
    "1 32": p => bytes.getInt32(p, true) / 2147483648,
    "3 32": p => bytes.getFloat32(p, true),
    "3 64": p => bytes.getFloat64(p, true),
  };
  const read = readers[form.code + " " + form.bits];
  if (!read || !form.count || !form.rate) throw new Error(name + ": only plain WAV of integers or floats can be read here");
  const width = form.bits / 8, frame = width * form.count, frames = Math.floor(size / frame);
  return Array.from({ length: form.count }, (_, c) =>
    Float64Array.from({ length: frames }, (_, i) => read(begin + i * frame + c * width)));
}

// Three lines in white noise, for who has no file at hand.
function exampleSound() {
  const rate = 48000, n = 10 * rate, x = new Float64Array(n);
  let state = 1;
  const uniform = () => (state = (Math.imul(state, 1664525) + 1013904223) >>> 0) / 2 ** 32 - .5;
  for (let i = 0; i < n; ++i) {
    const t = 2 * Math.PI * i / rate;
    x[i] = .5 * Math.sin(1000 * t) + .005 * Math.sin(3000 * t) + .02 * Math.sin(50 * t) + .004 * uniform();
  }
  return { name: "a tone in noise", kind: "made here", rate, channels: [x] };
}
