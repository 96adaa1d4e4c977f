"use strict";
// The program, in a worker.

const longestJob = 60000; // ms

let module_ = null;
let worker = null;
let jobs = 0;
let stopWorker = null;

async function startWorker() {
  module_ = module_ || await unpack(decoded("module"), "module");
  const url = URL.createObjectURL(new Blob([byId("worker").textContent], { type: "text/javascript" }));
  const started = new Worker(url);
  await new Promise((resolve, reject) => {
    started.onmessage = resolve;
    started.onerror = (event) => reject(new Error(event.message || "this browser cannot run the program"));
    started.postMessage({ module: module_ });
  });
  URL.revokeObjectURL(url);
  return started;
}

function dropWorker() {
  if (worker) worker.then((running) => running.terminate(), () => {});
  worker = null;
}

/** One job after the other; a job that takes too long or breaks the program costs only itself. */
let queue = Promise.resolve();
function run(job) {
  const turn = queue.then(() => runNow(job));
  queue = turn.catch(() => {});
  return turn;
}

async function runNow(job) {
  worker = worker || startWorker();
  const name = job.name || job.shifts.name;
  const running = await worker.catch((error) => { worker = null; throw error; });
  const id = ++jobs;
  return new Promise((resolve, reject) => {
    const end = (error) => { clearTimeout(timer); stopWorker = null; dropWorker(); reject(new Error(error)); };
    const timer = setTimeout(() => end(`${name}: takes longer than ${longestJob / 1000} s`), longestJob);
    stopWorker = () => end("stopped");
    running.onmessage = ({ data }) => {
      clearTimeout(timer);
      stopWorker = null;
      if (data.worn) dropWorker();
      if (data.error) reject(new Error(data.error));
      else resolve(data);
    };
    running.onerror = () => end(`${name}: too much for the program`);
    running.postMessage({ id, name, outputs: [], ...job });
  });
}
