#pragma once

/// Removes what runs of either program left that were killed: plain copies in the temporary folder and in the
/// cache folders, decrypted catalogues, and the caches of backups that are not listed. What belongs to a run
/// that lives stays. Both programs call it at their start.
void sweepLeftovers();
