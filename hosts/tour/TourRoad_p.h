// The road that the tour takes.
#pragma once

class TZOTourDriver;

namespace TourRoad {

void Walk(TZOTourDriver& ADriver);

} // namespace TourRoad
