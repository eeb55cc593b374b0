#pragma once
// The element generator: appends one parametric piece of track to the end of
// the sketch. A piece is built in a local frame (origin on the last point,
// +Z the direction of travel, +Y up, +X where the roll of a level track
// points) and carried onto the path by the frame of the last point.

#include "elements/ElementTable.h"
#include <cstdint>

// The element object holds no data: it exists so that the generator is
// reached through one guarded object, like the other single objects.
struct WElement {
    WElement();
    ~WElement();
    WElement(const WElement&) = delete;
    WElement& operator=(const WElement&) = delete;

    // Adds one element of type id with the parameters p1 to p4 (in the order
    // of the row's labels, unused ones 0) to TheSketch. An empty sketch first
    // gets a start point at the origin heading along +X. Parameters that fail
    // the element's test add nothing more. Otherwise the last point's
    // HandleOut is turned into the element's start handle, the new points are
    // appended, the view is fitted and the drawing mode gives way to the
    // sketch editing mode. Ids above 16 add nothing but the start point.
    void Add(uint32_t id, float p1, float p2, float p3, float p4);
};

// The one element object of the process, set by its creation.
extern WElement* TheElement;
// Creates the element object, then runs CheckElementTable on WElementTable.
// A second call shows "ERROR: there can only be 1 WElement object", keeps the
// first and checks nothing. Null only if memory ran out.
WElement* CreateElement();
void DestroyElement();
