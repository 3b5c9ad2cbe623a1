#pragma once

/// Makes the files under ":/" reachable. A static library's resources are dropped by the linker unless asked
/// for.
void initResources();
