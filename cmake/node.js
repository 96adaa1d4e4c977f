// What node gives a program that was built for WebAssembly (preset wasm): the environment, and the
// end by abort of an exception that nobody catches.
Module["preRun"] = () => Object.assign(ENV, process.env);
Module["quit"] = (status, thrown) => {
  if (thrown instanceof ExitStatus) {
    process.exit(status);
  }
  process.abort();
};
globalThis.fetch = undefined; // node's takes no path; without it the module is read as a file
