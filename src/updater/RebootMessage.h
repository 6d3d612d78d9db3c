// Why a device cannot be rebooted automatically, in words.
#pragma once

// The message for a reboot-support state. Empty for 0, which is supported, and for every state that has none.
const char* rebootMessage(unsigned state);
