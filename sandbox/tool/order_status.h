// The statuses of orders and activities, and the ERP's yes and no.
#pragma once

namespace orvan {

namespace order_status {
inline constexpr int kFree = 10;
inline constexpr int kPlanned = 20;
inline constexpr int kReleased = 30;
inline constexpr int kInProcess = 40;
inline constexpr int kCompleted = 50;
inline constexpr int kCancelled = 70;
}  // namespace order_status

inline constexpr int kYes = 1;
inline constexpr int kNo = 2;

}  // namespace orvan
