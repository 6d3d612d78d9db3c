// Flushing all of the machine's file systems without waiting for ever.
#pragma once

// Writes the data of all file systems to their media, and waits for it for at most `timeout` milliseconds. Returns
// whether everything was written in that time.
bool flushAllFileSystems(unsigned timeout);
