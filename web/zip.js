"use strict";
// A ZIP archive of files as they are, not compressed.

const crcTable = Uint32Array.from({ length: 256 }, (_, byte) => {
  let crc = byte;
  for (let bit = 0; bit < 8; ++bit) crc = crc & 1 ? (crc >>> 1) ^ 0xedb88320 : crc >>> 1;
  return crc;
});

function crc32(bytes) {
  let crc = 0xffffffff;
  for (let i = 0; i < bytes.length; ++i) crc = (crc >>> 8) ^ crcTable[(crc ^ bytes[i]) & 0xff];
  return ~crc >>> 0;
}

/** Numbers one after the other, little-endian: each two bytes, or four where it is in an array. */
function packedNumbers(...values) {
  const bytes = new DataView(new ArrayBuffer(values.reduce((sum, value) => sum + (Array.isArray(value) ? 4 : 2), 0)));
  let at = 0;
  for (const value of values) {
    if (Array.isArray(value)) bytes.setUint32(at, value[0], true);
    else bytes.setUint16(at, value, true);
    at += Array.isArray(value) ? 4 : 2;
  }
  return new Uint8Array(bytes.buffer);
}

class Zip {
  #parts = []; // headers and contents
  #directory = [];
  #size = 0; // bytes of the parts
  #files = 0;

  /** Adds a file; folders of its name are separated by "/". Throws for more than the format holds. */
  add(name, bytes) {
    const utf8 = new TextEncoder().encode(name);
    const now = new Date();
    const time = (now.getHours() << 11) | (now.getMinutes() << 5) | (now.getSeconds() >> 1);
    const date = ((now.getFullYear() - 1980) << 9) | ((now.getMonth() + 1) << 5) | now.getDate();
    // Version 2.0, name in UTF-8, stored; checksum; size packed and plain; lengths of name and extra.
    const common = packedNumbers(20, 0x0800, 0, time, date, [crc32(bytes)], [bytes.length], [bytes.length], utf8.length, 0);
    this.#directory.push(packedNumbers([0x02014b50], 20), common, packedNumbers(0, 0, 0, [0], [this.#size]), utf8);
    const header = [packedNumbers([0x04034b50]), common, utf8];
    this.#size += header.reduce((sum, part) => sum + part.length, bytes.length);
    this.#parts.push(new Blob([...header, bytes])); // the browser may keep it on the disk
    if (++this.#files > 65535 || this.#size > 4e9) throw new Error("too much for one ZIP file");
  }

  blob() {
    const size = this.#directory.reduce((sum, part) => sum + part.length, 0);
    const end = packedNumbers([0x06054b50], 0, 0, this.#files, this.#files, [size], [this.#size], 0);
    return new Blob([...this.#parts, ...this.#directory, end], { type: "application/zip" });
  }
}
