#pragma once

/// @file
/// The mark of an exported name. The library is built with hidden visibility: what carries no mark stays inside.

#if defined(_WIN32) && !defined(GXDISPLAY_STATIC)
#if defined(GXDISPLAY_BUILDING)
#define GX_API __declspec(dllexport)
#else
#define GX_API __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define GX_API __attribute__((visibility("default")))
#else
#define GX_API
#endif

/// The mark of a thread-local variable of the library that is found without a call.
#if defined(__ELF__) && defined(__GNUC__)
#define GX_INITIAL_EXEC __attribute__((tls_model("initial-exec")))
#else
#define GX_INITIAL_EXEC
#endif
