// What the page does: takes a recording, has the library make its spectrum, and shows it with the settings of the form.

const at = id => document.getElementById(id);
let sound = null;  // name, kind, rate, channels: arrays of samples, full scale 1

function spectrumOf(channel) {
  const x = sound.channels[channel], place = Module._page_samples(x.length);
  if (!place) throw new Error("not enough memory for " + x.length + " samples");
  Module.HEAPF64.set(x, place / 8);
  const gain = Number(at("gain").value.replace(",", "."));
  if (!Number.isFinite(gain) || gain === 0) throw new Error("the gain is no number");
  const text = Module.ccall("page_spectrum", "number",
    ["string", "string", "string", "number", "number", "number", "number", "number", "string", "number"],
    [sound.name, sound.kind, String(channel + 1), sound.rate, Number(at("window").value), Number(at("segment").value),
     Number(at("quantity").value), Number(at("values").value), at("unit").value.trim(), gain]);
  const answer = Module.UTF8ToString(text);
  at("result").textContent = answer;
  const found = JSON.parse(answer);
  if (found.error) throw new Error(found.error);
  return found;
}

function show() {
  const channel = Number(at("channel").value);
  at("wrong").hidden = true;
  try {
    const found = spectrumOf(channel);
    at("result-area").hidden = false;
    drawPicture(found);
    showLines(found.told);
    showFacts(found.told);
    at("command").hidden = sound.kind === "made here";
    at("command").textContent = commandLine(channel);
  } catch (error) {
    tell(error);
  }
}

function tell(error) {
  at("wrong").textContent = error.message;
  at("wrong").hidden = false;
}

function take(taken) {
  sound = taken;
  const n = sound.channels[0].length;
  at("about").replaceChildren(Object.assign(document.createElement("b"), { textContent: sound.name }),
    `\u2002${sound.kind}, ${sound.rate.toLocaleString("en")} Hz, ${digits(n / sound.rate, 4)} s` +
    (sound.truncated ? ", cut short" : ""));
  at("channel").replaceChildren(...sound.channels.map((_, c) => new Option(String(c + 1), c)));
  at("channel-label").hidden = sound.channels.length < 2;
  show();
}

async function open(file) {
  try { take(readWav(file.name, await file.arrayBuffer())); } catch (error) { tell(error); }
}

function start() {
  const room = Module._malloc(64);
  for (let w = 0; Module._dsp_window_to_str(w, room, 64) === 0; ++w) at("window").add(new Option(Module.UTF8ToString(room), w));
  at("window").value = "2";
  for (let k = 8; k <= 18; ++k) at("segment").add(new Option(String(2 ** k), 2 ** k, k === 13, k === 13));
  at("settings").addEventListener("input", () => sound && show());
  addEventListener("resize", () => sound && show());
  at("file").addEventListener("change", () => at("file").files[0] && open(at("file").files[0]));
  at("example").addEventListener("click", () => take(exampleSound()));
  for (const kind of ["dragover", "dragleave", "drop"]) addEventListener(kind, event => {
    event.preventDefault();
    at("drop").classList.toggle("over", kind === "dragover");
    if (kind === "drop" && event.dataTransfer.files[0]) open(event.dataTransfer.files[0]);
  });
  // A page may bring its recording with it, in base64.
  const brought = at("recording");
  if (brought) take(readWav(brought.dataset.name, Uint8Array.from(atob(brought.textContent), c => c.charCodeAt(0)).buffer));
}

Module.onRuntimeInitialized = start;
