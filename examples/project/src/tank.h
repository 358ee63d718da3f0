#pragma once

struct Tank {
  long litres = 0;
  long capacity = 0;
  // In percent.
  int refillBelow = 20;  //-V506
};

int FillLevel(const Tank& tank);
bool NeedsRefill(const Tank& tank);
