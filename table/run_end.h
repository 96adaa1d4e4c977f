#pragma once

/// The one place where the program ends itself before `main` returns.
///
/// Every refused input prints its own message and then calls `endRun`. Tests and fuzzers install a
/// handler that throws, so that a refused input ends one case and not the process.

/// A handler must not return: it ends the process or throws.
using RunEndHandler = void (*)(int status);

/// Ends the run with `status` (the shell sees its low eight bits); never returns.
[[noreturn]] void endRun(int status);

/// Hands over what was printed on standard output, and says so on standard error when any of it was
/// lost, on a full disk for instance. For every way out of the program.
void finishOutput();

/// Replaces what `endRun` does; a null handler restores `exit`. Returns the handler before.
RunEndHandler setRunEndHandler(RunEndHandler handler);
