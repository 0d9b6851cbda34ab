// World Wide Names as a user or a staged file writes them.
#pragma once

#include "framework/device_library/records.h"

// Reads eight hexadecimal octets with colons between them, as scanf reads "%hhx": leading blanks, a sign,
// "0x" and any number of digits pass, and only the low 8 bits of each count. Returns where the name ends;
// null, and `name` unusable, for a text that does not begin with a complete name.
const char* ReadName(const char* text, WorldWideName& name);

// True for the name of all zeros, which stands for no port.
bool IsZero(const WorldWideName& name);
