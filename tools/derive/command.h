#pragma once

namespace derive {

constexpr char program[] = "citrans-derive";

/// The whole program: reads its arguments, derives the tables or measures them.
/// \return exit status 0; throws ToolError for everything else
int runCommand(int argc, char** argv);

} // namespace derive
