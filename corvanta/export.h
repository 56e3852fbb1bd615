#pragma once

/// The one export macro of the library: marks what a shared build shows.
#if defined(CORVANTA_STATIC)
#define CORVANTA_API
#else
#define CORVANTA_API __attribute__((visibility("default")))
#endif
