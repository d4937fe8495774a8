#pragma once

/// Marks what libquellog.so offers to others; everything else stays hidden.
#define QUELLOG_EXPORT __attribute__((visibility("default")))
