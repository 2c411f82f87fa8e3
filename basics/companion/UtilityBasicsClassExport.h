#pragma once

/// @file
/// The companion basics library is built with hidden symbols; what it exports carries KVBT_API.

/// Marks what the companion basics library exports.
#define KVBT_API __attribute__((visibility("default")))
