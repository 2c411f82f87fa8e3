#pragma once

/// @file
/// The geometry library is built with hidden symbols; what it exports carries KVGE_API.
#define KVGE_API __attribute__((visibility("default")))
