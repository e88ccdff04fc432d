#pragma once

/// Marks what leaves a library or a module, whatever visibility it is compiled with.
#define QUEN_EXPORT __attribute__((visibility("default")))
