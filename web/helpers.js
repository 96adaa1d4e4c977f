"use strict";
// Elements, bytes and files.

const byId = (id) => document.getElementById(id);
const largestFile = 100e6; // bytes, unpacked; the largest depositions have a tenth of it

function element(name, attributes = {}, ...content) {
  const made = document.createElement(name);
  for (const [key, value] of Object.entries(attributes)) made.setAttribute(key, value);
  made.append(...content);
  return made;
}

function button(text, action) {
  const made = element("button", { type: "button" }, text);
  made.addEventListener("click", action);
  return made;
}

async function streamBytes(stream, name) {
  const reader = stream.getReader();
  const pieces = [];
  let size = 0;
  for (;;) {
    const { done, value } = await reader.read();
    if (done) break;
    size += value.length;
    if (size > largestFile) {
      reader.cancel();
      throw new Error(`${name}: larger than ${largestFile / 1e6} MB`);
    }
    pieces.push(value);
  }
  const bytes = new Uint8Array(size);
  let at = 0;
  for (const piece of pieces) {
    bytes.set(piece, at);
    at += piece.length;
  }
  return bytes;
}

async function unpack(bytes, name) {
  if (bytes[0] !== 0x1f || bytes[1] !== 0x8b) return bytes;
  if (!globalThis.DecompressionStream) throw new Error(`${name}: this browser cannot unpack it`);
  try {
    return await streamBytes(new Blob([bytes]).stream().pipeThrough(new DecompressionStream("gzip")), name);
  } catch (error) {
    if (error.message.startsWith(name)) throw error;
    throw new Error(`${name}: the gzip file is damaged or cut short`);
  }
}

const decoded = (id) => Uint8Array.from(atob(byId(id).textContent), (c) => c.charCodeAt(0));

/** Saves bytes, text or a blob as a file. */
function save(name, content) {
  const url = URL.createObjectURL(new Blob([content], { type: "application/octet-stream" }));
  element("a", { href: url, download: name }).click();
  setTimeout(() => URL.revokeObjectURL(url), 10000);
}
