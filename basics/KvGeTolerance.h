#pragma once
/// @file
/// The library's tolerances, kept in one place. Every tolerant test is inclusive: a difference
/// equal to its tolerance counts as equal.
///
/// - Linear: 0.001 drawing units, for positions, lengths and parameters.
/// - Squared linear: 1e-6, compared with a sum of squared coordinate differences, so that the
///   equality of vectors and points agrees with the linear tolerance without a square root.
/// - Angular: 1e-6 radians, an absolute band on raw radian values. It never compares lengths.

/// The linear tolerance, 0.001 drawing units, for positions, lengths and parameters (inclusive).
constexpr double kKvGeLinearTol = 0.001;
/// The squared linear tolerance, 1e-6, compared with squared distances (inclusive).
constexpr double kKvGeLinearTolSqr = 1e-6;
/// The angular tolerance, 1e-6 radians, an absolute band on raw radian values (inclusive).
constexpr double kKvGeAngularTol = 1e-6;
