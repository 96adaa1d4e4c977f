"use strict";
// The program, in a worker.

const longestJob = 60000; // ms
const patience = 500; // ms, with a job that nobody waits for any more, and before the page says that it works

let module_ = null;
let worker = null;
let running = null; // { owner, end } of the job that the worker has

async function startWorker() {
  module_ = module_ || await unpack(decoded("module"), "module");
  const url = URL.createObjectURL(new Blob([byId("worker").textContent], { type: "text/javascript" }));
  const started = new Worker(url);
  await new Promise((resolve, reject) => {
    const fail = (why) => reject(new Error(`this browser cannot run the program: ${why}`));
    started.onmessage = ({ data }) => (data.error ? fail(data.error) : resolve());
    started.onerror = (event) => fail(event.message || "no worker starts");
    started.postMessage({ module: module_ });
  });
  URL.revokeObjectURL(url);
  return started;
}

function dropWorker() {
  if (worker) worker.then((started) => started.terminate(), () => {});
  worker = null;
}

/**
 * One job after the other; a job that takes too long or breaks the program costs only itself.
 *
 * Whoever may give up its jobs is their owner, { stopped: false }.
 */
let queue = Promise.resolve();
function run(job, owner = null) {
  const turn = queue.then(() => runNow(job, owner));
  queue = turn.catch(() => {});
  return turn;
}

/** The owner's jobs that have not begun never do; the one that has is ended, if it is not done by then. */
function giveUp(owner, moment = patience) {
  owner.stopped = true;
  setTimeout(() => { if (running && running.owner === owner) running.end("stopped"); }, moment);
}

async function runNow(job, owner) {
  worker = worker || startWorker();
  const name = job.name || job.shifts.name;
  const using = await worker.catch((error) => { worker = null; throw error; });
  if (owner && owner.stopped) throw new Error("stopped");
  using.postMessage({ name, outputs: [], ...job });
  return new Promise((resolve, reject) => {
    const over = () => {
      clearTimeout(timer);
      running = using.onmessage = using.onerror = null; // what comes late is nobody's
    };
    const end = (why) => { over(); dropWorker(); reject(new Error(why)); };
    const timer = setTimeout(() => end(`${name}: takes longer than ${longestJob / 1000} s`), longestJob);
    running = { owner, end };
    using.onmessage = ({ data }) => {
      over();
      if (data.worn) dropWorker();
      if (data.error) reject(new Error(data.error));
      else resolve(data);
    };
    using.onerror = () => end(`${name}: too much for the program`);
  });
}
