#pragma once

// The system's header on Windows, without its macros min and max. Others of the system that need it come
// behind.
#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#endif
