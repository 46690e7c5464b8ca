#pragma once

/// Positions of the fields of a task in the record source of a project's tasks.
namespace kestrix::task_field {

inline constexpr int kProjectNumber = 0;
inline constexpr int kDate = 1;
inline constexpr int kTitle = 2;
inline constexpr int kActionDate = 15;
inline constexpr int kRiskIndex = 21;
inline constexpr int kRiskIndexAfter = 30;
inline constexpr int kKey = 45;
inline constexpr int kCount = 48;

}  // namespace kestrix::task_field
