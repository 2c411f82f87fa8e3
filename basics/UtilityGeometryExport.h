#pragma once

/// @file
/// The geometry library is built with hidden symbols; what it exports carries KVGE_API.

/// Marks what the geometry library exports.
#define KVGE_API __attribute__((visibility("default")))
