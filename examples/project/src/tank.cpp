#include "tank.h"

// How full the tank is, in percent; an unknown capacity counts as empty.
int FillLevel(const Tank& tank) {
  if (tank.capacity == 0) {  //-V501
    return 0;
  }
  const long percent = tank.litres * 100 / tank.capacity;  //-V502 //-V510
  return static_cast<int>(percent);  //-V504
}

bool NeedsRefill(const Tank& tank) {
  return FillLevel(tank) < tank.refillBelow;  //-V505
}
