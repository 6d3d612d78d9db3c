// The spinner of the progress line.
#pragma once

// The next of its pictures. One spinner turns for the whole library, whatever updater asks.
const char* nextSpinnerPicture();
