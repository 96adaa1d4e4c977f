"use strict";
// Runs the program. Each message is a whole job, so that a worker that was stopped loses nothing.

let program = null;

/** Copies bytes into the program's memory; a NUL follows them. */
function put(bytes) {
  const at = program._malloc(bytes.length + 1);
  if (at === 0) throw new Error("not enough memory");
  program.HEAPU8.set(bytes, at);
  program.HEAPU8[at + bytes.length] = 0;
  return at;
}

function outcome() {
  const at = program._citrans_page_text();
  return program.HEAPU8.slice(at, at + program._citrans_page_size());
}

/** Calls the program with texts and byte arrays, null for none, and gives the outcome's bytes. */
function call(name, ...values) {
  const places = [];
  try {
    const args = values.map((value) => {
      if (value === null || typeof value === "number") return value || 0;
      const at = put(typeof value === "string" ? new TextEncoder().encode(value) : value);
      places.push(at);
      return at;
    });
    const status = program["_" + name](...args);
    const bytes = outcome();
    if (status !== 0) throw new Error(new TextDecoder().decode(bytes));
    return bytes;
  } finally {
    places.forEach((at) => program._free(at));
  }
}

/** A list of files, or one file and its outputs. */
function work(job) {
  if (job.index) return { html: call("citrans_page_index", JSON.stringify(job.index)) };
  const { shifts, structure, settings } = job;
  const info = JSON.parse(new TextDecoder().decode(call(
    "citrans_page_analyse", JSON.stringify(settings), shifts.name, shifts.bytes, shifts.bytes.length,
    structure && structure.name, structure && structure.bytes, structure ? structure.bytes.length : 0)));
  const outputs = {};
  for (const kind of job.outputs) outputs[kind] = call("citrans_page_output", kind);
  return { info, outputs };
}

/** Memory that was taken once is never given back: after a huge file a new worker is better. */
const isWorn = () => program.HEAPU8.length > 3e8;

/** Starts the program; a browser tells a page nothing of what fails here later than at once. */
async function start(module) {
  try {
    program = await makeCitrans({ wasmBinary: module, print() {}, printErr() {} });
    return { ready: true };
  } catch (error) {
    return { error: error.message };
  }
}

onmessage = async ({ data }) => {
  if (data.module) {
    postMessage(await start(data.module));
    return;
  }
  try {
    const done = work(data);
    postMessage({ ...done, worn: isWorn() });
  } catch (error) {
    // A fault of the machine leaves the program's memory in an unknown state.
    const broken = error instanceof WebAssembly.RuntimeError || error instanceof RangeError;
    postMessage({ worn: broken || isWorn(),
                  error: broken || error.message.startsWith("not enough memory")
                    ? `${data.name}: too much for the program` : error.message });
  }
};
